// Numbers and paths as text.
#pragma once

#include <string>
#include <string_view>

namespace bivouac {

/// The text without the blanks at its right end.
std::string TrimRight(std::string text);

/// The path itself if it ends in the separator of folders, otherwise the path with one added.
std::string WithBackslash(std::string path);

/// The last two digits of value + 100, for names of files and settings and for every clock. The text is
/// shorter only for values below -90, which damaged files may hold.
std::string TwoDigits(long value);

/// How many of a thing there are: "1 step", "2 steps".
std::string Counted(long number, std::string_view thing);

/// Bytes of the character at the front of a text in UTF-8; 1 for a byte that is no part of one.
/// Requires: the text is not empty.
std::size_t CharacterBytes(std::string_view text);

/// A size such as "12x12", with a proper sign.
std::string SizeText(int size);

/// The text with '?' for what would break a line or a table, or steer a terminal, and for what is no text: a
/// file's name may hold anything.
std::string OnOneLine(const std::string& text);

/// At most seven significant digits, whatever the language of the system.
std::string SevenDigits(float number);

/// The numeric value of the leading part of a text: leading blanks, a sign, digits, a point, an exponent.
/// What follows is ignored; 0 if there is no number.
double LeadingNumber(std::string_view text);

/// Rounds to the nearest integer, a half to the even one. Requires: the result fits the range of a long.
long RoundHalfEven(double value);

/// The whole text as an integer of 16 bits, rounded half to even. Blanks around it are allowed.
/// Errors: NotANumber if the text is anything but a number, Overflow outside -32768..32767.
int IntegerFromText(std::string_view text);

/// The value itself. Errors: Overflow outside -32768..32767.
int CheckedInteger(long value);

}  // namespace bivouac
