#include "game/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <system_error>

#include "game/error.h"

namespace bivouac {
namespace {

constexpr char kFolderSeparator = '/';

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

#ifdef __cpp_lib_to_chars

std::optional<double> TakeDigits(std::string_view& digits) {
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc::invalid_argument) return {};
  const auto length = static_cast<std::size_t>(end - digits.data());
  if (error == std::errc::result_out_of_range) {
    const std::string_view taken = digits.substr(0, length);
    value = taken.find("e-") != taken.npos || taken.find("E-") != taken.npos ? 0.0 : HUGE_VAL;
  }
  digits.remove_prefix(length);
  return value;
}

#else  // A library without them, on a platform that writes every number in English.

std::optional<double> TakeDigits(std::string_view& digits) {
  // Whole numbers, which clues are, are read in inner loops.
  constexpr std::size_t kExactDigits = 9;
  const std::size_t whole = std::min(digits.find_first_not_of("0123456789"), digits.size());
  if (whole > 0 && whole <= kExactDigits &&
      (whole == digits.size() || std::string_view(".eExX").find(digits[whole]) == std::string_view::npos)) {
    int value = 0;
    for (const char digit : digits.substr(0, whole)) value = value * 10 + (digit - '0');
    digits.remove_prefix(whole);
    return value;
  }
  std::string number(digits);
  // Hexadecimal numbers are none here.
  if (const auto hexadecimal = number.find_first_of("xX"); hexadecimal != number.npos)
    number.resize(hexadecimal);
  char* end = nullptr;
  const double value = std::strtod(number.c_str(), &end);
  if (end == number.c_str()) return {};
  digits.remove_prefix(static_cast<std::size_t>(end - number.c_str()));
  return value;
}

#endif

/// Takes a number off the front of the text. A value too large for a double counts as infinite.
std::optional<double> TakeNumber(std::string_view& text) {
  std::string_view rest = text;
  if (!rest.empty() && rest.front() == '+') rest.remove_prefix(1);
  const bool negative = !rest.empty() && rest.front() == '-' && rest.size() == text.size();
  std::string_view digits = negative ? rest.substr(1) : rest;
  // from_chars would also read "inf" and "nan", which are no numbers here.
  if (digits.empty() || !(digits.front() == '.' || (digits.front() >= '0' && digits.front() <= '9')))
    return {};
  const std::optional<double> value = TakeDigits(digits);
  if (!value) return {};
  text = digits;
  return negative ? -*value : *value;
}

}  // namespace

std::string TrimRight(std::string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

std::string WithBackslash(std::string path) {
  if (path.empty() || path.back() != kFolderSeparator) path += kFolderSeparator;
  return path;
}

std::string TwoDigits(long value) {
  const std::string text = std::to_string(value + 100);
  return text.size() <= 2 ? text : text.substr(text.size() - 2);
}

std::string Counted(long number, std::string_view thing) {
  return std::to_string(number) + ' ' + std::string(thing) + (number == 1 ? "" : "s");
}

std::size_t CharacterBytes(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t bytes = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 1;
  if (bytes > text.size()) return 1;
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return 1;
  }
  return bytes;
}

std::string SizeText(int size) {
  return std::to_string(size) + "\u00d7" + std::to_string(size);
}

std::string OnOneLine(const std::string& text) {
  std::string line;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view character = rest.substr(0, CharacterBytes(rest));
    const auto first = static_cast<unsigned char>(character[0]);
    const bool steers = character.size() == 1 ? first < ' ' || first >= 0x7F
                                              : character >= "\xC2\x80" && character < "\xC2\xA0";
    line += steers ? "?" : character;
    rest.remove_prefix(character.size());
  }
  return line;
}

std::string SevenDigits(float number) {
  char text[32];
#ifdef __cpp_lib_to_chars
  return {text, std::to_chars(text, text + sizeof text, number, std::chars_format::general, 7).ptr};
#else
  return {text,
          static_cast<std::size_t>(std::snprintf(text, sizeof text, "%.7g", static_cast<double>(number)))};
#endif
}

double LeadingNumber(std::string_view text) {
  text = WithoutLeadingBlanks(text);
  return TakeNumber(text).value_or(0.0);
}

long RoundHalfEven(double value) {
  return std::lrint(value);
}

int IntegerFromText(std::string_view text) {
  text = WithoutLeadingBlanks(text);
  const std::optional<double> value = TakeNumber(text);
  if (!value || !WithoutLeadingBlanks(text).empty()) {
    throw RunTimeError(ErrorNumber::NotANumber, "text that is no number");
  }
  if (!(*value > -32769.0 && *value < 32768.0)) return CheckedInteger(*value < 0 ? -40000 : 40000);
  return CheckedInteger(RoundHalfEven(*value));
}

int CheckedInteger(long value) {
  if (value < -32768 || value > 32767) {
    throw RunTimeError(ErrorNumber::Overflow, "overflow: a number outside the range of 16 bits");
  }
  return static_cast<int>(value);
}

}  // namespace bivouac
