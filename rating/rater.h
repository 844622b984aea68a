// The working state of one rating.
#pragma once

#include "deduction/find.h"
#include "deduction/lines.h"

namespace bivouac {

/// The board of a rating. Board of Main holds the cells; rows and columns follow it.
struct Rater {
  /// Sets Board up from the trees of PuzzleRec; all other cells are open.
  /// Errors: IndexOutsideArray if Board is not laid out for BoardSize.
  explicit Rater(Main& main_);

  Main& main;
  const int Size;  ///< Lines of the board.
  Lines Rows;
  Lines Columns;
  int Wrong = 0;  ///< Cells that differ from the finished puzzle.
  Find Found;     ///< What the present pass found.

  /// Errors: IndexOutsideArray for a cell off the board.
  void Set(int cell, int code);
  /// Does what the find says, in its order: a tent is placed whatever stands there, grass only if the field
  /// is open. Returns whether it placed a tent. Errors: as Set; what was done by then stays.
  bool Act();
  /// Turns every open field that touches a tent, diagonally too, into grass.
  void SweepTentNeighbours();
};

}  // namespace bivouac
