// The keys of the board: those that move its frame, and those that click a field on to what it shall hold.
#pragma once

#include "game/game_state.h"

namespace bivouac {

enum class FrameKey { Left, Right, Up, Down, PageUp, PageDown, Home, End };

/// Where a key takes the frame on a board of so many lines. Home and End go to the ends of the row, with
/// control to those of the board.
int FrameAfter(int size, int cell, FrameKey key, bool control);

/// Clicks a field on until it holds the code. Every click counts, as the mouse's do, up to the one that
/// solves the puzzle or is dropped.
template <class Click>
void ClickUntil(const Main& main, int cell, int code, const Click& click) {
  if (cell > main.Board.Upper() || main.Board[cell] == CELL_TREE) return;
  for (int before = -1; main.Board[cell] != code && main.StepCount != before && !main.PuzzleOver;) {
    before = main.StepCount;
    click(cell);
  }
}

}  // namespace bivouac
