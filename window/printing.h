// The position on the board on paper, by the pack maker that may lie beside the game.
#pragma once

#include <QString>
#include <QTemporaryDir>

#include "game/game_state.h"

namespace bivouac {

/// Prints by way of a PDF, which the desktop's viewer shows.
class Printing {
 public:
  /// Looks for the pack maker in the program's folder.
  Printing();

  bool IsOffered() const { return !packMaker_.isEmpty(); }
  /// Makes the PDF of the puzzle on the board as it stands, and opens it. Nothing happens while there is no
  /// puzzle or a pause hides it. Says in a box what went wrong. Requires: IsOffered.
  void PrintPosition(Main& main);

 private:
  QString packMaker_;
  QTemporaryDir folder_;  // Removed when the program ends.
};

}  // namespace bivouac
