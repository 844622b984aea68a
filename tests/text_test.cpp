#include "game/text.h"

#include <gtest/gtest.h>

#include "game/error.h"

namespace bivouac {
namespace {

TEST(Text, LeadingNumberReadsWhatItCanAndIgnoresTheRest) {
  const std::pair<const char*, double> cases[] = {
      {"3abc", 3}, {"  -2.5e1x", -25}, {"+7", 7},  {".5", 0.5}, {"1e", 1},
      {"abc", 0},  {"inf", 0},         {"+-3", 0}, {"", 0},     {"1e-999", 0},
  };
  for (const auto& [text, number] : cases) EXPECT_EQ(LeadingNumber(text), number) << text;
  EXPECT_GT(LeadingNumber("1e999"), 1e300);
}

TEST(Text, IntegerFromTextIsStrictAndRoundsHalvesToEven) {
  const std::pair<const char*, int> numbers[] = {{" 12 ", 12}, {"2.5", 2}, {"3.5", 4}, {"-32768", -32768}};
  for (const auto& [text, number] : numbers) EXPECT_EQ(IntegerFromText(text), number) << text;
  const std::pair<const char*, ErrorNumber> errors[] = {{"", ErrorNumber::NotANumber},
                                                        {"12 trees", ErrorNumber::NotANumber},
                                                        {"32768", ErrorNumber::Overflow},
                                                        {"-1e300", ErrorNumber::Overflow}};
  for (const auto& [text, number] : errors) {
    try {
      ADD_FAILURE() << IntegerFromText(text);
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), number) << text;
    }
  }
}

TEST(Text, TwoDigitsKeepsTheLastTwo) {
  for (const auto& [number, text] : {std::pair{6, "06"}, {100, "00"}, {105, "05"}}) {
    EXPECT_EQ(TwoDigits(number), text);
  }
}

TEST(Text, WhatSteersATerminalIsShownAsAQuestionMark) {
  const std::pair<const char*, const char*> cases[] = {{"a\nb\x1B[2J\x7F", "a?b?[2J?"},
                                                       {"\xC2\x9B"
                                                        "2J",
                                                        "?2J"},
                                                       {"\xC2\xA0\xC3\xA9\x9B", "\xC2\xA0\xC3\xA9?"}};
  for (const auto& [text, line] : cases) EXPECT_EQ(OnOneLine(text), line);
}

}  // namespace
}  // namespace bivouac
