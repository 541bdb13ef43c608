// The conversions the game leans on: the current number travels through a
// label's text, so Str and Val must round-trip every number of the game.
#include <gtest/gtest.h>

#include "caller/CallTable.h"
#include "toolkit/Strings.h"

namespace {

TEST(Strings, EveryNumberOfTheGameRoundTripsThroughItsText) {
  for (tk::Integer x = 0; x <= 90; ++x) {
    const tk::String text = tk::Str(x);
    EXPECT_EQ(static_cast<tk::Integer>(tk::Val(text)), x);
    EXPECT_EQ(static_cast<tk::Integer>(tk::Val(text) - 1.0), x - 1);
  }
  EXPECT_EQ(tk::Str(-3), "-3");
  EXPECT_EQ(tk::Str(tk::Variant(tk::String("Top Of The Shop"))), "Top Of The Shop");
}

TEST(Strings, ValTakesTheNumberTheTextBeginsWith) {
  EXPECT_EQ(tk::Val("  42 and more"), 42.0);
  EXPECT_EQ(tk::Val("07"), 7.0);
  EXPECT_EQ(tk::Val("-2.5e1x"), -25.0);
  EXPECT_EQ(tk::Val("1e"), 1.0) << "an exponent without digits is not part of the number";
  EXPECT_EQ(tk::Val(""), 0.0);
  EXPECT_EQ(tk::Val("abc"), 0.0);
  EXPECT_EQ(tk::Val("."), 0.0);
}

TEST(Strings, SplitKeepsEmptyFieldsAndTheTail) {
  const auto parts = tk::Split(",a,,b,", ",");
  ASSERT_EQ(parts.Count(), 5);
  EXPECT_EQ(parts(0), "");
  EXPECT_EQ(parts(1), "a");
  EXPECT_EQ(parts(2), "");
  EXPECT_EQ(parts(3), "b");
  EXPECT_EQ(parts(4), "");
  EXPECT_EQ(tk::Split("one", ",").Count(), 1);
  EXPECT_EQ(tk::Split("a--b", "--")(1), "b");
  EXPECT_THROW(parts(5), tk::OutOfBoundsException);
  EXPECT_THROW(parts(-1), tk::OutOfBoundsException);
}

TEST(Strings, TheCallTableSplitsIntoNinetyCallsAsWritten) {
  EXPECT_EQ(caller::kNicknameText.size(), 1215u);
  const auto calls = tk::Split(caller::kNicknameText, ",");
  ASSERT_EQ(calls.Ubound(), 89);
  EXPECT_EQ(calls(0), "Kellys Eye");
  EXPECT_EQ(calls(11), "OneDozen");
  EXPECT_EQ(calls(18), "Goobye Teens");
  EXPECT_EQ(calls(41), "Winnie The Poo");
  EXPECT_EQ(calls(48), "PC");
  EXPECT_EQ(calls(55), calls(75)) << "56 and 76 share their call";
  EXPECT_EQ(calls(89), "Top Of The Shop");
  for (tk::Integer i = 0; i < 90; ++i) {
    const tk::String& c = calls(i);
    EXPECT_FALSE(c.empty());
    EXPECT_NE(c.front(), ' ');
    EXPECT_NE(c.back(), ' ');
    EXPECT_LE(c.size(), 19u);
  }
}

TEST(Strings, CompareIsZeroOnlyForTheSameTextIgnoringCase) {
  EXPECT_EQ(tk::RuntimeStringCompare("7", "7"), 0);
  EXPECT_NE(tk::RuntimeStringCompare("70", "7"), 0);
  EXPECT_NE(tk::RuntimeStringCompare("07", "7"), 0);
  EXPECT_NE(tk::RuntimeStringCompare("7 ", "7"), 0);
  EXPECT_EQ(tk::RuntimeStringCompare("BINGO CALLER - ON", "Bingo Caller - on"), 0);
  EXPECT_LT(tk::RuntimeStringCompare("a", "b"), 0);
  EXPECT_GT(tk::RuntimeStringCompare("ab", "a"), 0);
}

}  // namespace
