#include "game/text.h"

#include <gtest/gtest.h>

#include "game/error.h"

namespace bivouac {
namespace {

TEST(Text, LeadingNumberReadsWhatItCanAndIgnoresTheRest) {
  EXPECT_EQ(LeadingNumber("3abc"), 3);
  EXPECT_EQ(LeadingNumber("  -2.5e1x"), -25);
  EXPECT_EQ(LeadingNumber("+7"), 7);
  EXPECT_EQ(LeadingNumber(".5"), 0.5);
  EXPECT_EQ(LeadingNumber("1e"), 1);
  EXPECT_EQ(LeadingNumber("abc"), 0);
  EXPECT_EQ(LeadingNumber("inf"), 0);
  EXPECT_EQ(LeadingNumber("+-3"), 0);
  EXPECT_EQ(LeadingNumber(""), 0);
  EXPECT_GT(LeadingNumber("1e999"), 1e300);
  EXPECT_EQ(LeadingNumber("1e-999"), 0);
}

TEST(Text, IntegerFromTextIsStrictAndRoundsHalvesToEven) {
  EXPECT_EQ(IntegerFromText(" 12 "), 12);
  EXPECT_EQ(IntegerFromText("2.5"), 2);
  EXPECT_EQ(IntegerFromText("3.5"), 4);
  EXPECT_EQ(IntegerFromText("-32768"), -32768);
  const auto errorOf = [](const char* text) {
    try {
      IntegerFromText(text);
    } catch (const RunTimeError& error) {
      return error.Number();
    }
    return ErrorNumber::InvalidCall;
  };
  EXPECT_EQ(errorOf(""), ErrorNumber::NotANumber);
  EXPECT_EQ(errorOf("12 trees"), ErrorNumber::NotANumber);
  EXPECT_EQ(errorOf("32768"), ErrorNumber::Overflow);
  EXPECT_EQ(errorOf("-1e300"), ErrorNumber::Overflow);
}

TEST(Text, TwoDigitsKeepsTheLastTwo) {
  EXPECT_EQ(TwoDigits(6), "06");
  EXPECT_EQ(TwoDigits(100), "00");
  EXPECT_EQ(TwoDigits(105), "05");
}

}  // namespace
}  // namespace bivouac
