// What the game says to those who listen instead of looking: texts made of the state alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "game/game_state.h"

namespace bivouac {

/// A field and what a player needs to decide it: "Row 3, column 4, open. Row: 1 of 2 tents, 3 open. Column:
/// finished." A field that a hint marks is named by its mark. Nothing is said of lines while no game is on.
/// Requires: the cell lies on the board.
std::string SpokenField(const Main& main, int cell);
/// Its first sentence.
std::string SpokenFieldAlone(const Main& main, int cell);

/// What a clue is: "Tents in row 1, finished". `line` is its line, such as "row 1".
std::string SpokenClue(const std::string& line, TextColour colour);

/// The sentence of a hint without its words about clicking; other texts as they are.
std::string SentenceOf(std::string_view text);
/// That of the text in lblHint.
std::string SpokenHint(const Main& main);
/// The fields that blink and as what: "Row 3 column 4: grass; row 5 columns 1 and 2: tent." Empty if none
/// does.
std::string SpokenMarks(const Main& main);

/// "Time 02:05, 14 steps, 3 tents left."
std::string SpokenProgress(const Main& main);

/// Where somebody who listens is, and so what was said already.
struct Listener {
  enum class On { Board, Hint, Elsewhere };
  On Focus = On::Elsewhere;
  int Frame = 0;         ///< The cell in the board's frame.
  bool Clicked = false;  ///< That cell was clicked since the last time that something was told.
};

/// What a listener knows, to be told what changed since.
class Told {
 public:
  /// What changed since the last call, in at most two short sentences; empty if nothing is worth a word.
  std::string WhatChanged(const Main& main, const Listener& listener);

 private:
  std::string WhatHappened(const Main& main, const Listener& listener) const;
  std::string WhichFields(const Main& main, const Listener& listener) const;

  bool over_ = true;
  bool making_ = false;
  bool paused_ = false;
  bool hint_ = false;
  std::string hintText_;
  int size_ = 0;
  int steps_ = 0;
  std::vector<int> board_;
  std::vector<TextColour> clues_;  ///< Rows, then columns.
};

}  // namespace bivouac
