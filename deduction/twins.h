// Twin trees: two trees side by side, shut in at both ends, with open fields on both sides of each. They can
// be served in two ways only, tents on one diagonal or on the other.
#pragma once

#include <array>
#include <optional>

#include "deduction/lines.h"

namespace bivouac {

/// What follows from a pair of twins.
enum class TwinOutcome {
  Ring,      ///< The fields two lines away that touch both ways are grass.
  OneTent,   ///< A tent on the one field that tells the two ways apart, since there is one solution only.
  TwoTents,  ///< Tents on one diagonal of the twins, for the same reason.
};

struct TwinFind {
  TwinOutcome Outcome;
  int FirstTree;
  int SecondTree;
  int Count;                 ///< Fields decided, 1 to 4.
  std::array<int, 4> Cells;  ///< In the order in which they are found.
};

/// The first pair that decides a field, line by line from the second to the last but one.
std::optional<TwinFind> FindTwins(const Array<int>& board, Axis axis);
/// The same for a board whose lines are kept. Requires: `lines` are the lines of `board`.
std::optional<TwinFind> FindTwins(const Array<int>& board, const Lines& lines);

}  // namespace bivouac
