#include "window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <utility>

#include "game/blinking.h"
#include "game/clock.h"
#include "game/moves.h"
#include "game/play.h"
#include "game/sound.h"
#include "game/web_link.h"
#include "generator/generator.h"
#include "hints/hints.h"
#include "storage/best_times.h"
#include "storage/navigation.h"
#include "storage/players.h"
#include "storage/start_up.h"
#include "window/accessibility.h"

namespace bivouac {
namespace {

constexpr QColor kButtonFace(0xF4, 0xF4, 0xF4);  // Of buttons without a colour of their own.
constexpr double kSmallest = 0.6;                // Of the opening size.
constexpr int kBoxText = 13;
constexpr const char* kProgressKey = "S";
/// Seen from the program's folder.
constexpr const char* kGuide = "../share/doc/bivouac/guide/index.html";
constexpr const char* kOtherKeys =
    "\nS: the time, the steps and the tents left are said aloud"
    "\nTab: from control to control, the board last"
    "\nArrows, Page Up, Page Down, Home, End, Ctrl+Home, Ctrl+End: move the frame on the board"
    "\nSpace or Enter: click"
    "\nG, T, O: click the field on until it is grass, tent or open"
    "\nEnter or Escape: end a hint";
constexpr QSize kFrame(12, 36);  // What the desktop puts around a window, at most.

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QColor ColourOf(int background) {
  return background == kSystemDefault ? kButtonFace : QColor::fromRgb(static_cast<QRgb>(background));
}

}  // namespace

const std::array<MainWindow::ButtonRow, MainWindow::kButtons> MainWindow::kButtonRows = {{
    {"cmdOptions", &Main::cmdOptions, cmdOptions_Click, "Chooses the size of the board"},
    {"cmdPause", &Main::cmdPause, cmdPause_Click, "Stops the clock and hides the board", "P"},
    {"cmdGenerate", &Main::cmdGenerate, cmdGenerate_Click, "Makes a new puzzle", "Ctrl+N"},
    {"cmdOpen", &Main::cmdOpen, cmdOpen_Click, "Opens a puzzle by its number", "Ctrl+O"},
    {"cmdNext", &Main::cmdNext, cmdNext_Click, "Opens the next puzzle", "Ctrl+Right"},
    {"cmdRestart", &Main::cmdRestart, StartPuzzle, "Starts the puzzle again", "Ctrl+R"},
    {"cmdSolution", &Main::cmdSolution, cmdSolution_Click, "Shows the solution and ends the game"},
    {"cmdUndo", &Main::cmdUndo, cmdUndo_Click, "Takes the last step back", "Ctrl+Z"},
    {"cmdRedo", &Main::cmdRedo, cmdRedo_Click, "Does the step again that was taken back",
     "Ctrl+Shift+Z Ctrl+Y"},
    {"cmdHint", &Main::cmdHint, cmdHint_Click, "Explains a step, at a price in seconds", "H"},
    {"cmdPlayers", &Main::cmdPlayers, cmdPlayers_Click, "Chooses who plays"},
    {"cmdExit", &Main::cmdExit, cmdExit_Click, "Ends the program", "Ctrl+Q"},
    {"cmdResetTime", &Main::cmdResetTime, cmdResetTime_Click, "Clears the times of this size"},
}};

MainWindow::MainWindow(Main& main, EventRoad& road) : main_(main), road_(road) {
  InstallAccessibility();
  setObjectName(QStringLiteral("Main"));
  // The colours are the game's own, whatever the desktop's theme.
  QPalette own = palette();
  own.setColor(QPalette::Window, QColor::fromRgb(kWindowBackground));
  own.setColor(QPalette::WindowText, Qt::black);
  setPalette(own);
  setAutoFillBackground(true);
  qApp->installEventFilter(this);

  for (const ControlRow& row : ControlTable()) {
    switch (row.Kind) {
      case ControlKind::Button:
        AddButton(row);
        break;
      case ControlKind::CheckBox:
        sound_ = new ScaledCheckBox(Text(row.Caption), this);
        sound_->setAccessibleDescription(QStringLiteral("Turns sounds on and off"));
        connect(sound_, &QCheckBox::clicked, this, [this](bool checked) {
          road_.Run([this, checked] {
            main_.optSound.Checked = checked;
            optSound_Click(main_);
          });
        });
        AddPlaced(sound_, row);
        break;
      case ControlKind::Label:
      case ControlKind::Link:
        AddLabel(row);
        break;
      case ControlKind::PictureBox:
      case ControlKind::Picture:
        break;  // They cover the board, and are made after it.
    }
  }
  AddClueLabels();
  status_ = new StatusBar(this);
  board_ = new BoardWidget(
      main_,
      [this](int index) {
        frameClicked_ = true;
        road_.Run([this, index] { Grid_Click(main_, index); });
      },
      this);
  AddShield();
  AddKeys();
  announcer_ = std::make_unique<Announcer>(
      main_, [this] { return ListenerNow(); }, status_);

  ConnectTimer(timer1_, "Timer1", Timer1_Timer);
  ConnectTimer(timer2_, "Timer2", Timer2_Timer);
  ConnectTimer(timer3_, "Timer3", Timer3_Timer);
  setMinimumSize(static_cast<int>(kWindowWidth * kSmallest / kTwipsPerPixel),
                 static_cast<int>(kWindowHeight * kSmallest / kTwipsPerPixel));
  resize(kWindowWidth / kTwipsPerPixel, kWindowHeight / kTwipsPerPixel);
}

void MainWindow::SetIcon() {
  QIcon icon;
  for (const int side : {16, 48, 128})
    icon.addPixmap(QPixmap(QStringLiteral(":/icon/bivouac-%1.png").arg(side), kPictureFormat));
  setWindowIcon(icon);
}

void MainWindow::AddPlaced(QWidget* widget, const ControlRow& row) {
  widget->setObjectName(Text(row.Name));
  widget->setToolTip(Text(row.ToolTip));
  placed_.push_back({widget, row.At});
}

void MainWindow::AddButton(const ControlRow& row) {
  for (std::size_t i = 0; i < kButtonRows.size(); ++i) {
    if (row.Name != kButtonRows[i].Name) continue;
    auto* button = new ColourButton(Text(row.Caption), ColourOf(row.Background), this);
    const QString description = QString::fromLatin1(kButtonRows[i].Description);
    button->setAccessibleDescription(description);
    button->SetKeys(QString::fromLatin1(kButtonRows[i].Keys).split(QLatin1Char(' '), Qt::SkipEmptyParts));
    connect(button, &QPushButton::clicked, this, [this, click = kButtonRows[i].Click] { Run(click); });
    AddPlaced(button, row);
    if (row.ToolTip.empty()) {
      const QString keys = button->Keys().join(QStringLiteral(", "));
      button->setToolTip(keys.isEmpty() ? description : QStringLiteral("%1 (%2)").arg(description, keys));
    }
    buttons_[i] = button;
  }
}

void MainWindow::AddLabel(const ControlRow& row) {
  LabelLook look{.Background = ColourOf(row.Background)};
  const bool link = row.Kind == ControlKind::Link;
  if (link) {
    look.Text = QColor::fromRgb(row.Name == "Label2" ? kLinkSoftwareText : kLinkMakerText);
    look.LargestText = 17;
    look.Bold = true;
  } else if (row.Name == "lblHint") {
    look.Alignment = Qt::AlignLeft | Qt::AlignVCenter;
    look.LargestText = 13;
  } else {
    look.LargestText = 17;
    look.Bold = true;
  }
  auto* label = new TextLabel(look, this);
  AddPlaced(label, row);
  label->SetText(Text(row.Caption));
  label->setAccessibleDescription(row.ToolTip.empty() ? QStringLiteral("Rules and hints") : label->toolTip());
  if (link) {
    label->setCursor(Qt::PointingHandCursor);
    label->setFocusPolicy(Qt::TabFocus);
    label->SetClick([this, click = row.Name == "Label2" ? Label2_Click : Label3_Click] { Run(click); });
  }
  if (row.Name == "LabelTijd") time_ = label;
  if (row.Name == "LabelStap") steps_ = label;
  if (row.Name == "lblHint") {
    hint_ = label;
    label->SetClick([this] { Run(lblHint_Click); });
  }
}

void MainWindow::AddClueLabels() {
  const auto add = [this](const char* name, const char* line, int number) {
    auto* label = new ClueLabel(QStringLiteral("%1 %2").arg(QLatin1String(line)).arg(number + 1), this);
    label->setObjectName(QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(number));
    return label;
  };
  for (int line = 0; line < kMaxSize; ++line) {
    const auto i = static_cast<std::size_t>(line);
    rowClues_[i].Widget = add("RowCnt", "row", line);
    colClues_[i].Widget = add("ColCnt", "column", line);
  }
}

void MainWindow::AddKeys() {
  for (std::size_t i = 0; i < kButtonRows.size(); ++i) {
    for (const QString& key : buttons_[i]->Keys()) AddKey(key, [this, i] { PressByKey(i); });
  }
  AddKey(QLatin1String(kProgressKey), [this] { announcer_->Say(SpokenProgress(main_)); });
  AddKey(QStringLiteral("F1"), [this] { road_.Run([this] { ShowHelp(); }); });
}

void MainWindow::AddKey(const QString& key, const std::function<void()>& press) {
  auto* shortcut = new QShortcut(QKeySequence(key), this);
  shortcut->setAutoRepeat(false);
  connect(shortcut, &QShortcut::activated, this, [this, press] {
    keyUsedLast_ = true;
    press();
  });
}

/// Does what a click on the button does, if it is enabled. The key of the pause ends it too.
void MainWindow::PressByKey(std::size_t button) {
  const bool pause = kButtonRows[button].Value == &Main::cmdPause;
  if (pause && main_.Paused) return continue_->Press();
  buttons_[button]->click();
}

/// The guide in the browser where it is installed, otherwise the rules and the keys in a box.
void MainWindow::ShowHelp() {
  const QString guide = QDir::cleanPath(QString::fromStdString(main_.global.AppDir) + QLatin1String(kGuide));
  if (QFile::exists(guide)) {
    const ProgramAnswer opener = main_.desktop.FindExecutable(guide.toStdString(), "");
    constexpr int kGood = 33;
    if (opener.Code >= kGood &&
        main_.desktop.ShellExecute("open", opener.Program, guide.toStdString(), "", 1) >= kGood) {
      return;
    }
  }
  QString text = Text(RulesText()) + QStringLiteral("\n");
  for (const ColourButton* button : buttons_) {
    if (button->Keys().isEmpty()) continue;
    text += QStringLiteral("\n%1: %2").arg(button->Keys().join(QStringLiteral(", ")), button->text());
  }
  text += QLatin1String(kOtherKeys);
  main_.desktop.Show(MessageBox{.Title = "Help", .Text = text.toStdString()});
}

Listener MainWindow::ListenerNow() {
  Listener listener{.Frame = board_->Current(), .Clicked = std::exchange(frameClicked_, false)};
  if (focusWidget() == board_) listener.Focus = Listener::On::Board;
  if (focusWidget() == hint_) listener.Focus = Listener::On::Hint;
  return listener;
}

void MainWindow::AddShield() {
  shield_ = new QWidget(this);
  shield_->setAutoFillBackground(true);
  const ControlRow& box = ControlNamed("Shield");
  QPalette white = shield_->palette();
  white.setColor(QPalette::Window, ColourOf(box.Background));
  shield_->setPalette(white);
  shield_->setAccessibleName(QStringLiteral("Shield"));
  shield_->setAccessibleDescription(QStringLiteral("Hides the board during a pause"));
  shield_->hide();
  AddPlaced(shield_, box);

  ControlRow picture = ControlNamed("Picture1");
  continue_ = new TextLabel({}, shield_);
  continue_->setAccessibleName(QStringLiteral("CONTINUE"));
  continue_->setAccessibleDescription(QStringLiteral("Ends the pause"));
  continue_->setCursor(Qt::PointingHandCursor);
  continue_->setFocusPolicy(Qt::TabFocus);
  continue_->SetClick([this] { Run(Picture1_Click); });
  continue_->setObjectName(Text(picture.Name));
}

void MainWindow::ConnectTimer(QTimer& timer, const char* name, void (*tick)(Main& main)) {
  timer.setParent(this);
  timer.setObjectName(QLatin1String(name));
  connect(&timer, &QTimer::timeout, this, [this, tick] { Run(tick); });
}

void MainWindow::Run(void (*handler)(Main& main)) {
  road_.Run([this, handler] { handler(main_); });
}

void MainWindow::Draw() {
  if (main_.Caption != drawnTitle_) {
    drawnTitle_ = main_.Caption;
    setWindowTitle(Text(drawnTitle_));
    setAccessibleName(windowTitle());
  }
  board_->Draw();
  DrawClues();
  status_->Draw(main_.StatusBar1);
  time_->SetText(Text(main_.LabelTijd.Caption));
  steps_->SetText(Text(main_.LabelStap.Caption));
  DrawHint();
  DrawShield();
  DrawButtons();
  DrawTimers();
  if (main_.Visible && !isVisible()) ShowFirst();
  announcer_->Watch();
}

void MainWindow::DrawClues() {
  for (int line = 0; line < kMaxSize; ++line) {
    const auto i = static_cast<std::size_t>(line);
    DrawClue(main_.RowCnt[line], rowClues_[i]);
    DrawClue(main_.ColCnt[line], colClues_[i]);
  }
}

void MainWindow::DrawClue(const Label& value, PlacedClue& clue) {
  if (clue.At != value.At) {
    clue.At = value.At;
    clue.Widget->setGeometry(scale_.Map(value.At));
    clue.Widget->FitText(Unit());
  }
  clue.Widget->Draw(value);
}

/// A text other than the rules waits for a click: a hint on show, or the word that there is none.
bool MainWindow::HintTakesClicks() const {
  return !main_.lblHint.Caption.empty() && main_.lblHint.Caption != RulesText();
}

void MainWindow::DrawHint() {
  const QString text = Text(main_.lblHint.Caption);
  if (text == hint_->text()) return;
  hint_->SetText(text);
  hint_->setAccessibleName(QString::fromStdString(SpokenHint(main_)));
  hintTakesClicks_ = HintTakesClicks();
  hint_->setAccessibleDescription(hintTakesClicks_ ? QString::fromStdString(SpokenMarks(main_))
                                                   : QStringLiteral("Rules and hints"));
  hint_->setCursor(hintTakesClicks_ ? Qt::PointingHandCursor : Qt::ArrowCursor);
  hint_->setFocusPolicy(hintTakesClicks_ ? Qt::TabFocus : Qt::NoFocus);
  // While the questions before it were open, the board took the focus of the button.
  if (hintTakesClicks_ && !main_.BoardLive && focusWidget() == board_) MoveFocus(hint_);
}

void MainWindow::DrawShield() {
  if (shield_->isHidden() != main_.Shield.Visible) return;
  const QWidget* const focus = focusWidget();
  if (main_.Shield.Visible) {
    if (!continue_->HasPicture())
      continue_->SetPicture(QImage(QStringLiteral(":/tiles/picture1@4x.png"), kPictureFormat));
    shield_->show();
    if (focus == board_) MoveFocus(continue_);
    board_->hide();  // From the keyboard and from assistive tools too.
  } else {
    board_->show();
    if (focus == continue_) MoveFocus(board_);
    shield_->hide();
  }
}

void MainWindow::MoveFocus(QWidget* widget) {
  widget->setFocus(keyUsedLast_ ? Qt::TabFocusReason : Qt::OtherFocusReason);
}

void MainWindow::DrawButtons() {
  // What gets enabled comes first: the focus can then go where play goes on.
  for (const bool enabled : {true, false}) {
    if (!enabled) KeepFocusInPlay();
    for (std::size_t i = 0; i < kButtonRows.size(); ++i) {
      if ((main_.*kButtonRows[i].Value).Enabled == enabled) buttons_[i]->setEnabled(enabled);
    }
  }
  sound_->setEnabled(main_.optSound.Enabled);
  sound_->setChecked(main_.optSound.Checked);
}

/// A control that is about to lose the focus, because it cannot have it any longer, hands it to what waits
/// for the player next.
void MainWindow::KeepFocusInPlay() {
  QWidget* const focus = focusWidget();
  if (focus == nullptr) return;
  bool stays = focus->isVisibleTo(this) && focus->focusPolicy() != Qt::NoFocus;
  for (std::size_t i = 0; i < kButtonRows.size(); ++i) {
    if (focus == buttons_[i]) stays = (main_.*kButtonRows[i].Value).Enabled;
  }
  if (stays) return;
  QWidget* next = board_;
  if (hintTakesClicks_) next = hint_;
  if (main_.Shield.Visible) next = continue_;
  MoveFocus(next);
}

void MainWindow::DrawTimers() {
  const auto draw = [](const Timer& value, QTimer& timer) {
    if (timer.isActive() && (!value.Enabled || timer.interval() != value.Interval)) timer.stop();
    if (value.Enabled && !timer.isActive()) timer.start(value.Interval);
  };
  draw(main_.Timer1, timer1_);
  draw(main_.Timer2, timer2_);
  draw(main_.Timer3, timer3_);
}

/// The window stands where Main says, unless the screen is too small for its opening size.
void MainWindow::ShowFirst() {
  const QRect room = screen()->availableGeometry();
  const QSize inside = room.size() - kFrame;
  if (width() <= inside.width() && height() <= inside.height()) {
    move(screen()->geometry().topLeft() + QPoint(main_.Left, main_.Top) / kTwipsPerPixel);
  } else {
    resize(size().scaled(inside, Qt::KeepAspectRatio));
    move(room.topLeft() + QPoint((room.width() - width()) / 2, 0));
  }
  show();  // Sends the first resize, which lays everything out.
}

void MainWindow::LayOut() {
  scale_ = Scale::ToFit(size());
  const double unit = Unit();
  // For the boxes that come up over the window; they stay readable when it is small.
  QFont boxes = font();
  boxes.setPixelSize(std::max(kBoxText, scale_.Pixels(kBoxText)));
  setFont(boxes);
  for (const Placed& placed : placed_) {
    placed.Widget->setGeometry(scale_.Map(placed.At));
    if (auto* button = dynamic_cast<ColourButton*>(placed.Widget)) button->FitText(unit);
    if (auto* label = dynamic_cast<TextLabel*>(placed.Widget)) label->FitText(unit);
  }
  sound_->FitText(unit);
  for (auto* clues : {&rowClues_, &colClues_}) {
    for (PlacedClue& clue : *clues) {
      clue.Widget->setGeometry(scale_.Map(clue.At));
      clue.Widget->FitText(unit);
    }
  }
  const Place box = ControlNamed("Shield").At;
  Place picture = ControlNamed("Picture1").At;
  picture.Left += box.Left;
  picture.Top += box.Top;
  continue_->setGeometry(scale_.Map(picture).translated(-shield_->pos()));
  const QRect bar = scale_.Map({0, kWindowHeight - kStatusBarHeight, kWindowWidth, kStatusBarHeight});
  status_->setGeometry(bar);
  status_->LayOut(unit);
  board_->SetScale(scale_);
}

void MainWindow::resizeEvent(QResizeEvent*) {
  LayOut();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  Run([](Main& main) { Form_QueryUnload(main); });
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && HintTakesClicks()) return Run(lblHint_Click);
  QWidget::keyPressEvent(event);
}

void MainWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) announcer_->Watch();
  QWidget::changeEvent(event);
}

bool MainWindow::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::KeyPress) keyUsedLast_ = true;
  if (event->type() == QEvent::MouseButtonPress) keyUsedLast_ = false;
  return false;
}

}  // namespace bivouac
