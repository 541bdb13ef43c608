// The one route of failures out of an event handler.
#include <gtest/gtest.h>

#include <stdexcept>

#include "toolkit/Dispatch.h"

namespace {

class DispatchTest : public ::testing::Test {
 protected:
  void SetUp() override {
    old_ = tk::SetFailureReporter([this](const tk::FailureReport& r) { reports.push_back(r); });
  }
  void TearDown() override { tk::SetFailureReporter(old_); }
  std::vector<tk::FailureReport> reports;

 private:
  tk::FailureReporter old_;
};

TEST_F(DispatchTest, AFailureIsReportedOnceWithItsClassAndEarlierStepsStand) {
  int steps = 0;
  const bool ok = tk::Dispatch([&] {
    ++steps;
    throw tk::NilObjectException();
    ++steps;  // NOLINT: never reached
  });
  EXPECT_FALSE(ok);
  EXPECT_EQ(steps, 1);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].className, "NilObjectException");
  EXPECT_EQ(reports[0].message, "An object reference was nil.");
  EXPECT_TRUE(tk::Dispatch([&] { ++steps; })) << "the next event is delivered as usual";
  EXPECT_EQ(reports.size(), 1u);
}

TEST_F(DispatchTest, EndingIsNotAFailure) {
  EXPECT_TRUE(tk::Dispatch([] { throw tk::EndException(); }));
  EXPECT_TRUE(tk::Dispatch([] { throw tk::ThreadEndException(); }));
  EXPECT_TRUE(reports.empty());
}

TEST_F(DispatchTest, ForeignExceptionsAreReportedTooAndNeverEscape) {
  EXPECT_FALSE(tk::Dispatch([] { throw std::runtime_error("disk on fire"); }));
  EXPECT_FALSE(tk::Dispatch([] { throw 42; }));
  ASSERT_EQ(reports.size(), 2u);
  EXPECT_EQ(reports[0].message, "disk on fire");
  EXPECT_EQ(reports[1].className, "unknown exception");
}

TEST_F(DispatchTest, ExceptionsCarryTheirStack) {
  const tk::OutOfBoundsException e;
  EXPECT_FALSE(e.Stack().empty());
  EXPECT_STREQ(e.ClassName(), "OutOfBoundsException");
  EXPECT_STREQ(tk::ThreadAccessingUIException().what(),
               "A thread has attempted to manipulate a user interface element. This can only be done from the "
               "application's main thread.");
}

}  // namespace
