// What is known of the puzzles of a size, for a player who chooses one.
#pragma once

#include <string>
#include <vector>

#include "game/game_state.h"

namespace bivouac {

/// A puzzle of the pack. Times are in seconds, 0 where there is none.
struct ListedPuzzle {
  bool Readable = false;  ///< False for a record that is not wholly in the pack; then all else is empty.
  PackRecord Record;
  int Trees = 0;
  int BestTime = 0;
  std::string BestBy;  ///< Empty where nobody of the list of players holds it.
  int OwnTime = 0;     ///< The current player's; in free play there is none.
};

/// The puzzles of BoardSize in the order of their numbers, as many as PuzzleCount says. Reads files only; a
/// file error leaves out what it concerns.
std::vector<ListedPuzzle> ListPuzzles(const Main& main);

/// Seconds that tell that a puzzle was solved: the own time, in free play anybody's; 0 if it was not.
int SolvedTime(const Main& main, const ListedPuzzle& puzzle);

/// "37 of 100 solved, half of them in 04:10 or less".
std::string SolvedText(const Main& main, const std::vector<ListedPuzzle>& puzzles);

/// Seconds as minutes and seconds, "04:10"; minutes beyond 99 keep all their digits.
std::string TimeText(int seconds);

/// The number of the puzzle of a day among the first hundred of a size, the same for everybody; no puzzle
/// comes twice in a hundred days. `day` counts from any fixed date. Requires: count at least 1.
int PuzzleOfDay(long day, int size, int count);

}  // namespace bivouac
