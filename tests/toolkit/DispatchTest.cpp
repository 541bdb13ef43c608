// The one route of failures out of an event handler; the game walks it
// through a real press in FailureRouteTest.
#include <gtest/gtest.h>

#include <stdexcept>

#include "toolkit/Dispatch.h"
#include "toolkit/ScopedHook.h"

namespace {

TEST(Dispatch, FailuresAreReportedEndingIsNotOneAndNothingEscapes) {
  std::vector<tk::FailureReport> reports;
  const tk::ScopedHook reporter(tk::SetFailureReporter, [&](const tk::FailureReport& r) { reports.push_back(r); });
  EXPECT_FALSE(tk::Dispatch([] { throw tk::NilObjectException(); }));
  EXPECT_TRUE(tk::Dispatch([] { throw tk::EndException(); }));
  EXPECT_TRUE(tk::Dispatch([] { throw tk::ThreadEndException(); }));
  EXPECT_FALSE(tk::Dispatch([] { throw std::runtime_error("disk on fire"); }));
  EXPECT_FALSE(tk::Dispatch([] { throw 42; }));

  ASSERT_EQ(reports.size(), 3u);
  EXPECT_EQ(reports[0].className, "NilObjectException");
  EXPECT_EQ(reports[0].message, "An object reference was nil.");
  EXPECT_EQ(reports[1].message, "disk on fire");
  EXPECT_EQ(reports[2].className, "unknown exception");
  EXPECT_FALSE(tk::OutOfBoundsException().Stack().empty()) << "exceptions carry their stack";
}

tk::FailureCause Broken(const std::string& file) {
  return tk::FileCause("/bundle/Resources/" + file, "opened", "it is not a sound that can be played", "decoder: no frame");
}

// A nil raised with its cause: the report tells it in three parts.
TEST(Dispatch, AReportSaysWhatFailedWhyAndWhatToDoAndKeepsTheTechnicalPartApart) {
  std::vector<tk::FailureReport> reports;
  const tk::ScopedHook reporter(tk::SetFailureReporter, [&](const tk::FailureReport& r) { reports.push_back(r); });
  tk::Dispatch([] { throw tk::NilObjectException(Broken("vocal48.mp3")); });
  ASSERT_EQ(reports.size(), 1u);
  tk::FailureReport report = reports[0];
  const tk::FailureText told = tk::Describe(report);
  EXPECT_EQ(told.headline, "The sound file vocal48.mp3 could not be opened: it is not a sound that can be played.");
  EXPECT_EQ(told.informative,
            "It was looked for in the folder /bundle/Resources.\n\nSwitch BINGO CALLER off to go on without the "
            "voice. Installing Calloquin again puts its sound files back.");
  EXPECT_EQ(told.details, "NilObjectException: An object reference was nil.\ndecoder: no frame");
  EXPECT_EQ(tk::OneLine(report),
            "Calloquin: unhandled NilObjectException: An object reference was nil. [The sound file vocal48.mp3 could "
            "not be opened: it is not a sound that can be played; folder /bundle/Resources; decoder: no frame]");

  report.cause.reset();  // nothing known but the exception
  const tk::FailureText plain = tk::Describe(report);
  EXPECT_EQ(plain.headline, "Calloquin could not finish what it was doing.");
  EXPECT_EQ(plain.informative, "An unexpected failure stopped it part way. If it happens again, start Calloquin "
                               "again; the details name the failure for whoever looks into it.");
  EXPECT_EQ(plain.details, "NilObjectException: An object reference was nil.");
  EXPECT_EQ(tk::OneLine(report), "Calloquin: unhandled NilObjectException: An object reference was nil.");
}

}  // namespace
