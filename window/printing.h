// The position on the board on paper, by the pack maker that may lie beside the game.
#pragma once

#include <QProcess>
#include <QString>
#include <QTimer>

#include "events/event_road.h"
#include "game/game_state.h"

namespace bivouac {

/// Prints by way of a PDF, which the desktop's viewer shows.
class Printing {
 public:
  /// Looks for the pack maker in the program's folder.
  Printing(Main& main, EventRoad& road);
  Printing(const Printing&) = delete;
  Printing& operator=(const Printing&) = delete;
  ~Printing();

  bool IsOffered() const { return !packMaker_.isEmpty(); }
  /// Begins to make the PDF of the puzzle on the board as it stands. Once it is there it is opened, and
  /// outlives the game; what went wrong is said in a box. Nothing happens while there is no puzzle, a pause
  /// hides it, or a page is being made. Requires: IsOffered.
  void PrintPosition();

 private:
  void Show();
  void SayItFailed(const QString& why);

  Main& main_;
  EventRoad& road_;
  QString packMaker_;
  QString page_;
  QTimer patience_;
  QProcess process_;
};

}  // namespace bivouac
