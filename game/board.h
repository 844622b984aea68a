// Operations on the whole board, and the clues.
#pragma once

#include "game/game_state.h"

namespace bivouac {

inline int RowOf(const Main& main, int cell) {
  return cell / main.BoardSize;
}
inline int ColOf(const Main& main, int cell) {
  return cell % main.BoardSize;
}

/// The clue of a row or column, read back from its caption. Errors: NotANumber if the caption is none.
int RowClue(const Main& main, int row);
int ColClue(const Main& main, int col);

/// Gives a cell of the grid a tile. Tiles are numbered 0 to 7; a cell that the grid does not have paints
/// nothing.
void SetPicture(Main& main, int cell, int tile);

/// Whether a direction is one of the four: a tree with any other has no tent.
constexpr bool IsDirection(int direction) {
  return direction >= NORTH && direction <= WEST;
}

/// What to add to a cell to reach its neighbour in a direction, NORTH to WEST. At the edge of the board that
/// is no neighbour: past the left or right edge it lands in the next row.
constexpr int StepOf(int size, int direction) {
  const int step = direction == NORTH || direction == SOUTH ? size : 1;
  return direction == NORTH || direction == WEST ? -step : step;
}

/// The direction back.
constexpr int OppositeOf(int direction) {
  return direction <= EAST ? direction + 2 : direction - 2;
}

/// Calls visit(neighbour, direction) for the four neighbours of a cell that lie on a board of so many lines:
/// north, east, south, west.
template <class Visit>
void ForEachSide(int size, int cell, Visit visit) {
  const int row = cell / size;
  const int col = cell % size;
  if (row > 0) visit(cell - size, NORTH);
  if (col < size - 1) visit(cell + 1, EAST);
  if (row < size - 1) visit(cell + size, SOUTH);
  if (col > 0) visit(cell - 1, WEST);
}

/// Calls visit(neighbour) for the eight neighbours that lie on the board, north-west first, row by row, until
/// one visit returns true. Returns whether one did.
template <class Visit>
bool AnyAround(const Main& main, int cell, Visit visit) {
  const int row = RowOf(main, cell);
  const int col = ColOf(main, cell);
  for (int r = row - 1; r <= row + 1; ++r) {
    for (int c = col - 1; c <= col + 1; ++c) {
      if (r < 0 || c < 0 || r >= main.BoardSize || c >= main.BoardSize || (r == row && c == col)) continue;
      if (visit(r * main.BoardSize + c)) return true;
    }
  }
  return false;
}

/// True if a tree stands north, east, south or west of the cell.
bool TouchesTree(const Main& main, int cell);

/// What a line holds.
struct LineCount {
  int Tents = 0;
  int Open = 0;
};
/// Counts the line that begins with a cell; `step` leads from cell to cell.
LineCount CountLine(const Main& main, int first, int step);

/// When a line turns green.
enum class LineRule {
  Click,  ///< Its tents are the clue and nothing is open.
  Undo,   ///< Its tents are the clue, whatever is still open.
};

/// Recounts the row and the column of a cell and colours their clues, the row first.
void RefreshLineColours(Main& main, int cell, LineRule rule);

/// What FillAroundTent writes.
enum class FillTarget {
  Board = 0,       ///< Nothing is drawn.
  DrawnBoard = 1,  ///< The tiles follow.
  Solution = 2,
};

/// Turns the open ones among the eight neighbours of a tent into grass.
void FillAroundTent(Main& main, int tent, FillTarget target);

}  // namespace bivouac
