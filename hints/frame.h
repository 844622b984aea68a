// What the stages of the chain share: rules as values, the report of a find, marks and clues.
#pragma once

#include <string_view>

#include "deduction/axis.h"
#include "game/game_state.h"
#include "game/sound.h"

namespace bivouac {

/// What a hint costs, plays and says.
struct HintRule {
  int Seconds;
  Sound Played;
  std::string_view Text;
};

/// A rule for rows and for columns.
struct HintLineRule {
  HintRule Row;
  HintRule Column;

  const HintRule& Of(Axis axis) const { return axis.direction == Direction::Rows ? Row : Column; }
};

inline constexpr std::string_view kNoMoreHints = "No more logical hints available...";

/// Puts the hint on show. The marks are in the blink list already.
void ReportFind(Main& main, const HintRule& rule);

/// Tests the eight neighbours that lie on the board.
bool HasOpenNeighbour(const Main& main, int cell);
/// Marks two trees and the field that becomes grass because of them.
void AddBlinkTriple(Main& main, int firstTree, int secondTree, int field);

inline Axis RowsOf(const Main& main) {
  return {Direction::Rows, main.BoardSize};
}
inline Axis ColumnsOf(const Main& main) {
  return {Direction::Columns, main.BoardSize};
}
/// What to add to a cell to reach its neighbour in that direction.
int StepOf(const Main& main, int direction);

/// The clue of a line. Errors: NotANumber if its caption is none.
int ClueOf(const Main& main, Axis axis, int line);

/// Marks every cell of a line at these positions, in rising order.
void MarkPositions(Main& main, Axis axis, int line, Positions positions, int tile);

}  // namespace bivouac
