// What holds after every event, whatever a player does: one table, each invariant with the sentence that it
// guards.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "game/game_state.h"

namespace bivouac {

/// The game, and what a player who watches it knows besides.
struct Watched {
  Main& main;  ///< Unchanged by a check, but for what it puts back.
  /// The board as the last start of play left it.
  Array<int> StartBoard;
  /// A damaged puzzle was opened, and its opening broke off: until another opens, the board and the window
  /// are what it left.
  bool OpeningBrokeOff = false;
  /// The size was changed since the last puzzle: the clues and their colours are still that puzzle's.
  bool NoPuzzleOfThisSize = true;
};

struct Invariant {
  std::string_view Sentence;
  /// Returns what is wrong, empty if nothing is.
  std::string (*Check)(Watched& watched);
};

std::span<const Invariant> Invariants();

}  // namespace bivouac
