// The window of the game: draws the values of Main and sends events down the one road.
#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "events/event_road.h"
#include "events/focus.h"
#include "events/presses.h"
#include "window/announcer.h"
#include "window/board_widget.h"
#include "window/clue_label.h"
#include "window/printing.h"
#include "window/scale.h"
#include "window/status_bar.h"
#include "window/widgets.h"

namespace bivouac {

class PuzzleList;

class MainWindow : public QWidget {
 public:
  MainWindow(Main& main, EventRoad& road);
  ~MainWindow() override;

  /// Compares the values of Main with what was last drawn, and draws what changed. Shows the window once Main
  /// says that it is visible.
  void Draw();
  /// Shows the icon, which a window can do without while it comes up.
  void SetIcon();
  /// Length of a pixel of the window's opening size, in present pixels.
  double Unit() const { return scale_.Unit(); }
  /// The same for boxes and dialogs, which stay readable over a small window and follow a desktop's large
  /// font.
  double BoxUnit() const;
  BoardWidget& Board() const { return *board_; }
  const Announcer& Voice() const { return *announcer_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct PlacedButton {
    ColourButton* Widget;
    const ButtonRow* Row;
  };
  /// A widget whose place is fixed at design.
  struct Placed {
    QWidget* Widget;
    Place At;
  };
  struct PlacedLabel {
    TextLabel* Widget;
    Label Main::*Value;
  };
  /// A clue label and where it was last put.
  struct PlacedClue {
    ClueLabel* Widget = nullptr;
    Place At;
  };

  static LabelLook LookOf(const ControlRow& row);
  void AddPlaced(QWidget* widget, const ControlRow& row);
  void AddButton(const ControlRow& row);
  void AddLabel(const ControlRow& row);
  void AddClueLabels();
  void AddKeys();
  void AddKey(const QString& key, const std::function<void()>& press);
  void PressByKey(const PlacedButton& button);
  void ShowHelp();
  void ShowPuzzles();
  void Tell(const std::optional<std::string>& sentence);
  void Copy();
  void Paste();
  Listener ListenerNow();
  void AddShield();
  void ConnectTimer(QTimer& timer, const char* name, void (*tick)(Main& main));

  void Run(void (*handler)(Main& main));
  void Press(const EventRoad::Handler& press);
  void LayOut();
  void ShowFirst();
  void DrawClues();
  void DrawClue(const Label& value, PlacedClue& clue);
  void DrawHint();
  void ShowShieldOrBoard();
  void HideShieldOrBoard();
  void DrawButtons(bool enabled);
  void DrawTimers();
  void DrawFocus(bool hintAppeared);
  Focus FocusNow() const;

  Main& main_;
  EventRoad& road_;
  Printing printing_;
  Scale scale_;

  std::vector<Placed> placed_;
  std::vector<PlacedButton> buttons_;
  ScaledCheckBox* sound_ = nullptr;
  std::vector<PlacedLabel> labels_;
  TextLabel* hint_ = nullptr;
  FixedArray<PlacedClue, kMaxSize> rowClues_;
  FixedArray<PlacedClue, kMaxSize> colClues_;
  StatusBar* status_ = nullptr;
  BoardWidget* board_ = nullptr;
  QWidget* shield_ = nullptr;
  TextLabel* continue_ = nullptr;  ///< Picture1.
  QTimer timer1_, timer2_, timer3_;
  QTimer whole_;  ///< Gives the window its name back that a box took.
  std::unique_ptr<Announcer> announcer_;
  std::unique_ptr<PuzzleList> puzzles_;  ///< Made when it is first asked for.

  std::string drawnTitle_;
  bool hintTakesClicks_ = false;
  bool keyUsedLast_ = false;
  bool frameClicked_ = false;  ///< Since the announcer last asked.
};

}  // namespace bivouac
