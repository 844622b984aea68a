// New puzzles: layouts drawn at random, proved to have one solution, rated, and appended to the pack.
#pragma once

#include <optional>
#include <string_view>

#include "game/game_state.h"

namespace bivouac {

/// Makes a puzzle of BoardSize, saves it, reports it and starts it. Yields all the while; there is no cancel
/// but the end of the program.
void cmdGenerate_Click(Main& main);

/// Levels from 1 to 5, both included.
struct LevelRange {
  int Lowest = 1;
  int Highest = 5;
  bool Holds(int level) const { return level >= Lowest && level <= Highest; }
};
/// "3" or "2-4"; nothing for any other text.
std::optional<LevelRange> ReadLevels(std::string_view text);

/// Asks for a level, then does what cmdGenerate_Click does, but that puzzles of other levels are dropped.
/// Ends without a puzzle, in the state No game, where none is found in ten seconds, which a box tells, or
/// after EndMaking.
void MakePuzzleOfLevel(Main& main);
/// Ends the making of a puzzle of a level as soon as may be. Of no avail for cmdGenerate_Click.
void EndMaking(Main& main);

/// The making alone: draws layouts until one has a single solution and the rater can finish it. PuzzleRec
/// becomes its record, Board its finished board, Level and Difficulty its rating, and the hidden captions its
/// clues. Seeds are taken from Desktop::RandomSeed, one an attempt. Requires: the board is laid out for
/// BoardSize.
void MakePuzzle(Main& main);

}  // namespace bivouac
