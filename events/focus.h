// Where the focus of the keyboard goes after an event, and what waits for a press besides the buttons.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// A text other than the rules waits for a click: a hint on show, or the word that there is none.
bool HintTakesClicks(const Main& main);

struct Focus {
  enum class On { Board, Hint, Continue, Button, Elsewhere };
  On Where = On::Elsewhere;
  Button Main::*ItsButton = nullptr;  ///< The button, if it is one.

  friend bool operator==(const Focus&, const Focus&) = default;
};

/// Where the focus goes: nowhere, as long as the control that has it can keep it; else to what waits for the
/// player next. A hint that has just appeared takes it from the board, which got it while questions were
/// open.
Focus FocusFrom(const Main& main, Focus now, bool hintAppeared);

}  // namespace bivouac
