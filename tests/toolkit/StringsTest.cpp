// Val and Split at their edges; every number's round trip through a label's
// text is walked by the whole-game test.
#include <gtest/gtest.h>

#include "caller/CallTable.h"
#include "toolkit/Strings.h"

namespace {

TEST(Strings, ValTakesTheNumberTheTextBeginsWith) {
  EXPECT_EQ(tk::Val("  42 and more"), 42.0);
  EXPECT_EQ(tk::Val("07"), 7.0);
  EXPECT_EQ(tk::Val("-2.5e1x"), -25.0);
  EXPECT_EQ(tk::Val("1e"), 1.0) << "an exponent without digits is not part of the number";
  for (const char* none : {"", "abc", "."}) EXPECT_EQ(tk::Val(none), 0.0) << none;
}

TEST(Strings, SplitKeepsEmptyFieldsAndTheTail) {
  const auto parts = tk::Split(",a,,b,", ",");
  ASSERT_EQ(parts.Count(), 5);
  for (tk::Integer i = 0; i < 5; ++i) EXPECT_EQ(parts(i), (std::vector<std::string>{"", "a", "", "b", ""}[i]));
  EXPECT_EQ(tk::Split("one", ",").Count(), 1);
  EXPECT_EQ(tk::Split("a--b", "--")(1), "b");
  EXPECT_THROW(parts(5), tk::OutOfBoundsException);
  EXPECT_THROW(parts(-1), tk::OutOfBoundsException);
}

// The table's quirks, which a tidy-minded edit would lose.
TEST(Strings, TheCallTableSplitsIntoNinetyUntrimmedFreeCalls) {
  const auto calls = tk::Split(caller::kNicknameText, ",");
  ASSERT_EQ(calls.Count(), 90);
  EXPECT_EQ(calls(18), "Goobye Teens");
  EXPECT_EQ(calls(55), calls(75)) << "56 and 76 share their call";
  for (tk::Integer i = 0; i < 90; ++i) {
    EXPECT_FALSE(calls(i).empty() || calls(i).front() == ' ' || calls(i).back() == ' ') << i + 1;
    EXPECT_LE(calls(i).size(), 19u);
  }
}

}  // namespace
