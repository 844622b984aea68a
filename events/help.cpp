#include "events/help.h"

namespace bivouac {
namespace {

constexpr const char* kPlayHelp =
    "A CLICK makes an open field grass, grass a tent, and a tent open again. On a tree it tells, at a price "
    "in seconds, where its tent stands.\nTHE NUMBERS: a tick says that the line is finished, a line under a "
    "red number that it has too many tents.\nLEVELS go from 1, for beginners, to 5, by the hardest deduction "
    "that the puzzle needs.\n";

constexpr const char* kOtherKeys =
    ". S says the time, the steps and the tents left. Tab goes from control to control, the board comes last."
    "\nON THE BOARD: Arrow keys, Page Up, Page Down, Home, End, Ctrl+Home and Ctrl+End move the frame. Space "
    "and Enter click. G, T and O click the field on until it is grass, tent or open. Enter or Escape ends a "
    "hint. Drag over open fields to make them all grass. Ctrl+B remembers the step, Ctrl+Shift+B undoes back "
    "to it.";

std::string Joined(std::string_view keys, std::string_view between) {
  std::string text;
  for (const char sign : keys) {
    if (sign == ' ') {
      text += between;
    } else {
      text += sign;
    }
  }
  return text;
}

}  // namespace

std::string_view DescriptionOf(const ControlRow& row) {
  return row.ToolTip.empty() ? row.Description : row.ToolTip;
}

std::string TipOf(const ControlRow& row, std::string_view keys) {
  std::string tip(row.ToolTip);
  if (row.Kind != ControlKind::Button || !tip.empty()) return tip;
  tip = row.Description;
  return keys.empty() ? tip : tip + " (" + Joined(keys, ", ") + ")";
}

std::string ListKeyHelp(std::string_view levelKey) {
  return "\nTHE PUZZLES: F2 lists those of the size: levels, times, and the rules that each needs. Ctrl+S "
         "keeps a game, and F2 leads back to it. " +
         std::string(levelKey) +
         " makes a puzzle of a level. Ctrl+C copies the puzzle as a line of text and as a picture, Ctrl+V "
         "opens one that was copied.";
}

std::string HelpLines(KeysOf keysOf) {
  std::string text = std::string(kPlayHelp) + "KEYS: ";
  std::string_view between;
  for (const ControlRow& row : ControlTable()) {
    const std::string_view keys = keysOf(row);
    if (keys.empty()) continue;
    text += std::string(between) + Joined(keys, " or ") + ": " + std::string(row.Caption);
    between = ", ";
  }
  return text + kOtherKeys;
}

std::string HelpText(KeysOf keysOf) {
  return std::string(RulesText()) + "\n\n" + HelpLines(keysOf);
}

}  // namespace bivouac
