// Games that were left to be taken up again. Each is a text file in DataDir, one a puzzle and player,
// "Kept10-12-01.txt" for puzzle 12 of size 10 and player 1 (00 is free play):
//
//   puzzle Bivouac 10x10 ...       the line of game/puzzle_line.h
//   clock 192                      seconds on the clock
//   state paused                   or "playing"
//   steps 41                       clicks in force
//   log 13 13 27 ...               the cell of each click, those too that were undone and can be done again
//   rows 10020...                  colours of the clues: 0 as usual, 1 green, 2 red
//   columns 00100...
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "game/game_state.h"

namespace bivouac {

struct KeptGame {
  /// Its size, trees and clues; as ReadKeptGame returns it, the whole record of the pack.
  PackRecord Puzzle;
  int Clock = 0;  ///< Seconds.
  bool Paused = false;
  int Steps = 0;         ///< 0 to the length of the log.
  std::vector<int> Log;  ///< Cells.
  std::vector<TextColour> RowColours, ColColours;
};

/// Keeps the game that is on: for the puzzle in PuzzleRec and the current player, in the place of an older
/// one. Requires: a game is on. Returns the sentence that tells of it; a box tells of a puzzle that does not
/// stand in the pack, and of a file that cannot be written, and nothing is returned.
std::optional<std::string> KeepGame(Main& main);

/// The current player's kept games of BoardSize by the puzzles' numbers; nothing for a file that is damaged.
std::map<int, std::optional<KeptGame>> FindKeptGames(const Main& main);

/// "kept at 03:12 with 41 steps".
std::string KeptText(const KeptGame& game);

/// Reads the current player's kept game of a puzzle of BoardSize. Errors: InputError, a sentence, if it is
/// damaged or the pack has another puzzle under that number; a file error if it cannot be read.
KeptGame ReadKeptGame(const Main& main, int number);

/// Deletes the current player's kept game of the present puzzle, if there is one. File errors are ignored.
void DropKeptGame(const Main& main);

}  // namespace bivouac
