// What holds after every event, whatever a player does: one table, each invariant with the sentence that it
// guards.
#pragma once

#include <string>
#include <string_view>

#include "game/game_state.h"
#include "storage/players.h"

namespace bivouac {

/// What an open box or dialog holds in the middle of its work, where other things hold then than between
/// events.
enum class Amid {
  Nothing,
  Solved,       ///< The clock stands, the times are being kept, and the game is not over yet.
  WrongFields,  ///< No hint is on show yet.
  Report,       ///< The puzzle is made, and its game has not begun.
  FileError,    ///< An opening breaks off, or a time is lost.
  Players,      ///< Who plays may change.
};

/// What a box of that title holds; `outer`, where a box says nothing of it.
Amid AmidOf(const Main& main, std::string_view title, Amid outer);

/// The game, and what a player who watches it knows besides.
struct Watched {
  Main& main;  ///< Unchanged by a check, but for what it puts back.
  const FormNamen& form;
  /// The board as the last start of play left it.
  Array<int> StartBoard;
  /// A damaged puzzle was opened, and its opening broke off: until another opens, the board and the window
  /// are what it left.
  bool OpeningBrokeOff = false;
  /// The size was changed since the last puzzle: the clues and their colours are still that puzzle's.
  bool NoPuzzleOfThisSize = true;
  Amid Now = Amid::Nothing;
};

/// The sentence of the first invariant that does not hold, and what is wrong; empty if all hold.
std::string Broken(Watched& watched);

/// What is wrong with the puzzle that was made last, as the pack keeps it; empty if nothing is, or if the
/// pack could not take it. Guards: what is in a pack has one solution, whatever was pressed while it was
/// made.
std::string WrongInMadePuzzle(const Main& main);

}  // namespace bivouac
