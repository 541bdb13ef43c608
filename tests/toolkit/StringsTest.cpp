// Val and Split at their edges; every number's round trip through a label's
// text, and every call split from the table, is walked by the whole-game test.
#include <gtest/gtest.h>

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

}  // namespace
