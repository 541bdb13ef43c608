// The one route of failures out of an event handler; the game walks it
// through a real press in FailureRouteTest.
#include <gtest/gtest.h>

#include <stdexcept>

#include "toolkit/Dispatch.h"

namespace {

TEST(Dispatch, FailuresAreReportedEndingIsNotOneAndNothingEscapes) {
  std::vector<tk::FailureReport> reports;
  const auto old = tk::SetFailureReporter([&](const tk::FailureReport& r) { reports.push_back(r); });
  EXPECT_FALSE(tk::Dispatch([] { throw tk::NilObjectException(); }));
  EXPECT_TRUE(tk::Dispatch([] { throw tk::EndException(); }));
  EXPECT_TRUE(tk::Dispatch([] { throw tk::ThreadEndException(); }));
  EXPECT_FALSE(tk::Dispatch([] { throw std::runtime_error("disk on fire"); }));
  EXPECT_FALSE(tk::Dispatch([] { throw 42; }));
  tk::SetFailureReporter(old);

  ASSERT_EQ(reports.size(), 3u);
  EXPECT_EQ(reports[0].className, "NilObjectException");
  EXPECT_EQ(reports[0].message, "An object reference was nil.");
  EXPECT_EQ(reports[1].message, "disk on fire");
  EXPECT_EQ(reports[2].className, "unknown exception");
  EXPECT_FALSE(tk::OutOfBoundsException().Stack().empty()) << "exceptions carry their stack";
}

}  // namespace
