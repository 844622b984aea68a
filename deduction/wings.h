// Wings: three trees in an L. The fields around them are so entangled that some are spoken for whatever the
// three trees do, and other trees nearby lose those fields.
#pragma once

#include <array>
#include <optional>

#include "deduction/lines.h"

namespace bivouac {

/// Formation 1: wing trees north and west of the centre; 2: north and east; 3: west and south; 4: east and
/// south.
struct Wing {
  int Centre;
  int Formation;
  int A;
  int B;
  int OpenA;  ///< Open neighbours of A, 2 or 3.
  int OpenB;
};

/// What a rule concludes, and so which sentence explains it.
enum class WingMessage {
  TA,  ///< Two sides of another tree are left, the field between them is grass.
  TB,  ///< Another tree has one side left.
  TC,  ///< Two other trees have one side left each.
  TD,  ///< A tent between the wing trees, and grass beyond, if any.
  TE,  ///< Grass beyond a wing tree.
};

/// A mark as a hint draws it: 3 a tree, -2 a field that may or must take a tent, -1 a field that must be
/// grass.
struct WingMark {
  int Cell;
  int Tile;
};

struct WingFind {
  Wing Formation;
  WingMessage Message;
  int Count;                      ///< Marks, 1 to 5, in the order of the hint.
  std::array<WingMark, 5> Marks;  ///< Cells may lie off the board.
};

/// The hint never uses the rule of two outside trees (W4) in formation 4; the rater does.
enum class TwoTreesRule { NotInFormation4, InAllFormations };

/// The first wing, row by row, and in it the first of the nine rules, that decides something.
/// Errors: IndexOutsideArray where a rule reads a field beyond the first or last of the board. Beyond the
/// left or right edge the index lands in the neighbouring row, and that field decides.
std::optional<WingFind> FindWing(const Array<int>& board, int size, TwoTreesRule twoTrees);
/// The same for a board whose rows are kept. Requires: `rows` are the rows of `board`.
std::optional<WingFind> FindWing(const Array<int>& board, const Lines& rows, TwoTreesRule twoTrees);

}  // namespace bivouac
