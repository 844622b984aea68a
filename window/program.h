// The whole program: the state, the window that draws it, and the desktop, wired together.
#pragma once

#include "events/event_road.h"
#include "game/game_state.h"
#include "storage/players.h"
#include "window/accessibility.h"
#include "window/main_window.h"
#include "window/player_dialog.h"
#include "window/qt_desktop.h"
#include "window/sound_player.h"

namespace bivouac {

/// Ends the process with a status under Wayland, whose connection Qt 6.4 may take down for ever: two of its
/// threads wait for one another. Does nothing elsewhere. To be called last, when nothing is left to be kept.
void LeaveWayland(int status);

/// Requires: a QApplication.
class Program {
 public:
  Program();

  /// Starts the game up and lets events run until the program ends. Returns its exit status.
  int Run();

  Main& State() { return main_; }
  FormNamen& Players() { return form_; }
  MainWindow& Window() { return window_; }
  const EventRoad& Road() const { return road_; }
  /// Made when it is first asked for: most runs never show it.
  PlayerDialog& Dialog();

 private:
  void Draw();
  void Report(const std::string& line);
  /// What the first frame need not wait for.
  void FinishStart();

  Accessibility accessibility_;
  SoundPlayer sound_;
  bool soundMayOpen_ = false;
  QtDesktop desktop_;
  Global global_;
  Main main_;
  FormNamen form_;
  EventRoad road_;
  MainWindow window_;
  std::unique_ptr<PlayerDialog> dialog_;
};

}  // namespace bivouac
