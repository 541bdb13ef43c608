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

}  // namespace

namespace {

tk::FailureCause Broken(const std::string& file) {
  return tk::FileCause("/bundle/Resources/" + file, "opened", "it is not a sound that can be played", "decoder: no frame");
}

// The cause the toolkit noted for a nil explains the failure that nil leads
// to, and only that: not a failure of another kind, not a failure in a
// later event, not a failure from another place; but the same failure
// coming again from the same place is explained as the first time.
TEST(Dispatch, ACauseExplainsItsOwnFailureAndNoLaterOne) {
  std::vector<tk::FailureReport> reports;
  const tk::ScopedHook reporter(tk::SetFailureReporter, [&](const tk::FailureReport& r) { reports.push_back(r); });
  bool note = true;
  const std::function<void()> clipPress = [&] {
    if (note) tk::NoteFailureCause(Broken("vocal48.mp3"));
    throw tk::NilObjectException();
  };
  tk::Dispatch(clipPress);
  tk::Dispatch([] { tk::NoteFailureCause(Broken("vocal7.mp3")); });  // a nil that nothing failed on
  tk::Dispatch([] { throw tk::NilObjectException(); });
  tk::Dispatch([] {
    tk::NoteFailureCause(Broken("vocal9.mp3"));
    throw tk::OutOfBoundsException();
  });
  note = false;
  tk::Dispatch(clipPress);

  ASSERT_EQ(reports.size(), 4u);
  ASSERT_TRUE(reports[0].cause);
  EXPECT_EQ(tk::Describe(reports[0]).headline,
            "The sound file vocal48.mp3 could not be opened: it is not a sound that can be played.");
  EXPECT_FALSE(reports[1].cause) << tk::OneLine(reports[1]);
  EXPECT_FALSE(reports[2].cause) << tk::OneLine(reports[2]);
  ASSERT_TRUE(reports[3].cause) << "the same press failing again";
  EXPECT_EQ(reports[3].cause->what, reports[0].cause->what);
}

TEST(Dispatch, AReportSaysWhatFailedWhyAndWhatToDoAndKeepsTheTechnicalPartApart) {
  tk::FailureReport report{"NilObjectException", "An object reference was nil.", {}, Broken("vocal48.mp3")};
  const tk::FailureText told = tk::Describe(report);
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
  EXPECT_EQ(plain.details, "NilObjectException: An object reference was nil.");
  EXPECT_EQ(tk::OneLine(report), "Calloquin: unhandled NilObjectException: An object reference was nil.");
}

}  // namespace
