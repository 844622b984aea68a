// The facts behind a hint's sentence: what a player checks on the board who does not take its word.
#pragma once

#include <string>
#include <vector>

#include "hints/hints.h"

namespace bivouac {

/// Fields by row and column, counted from 1, in their order on the board: "r3c4"; three or more side by side
/// are "r3c4-6".
std::string FieldNames(const Main& main, std::vector<int> cells);

enum class Naming {
  Short,   ///< "r3c4"
  Spoken,  ///< "row 3 column 4"
};
/// Facts such as "tree r4c3: open beside it only r3c3" and "rows 1 to 4: 6 tents, 5 trees", told of the find
/// alone and true of the board as it is. At least one. Requires: the hint was found on that board.
/// Errors: NotANumber, Overflow where a clue is none.
std::vector<std::string> EvidenceOf(const Main& main, const FoundHint& hint, Naming naming = Naming::Short);
/// SpokenMarks, and behind them the evidence of the hint on show.
std::string SpokenMarksAndEvidence(const Main& main);

}  // namespace bivouac
