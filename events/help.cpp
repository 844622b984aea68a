#include "events/help.h"

namespace bivouac {
namespace {

constexpr const char* kOtherKeys =
    ". S says the time, the steps and the tents left. Tab goes from control to control, the board comes last."
    "\nON THE BOARD: Arrow keys, Page Up, Page Down, Home, End, Ctrl+Home and Ctrl+End move the frame. Space "
    "and Enter click. G, T and O click the field on until it is grass, tent or open. Enter or Escape ends a "
    "hint. Drag over open fields to make them all grass. Ctrl+B remembers the step, Ctrl+Shift+B undoes back "
    "to "
    "it.";

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

std::string HelpText(KeysOf keysOf) {
  std::string text = std::string(RulesText()) + "\n\nKEYS: ";
  std::string_view between;
  for (const ControlRow& row : ControlTable()) {
    const std::string_view keys = keysOf(row);
    if (keys.empty()) continue;
    text += std::string(between) + Joined(keys, " or ") + ": " + std::string(row.Caption);
    between = ", ";
  }
  return text + kOtherKeys;
}

}  // namespace bivouac
