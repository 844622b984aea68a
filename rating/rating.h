// The rater: solves PuzzleRec silently, by logic alone, and says how hard that was.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "deduction/find.h"
#include "deduction/lines.h"
#include "game/game_state.h"

namespace bivouac {

/// Rates PuzzleRec for BoardSize. `result` is the level, 1 to 5, or -1 if the rules cannot finish the puzzle
/// or a run-time error ended them. Sets Difficulty and overwrites Board, which then holds the board as the
/// rules left it. The captions of the clue labels are read by the spare-run passes only, and may belong to
/// another puzzle. BlinkTop is used as scratch and ends at -1 or 0, or as it was.
void RatePuzzle(Main& main, int& result);

struct Rater;

/// What a pass does besides acting on its find and sweeping around tents that it placed.
enum class AlsoDoes {
  Nothing,
  LeavesOneMark,    ///< BlinkTop is 0 after a success.
  ClearsMarks,      ///< BlinkTop is -1 after every run.
  SweepsInAnyCase,  ///< Sweeps after a success that placed grass alone, too.
};

/// A pass of the rater: one deduction, made at the first place where it holds. The hint that explains the
/// same deduction has the pass's name without "Pass"; what it looks for is told in deduction/finds.h.
struct Pass {
  std::string_view Name;
  int Tier;  ///< 1 to 5: its price is Tier steps.
  LineKind Along;
  bool (*Look)(Lines& lines, Find& find);  ///< May end in a RunTimeError.
  AlsoDoes Also = AlsoDoes::Nothing;
};

/// The passes in the order in which the frame walks them.
inline constexpr int kPassCount = 23;
const FixedArray<Pass, kPassCount>& PassTable();

/// Runs a pass. True if it changed the board. May end in a RunTimeError.
bool RunPass(Rater& rater, const Pass& pass);

/// What a rating did.
struct RatingTrace {
  std::vector<int> Passes;  ///< Indexes into PassTable of the passes that succeeded, in order.
  int FaultyPass = -1;      ///< The pass that a run-time error ended; -1 if none did.
};

/// The names of those passes, joined by commas; the faulty one last, behind a "!".
std::string PassNames(const RatingTrace& trace);

/// The same rating, traced. What the trace held before is dropped.
void RatePuzzle(Main& main, int& result, RatingTrace& trace);

}  // namespace bivouac
