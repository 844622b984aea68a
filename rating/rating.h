// The rater: solves PuzzleRec silently, by logic alone, and says how hard that was.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "game/game_state.h"

namespace bivouac {

/// Rates PuzzleRec for BoardSize. `result` is the level, 1 to 5, or -1 if the rules cannot finish the puzzle
/// or a run-time error ended them. Sets Difficulty and overwrites Board. The captions of the clue labels are
/// read by the spare-run passes only, and may belong to another puzzle.
void RatePuzzle(Main& main, int& result);

/// A pass of the rater as the frame walks them, in order.
struct PassRow {
  std::string_view Name;
  int Tier;  ///< 1 to 5: its price is Tier steps.
};
std::span<const PassRow> PassTable();

/// What a rating did: indexes into PassTable of the passes that succeeded, in order.
struct RatingTrace {
  std::vector<int> Passes;
  int FaultyPass = -1;  ///< The pass that a run-time error ended; -1 if none did.
};
/// The same rating, traced.
void RatePuzzle(Main& main, int& result, RatingTrace& trace);

}  // namespace bivouac
