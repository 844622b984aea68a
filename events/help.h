// What a window says of itself: tips, descriptions and the text of the help box.
#pragma once

#include <string>
#include <string_view>

#include "game/controls.h"

namespace bivouac {

/// The keys of a control, with blanks between; a window that cannot have one of them gives another.
using KeysOf = std::string_view (*)(const ControlRow& row);
inline std::string_view KeysOfTable(const ControlRow& row) {
  return row.Keys;
}

inline constexpr const char* kProgressKey = "S";
inline constexpr const char* kLevelKey = "Ctrl+Shift+N";
/// `levelKey` makes a puzzle of a level.
std::string ListKeyHelp(std::string_view levelKey);
inline constexpr const char* kPrintKeyHelp = "\nON PAPER: Ctrl+P prints the position.";
/// The guide's place follows.
inline constexpr const char* kGuideHelp = "\nTHE GUIDE shows every deduction on a board: ";

/// What a control does.
std::string_view DescriptionOf(const ControlRow& row);
/// The same for eyes, with the keys where there are any.
std::string TipOf(const ControlRow& row, std::string_view keys);

/// What a click does, what the numbers show, the levels and the keys, each on a line that begins with its
/// subject.
std::string HelpLines(KeysOf keysOf);
/// The same under the rules, for the help box.
std::string HelpText(KeysOf keysOf);

}  // namespace bivouac
