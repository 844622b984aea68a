#include "window/main_window.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "events/focus.h"
#include "events/help.h"
#include "game/blinking.h"
#include "game/clock.h"
#include "game/puzzle_line.h"
#include "game/web_link.h"
#include "hints/evidence.h"
#include "storage/platform_files.h"
#include "storage/start_up.h"
#include "walks/solution_walk.h"
#include "window/boxes.h"
#include "window/own_files.h"
#include "window/pictures.h"
#include "window/puzzle_list.h"
#include "window/puzzle_picture.h"

namespace bivouac {
namespace {

constexpr QColor kButtonFace(0xF4, 0xF4, 0xF4);  // Of buttons without a colour of their own.
constexpr double kSmallest = 0.6;                // Of the opening size.
constexpr int kBoxText = 13;
constexpr int kCopiedField = 32;       // Pixels.
constexpr int kToldFor = 3000;         // Milliseconds.
constexpr int kWholeNameAfter = 1500;  // Milliseconds: readers have asked for the name by then.

QColor ColourOf(int background) {
  return background == kSystemDefault ? kButtonFace : QColor::fromRgb(static_cast<QRgb>(background));
}

/// The place in the guide that tells of the hint on show, else its first page.
std::string GuidePage(const Main& main) {
  const HintCase* hint = main.BoardLive ? nullptr : HintCaseOf(main.lblHint.Caption);
  const std::string place = hint == nullptr ? "" : OwnGuide() + "at/" + NameOf(*hint) + ".html";
  return FileExists(place) ? place : OwnGuide() + "index.html";
}

}  // namespace

MainWindow::MainWindow(Main& main, EventRoad& road) : main_(main), road_(road), printing_(main, road) {
  setObjectName(QStringLiteral("Main"));
  // The colours are the game's own, whatever the desktop's theme.
  QPalette own = palette();
  own.setColor(QPalette::Window, QColor::fromRgb(kWindowBackground));
  own.setColor(QPalette::WindowText, Qt::black);
  setPalette(own);
  setAutoFillBackground(true);
  // Short captions need no kerning. Scripts that cannot be read unshaped are shaped all the same.
  QFont plain = font();
  plain.setStyleStrategy(QFont::PreferNoShaping);
  setFont(plain);
  qApp->installEventFilter(this);

  for (const ControlRow& row : ControlTable()) {
    switch (row.Kind) {
      case ControlKind::Button:
        AddButton(row);
        break;
      case ControlKind::CheckBox:
        sound_ = new ScaledCheckBox(QString::fromUtf8(row.Caption), this);
        connect(sound_, &QCheckBox::clicked, this, [this](bool checked) {
          Press([this, checked] { PressSound(main_, checked); });
          sound_->setChecked(main_.optSound.Checked);  // Also where the press was held.
        });
        AddPlaced(sound_, row);
        break;
      case ControlKind::Figure:
      case ControlKind::Text:
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
        Press([this, index] { PressField(main_, index); });
      },
      this);
  AddShield();
  AddKeys();
  announcer_ = std::make_unique<Announcer>(
      main_, [this] { return ListenerNow(); }, status_);

  whole_.setParent(this);
  whole_.setObjectName(QStringLiteral("WholeName"));
  whole_.setSingleShot(true);
  whole_.setInterval(kWholeNameAfter);
  connect(&whole_, &QTimer::timeout, this, [this] { setAccessibleName(windowTitle()); });
  ConnectTimer(timer1_, "Timer1", Timer1_Timer);
  ConnectTimer(timer2_, "Timer2", Timer2_Timer);
  ConnectTimer(timer3_, "Timer3", Timer3_Timer);
  setMinimumSize(static_cast<int>(kWindowWidth * kSmallest / kTwipsPerPixel),
                 static_cast<int>(kWindowHeight * kSmallest / kTwipsPerPixel));
  resize(kWindowWidth / kTwipsPerPixel, kWindowHeight / kTwipsPerPixel);
}

MainWindow::~MainWindow() = default;

void MainWindow::SetIcon() {
  QIcon icon;
  for (const int side : {16, 48, 128})
    icon.addPixmap(QPixmap::fromImage(ReadPicture(QStringLiteral("icon/bivouac-%1.png").arg(side))));
  setWindowIcon(icon);
}

void MainWindow::AddPlaced(QWidget* widget, const ControlRow& row) {
  widget->setObjectName(QString::fromUtf8(row.Name));
  widget->setToolTip(QString::fromStdString(TipOf(row, row.Keys)));
  widget->setAccessibleDescription(QString::fromUtf8(DescriptionOf(row)));
  placed_.push_back({widget, row.At});
}

void MainWindow::AddButton(const ControlRow& control) {
  const ButtonRow& row = ButtonOf(control.ItsButton);
  auto* button = new ColourButton(QString::fromUtf8(control.Caption), ColourOf(control.Background), this);
  button->SetKeys(QString::fromUtf8(control.Keys).split(QLatin1Char(' '), Qt::SkipEmptyParts));
  connect(button, &QPushButton::clicked, this, [this, &row] { Press([&] { PressButton(main_, row); }); });
  AddPlaced(button, control);
  buttons_.push_back({button, &row});
}

LabelLook MainWindow::LookOf(const ControlRow& row) {
  LabelLook look{.Background = ColourOf(row.Background),
                 .Text = QColor::fromRgb(static_cast<QRgb>(row.Foreground))};
  look.Bold = row.Kind != ControlKind::Text;
  if (row.Kind == ControlKind::Figure || row.Kind == ControlKind::Link) look.LargestText = 15;
  if (row.Kind == ControlKind::Text) {
    look.Alignment = Qt::AlignLeft | Qt::AlignVCenter;
    look.LargestText = 13;
  }
  return look;
}

void MainWindow::AddLabel(const ControlRow& row) {
  auto* label = new TextLabel(LookOf(row), this);
  AddPlaced(label, row);
  label->SetText(QString::fromUtf8(row.Caption));
  if (row.Kind == ControlKind::Figure) labels_.push_back({label, row.ItsLabel});
  if (row.Kind == ControlKind::Link) {
    label->setCursor(Qt::PointingHandCursor);
    label->setFocusPolicy(Qt::TabFocus);
    label->SetClick([this] { Press([this] { Label2_Click(main_); }); });  // What Label3_Click does, too.
  }
  if (row.Kind == ControlKind::Text) {
    hint_ = label;
    label->SetClick([this] { Press([this] { PressHint(main_); }); });
  }
}

void MainWindow::AddClueLabels() {
  const auto add = [this](const char* name, const std::string& line, int number) {
    auto* label = new ClueLabel(line + std::to_string(number + 1), this);
    label->setObjectName(QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(number));
    return label;
  };
  for (int line = 0; line < kMaxSize; ++line) {
    rowClues_[line].Widget = add("RowCnt", "row ", line);
    colClues_[line].Widget = add("ColCnt", "column ", line);
  }
}

void MainWindow::AddKeys() {
  for (const PlacedButton& button : buttons_) {
    for (const QString& key : button.Widget->Keys()) AddKey(key, [this, button] { PressByKey(button); });
  }
  AddKey(QLatin1String(kProgressKey), [this] { announcer_->Say(SpokenProgress(main_)); });
  AddKey(QStringLiteral("F1"), [this] { Press([this] { ShowHelp(); }); });
  AddKey(QStringLiteral("F2"), [this] { Press([this] { ShowPuzzles(); }); });
  AddKey(QLatin1String(kLevelKey), [this] { Press([this] { PressNewOfLevel(main_); }); });
  AddKey(QStringLiteral("Ctrl+S"), [this] { Press([this] { Tell(PressKeep(main_)); }); });
  AddKey(QStringLiteral("Ctrl+B"), [this] { Press([this] { Tell(PressRemember(main_)); }); });
  AddKey(QStringLiteral("Ctrl+Shift+B"), [this] { Press([this] { PressBackToStep(main_); }); });
  AddKey(QStringLiteral("Ctrl+C"), [this] { Press([this] { Copy(); }); });
  AddKey(QStringLiteral("Ctrl+V"), [this] { Press([this] { Paste(); }); });
  if (printing_.IsOffered()) {
    AddKey(QStringLiteral("Ctrl+P"), [this] { Press([this] { printing_.PrintPosition(); }); });
  }
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
void MainWindow::PressByKey(const PlacedButton& button) {
  const bool pause = button.Row->Value == &Main::cmdPause;
  if (pause && main_.Paused) return continue_->Press();
  button.Widget->click();
}

/// The guide in the browser where it is installed, otherwise the rules and the keys in a box.
void MainWindow::ShowHelp() {
  const std::string guide = GuidePage(main_);
  const bool hasGuide = FileExists(guide);
  if (hasGuide) {
    const ProgramAnswer opener = main_.desktop.FindExecutable(guide, "");
    if (opener.Code >= kFirstGoodCode &&
        main_.desktop.ShellExecute("open", opener.Program, guide, "", 1) >= kFirstGoodCode) {
      return;
    }
  }
  std::string text = HelpText(KeysOfTable) + ListKeyHelp(kLevelKey);
  if (printing_.IsOffered()) text += kPrintKeyHelp;
  if (hasGuide) text += kGuideHelp + guide;
  main_.desktop.Show(MessageBox{.Title = "Help", .Text = text});
}

/// The puzzles of the size, from which one is opened. While one is made, that must not be held up.
void MainWindow::ShowPuzzles() {
  if (IsMakingPuzzle(main_)) return;
  if (puzzles_ == nullptr) puzzles_ = std::make_unique<PuzzleList>(main_, this);
  std::optional<PuzzleList::Choice> choice;
  {
    const EventRoad::Modal modal(road_);
    choice = puzzles_->Choose(BoxUnit());
  }
  road_.ThrowIfEnded();
  if (choice) (choice->GoOn ? PressGoOn : PressOpen)(main_, choice->Number);
}

/// The puzzle as a line of text, and the position as a picture; a pause hides that.
void MainWindow::Copy() {
  if (!IsPuzzleOnShow(main_)) return;
  auto* copied = new QMimeData;
  copied->setText(QString::fromStdString(PuzzleLineOf(main_.global.PuzzleRec)));
  if (!main_.Paused) copied->setImageData(PictureOf(main_, kCopiedField));
  QGuiApplication::clipboard()->setMimeData(copied);
  Tell("Puzzle copied.");
}

void MainWindow::Paste() {
  PressPaste(main_, QGuiApplication::clipboard()->text().toStdString());
}

/// Says a sentence and shows it over the board for a while.
void MainWindow::Tell(const std::optional<std::string>& sentence) {
  if (!sentence) return;
  announcer_->Say(*sentence);
  QToolTip::showText(board_->mapToGlobal(QPoint(0, 0)), QString::fromStdString(*sentence), board_, {},
                     kToldFor);
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
  shield_->hide();
  AddPlaced(shield_, box);

  const ControlRow& picture = ControlNamed("Picture1");
  continue_ = new TextLabel({}, shield_);
  continue_->setAccessibleName(QStringLiteral("CONTINUE"));
  continue_->setCursor(Qt::PointingHandCursor);
  continue_->setFocusPolicy(Qt::TabFocus);
  continue_->SetClick([this] { Press([this] { PressContinue(main_); }); });
  continue_->setObjectName(QString::fromUtf8(picture.Name));
}

void MainWindow::ConnectTimer(QTimer& timer, const char* name, void (*tick)(Main& main)) {
  timer.setParent(this);
  timer.setObjectName(QLatin1String(name));
  connect(&timer, &QTimer::timeout, this, [this, tick] { Run(tick); });
}

void MainWindow::Run(void (*handler)(Main& main)) {
  road_.Run([this, handler] { handler(main_); });
}

/// Whatever presses, mouse, key or assistive tool: an open box or dialog holds all of it.
void MainWindow::Press(const EventRoad::Handler& press) {
  if (road_.Modals() == 0) road_.Run(press);
}

void MainWindow::Draw() {
  if (main_.Caption != drawnTitle_) {
    drawnTitle_ = main_.Caption;
    setWindowTitle(QString::fromUtf8(drawnTitle_));
    if (!whole_.isActive()) setAccessibleName(windowTitle());
  }
  board_->Draw();
  DrawClues();
  status_->Draw(main_.StatusBar1);
  for (const PlacedLabel& label : labels_) {
    label.Widget->SetText(QString::fromUtf8((main_.*label.Value).Caption));
    label.Widget->setVisible((main_.*label.Value).Visible);
  }
  const bool hintWaited = hintTakesClicks_;
  DrawHint();
  // What can be used comes first and what cannot any longer last: the focus goes in between.
  ShowShieldOrBoard();
  DrawButtons(true);
  DrawFocus(hintTakesClicks_ && !hintWaited && !main_.BoardLive);
  DrawButtons(false);
  HideShieldOrBoard();
  sound_->setEnabled(main_.optSound.Enabled);
  sound_->setChecked(main_.optSound.Checked);
  DrawTimers();
  if (main_.Visible && !isVisible()) ShowFirst();
  announcer_->Watch();
}

void MainWindow::DrawClues() {
  for (int line = 0; line < kMaxSize; ++line) {
    DrawClue(main_.RowCnt[line], rowClues_[line]);
    DrawClue(main_.ColCnt[line], colClues_[line]);
  }
}

void MainWindow::DrawClue(const Label& value, PlacedClue& clue) {
  if (clue.At != value.At) {
    clue.At = value.At;
    clue.Widget->setGeometry(RectOf(scale_.Map(value.At)));
    clue.Widget->FitText(Unit());
  }
  clue.Widget->Draw(value, main_.Shield.Visible);
}

void MainWindow::DrawHint() {
  const QString text = QString::fromUtf8(main_.lblHint.Caption);
  if (text == hint_->Text()) return;
  hint_->SetText(text);
  hint_->setAccessibleName(QString::fromStdString(SpokenHint(main_)));
  hintTakesClicks_ = HintTakesClicks(main_);
  hint_->setAccessibleDescription(hintTakesClicks_
                                      ? QString::fromStdString(SpokenMarksAndEvidence(main_))
                                      : QString::fromUtf8(DescriptionOf(ControlNamed("lblHint"))));
  hint_->setCursor(hintTakesClicks_ ? Qt::PointingHandCursor : Qt::ArrowCursor);
  hint_->setFocusPolicy(hintTakesClicks_ ? Qt::TabFocus : Qt::NoFocus);
}

void MainWindow::ShowShieldOrBoard() {
  if (!main_.Shield.Visible) return board_->show();
  if (!continue_->HasPicture()) continue_->SetPicture(ReadPicture(QStringLiteral("tiles/picture1@4x.png")));
  shield_->show();
}

void MainWindow::HideShieldOrBoard() {
  // The board is hidden from the keyboard and from assistive tools too.
  (main_.Shield.Visible ? static_cast<QWidget*>(board_) : shield_)->hide();
}

void MainWindow::DrawButtons(bool enabled) {
  for (const PlacedButton& button : buttons_) {
    if ((main_.*button.Row->Value).Enabled == enabled) button.Widget->setEnabled(enabled);
  }
}

void MainWindow::DrawFocus(bool hintAppeared) {
  const Focus now = FocusNow();
  const Focus next = FocusFrom(main_, now, hintAppeared);
  if (next == now) return;
  QWidget* waiting = board_;
  if (next.Where == Focus::On::Hint) waiting = hint_;
  if (next.Where == Focus::On::Continue) waiting = continue_;
  waiting->setFocus(keyUsedLast_ ? kFocusAfterKey : Qt::OtherFocusReason);
}

Focus MainWindow::FocusNow() const {
  const QWidget* focus = focusWidget();
  if (focus == board_) return {Focus::On::Board};
  if (focus == continue_) return {Focus::On::Continue};
  if (focus == hint_) return {Focus::On::Hint};
  for (const PlacedButton& button : buttons_) {
    if (focus == button.Widget) return {Focus::On::Button, button.Row->Value};
  }
  return {};
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
  const QSize inside = RoomOnScreen(*this);
  if (width() <= inside.width() && height() <= inside.height()) {
    move(screen()->geometry().topLeft() + QPoint(main_.Left, main_.Top) / kTwipsPerPixel);
  } else {
    const QSize fitting = size().scaled(inside, Qt::KeepAspectRatio);
    setMinimumSize(minimumSize().boundedTo(fitting));
    resize(fitting);
    move(room.topLeft() + QPoint((room.width() - width()) / 2, 0));
  }
  show();  // Sends the first resize, which lays everything out.
}

void MainWindow::LayOut() {
  scale_ = Scale::ToFit(width(), height());
  const double unit = Unit();
  QFont boxes = font();  // They have the font of the window that they come up over.
  boxes.setPixelSize(PixelsOf(kBoxText, BoxUnit()));
  setFont(boxes);
  for (const Placed& placed : placed_) {
    placed.Widget->setGeometry(RectOf(scale_.Map(placed.At)));
    if (auto* button = dynamic_cast<ColourButton*>(placed.Widget)) button->FitText(unit);
    if (auto* label = dynamic_cast<TextLabel*>(placed.Widget)) label->FitText(unit);
  }
  sound_->FitText(unit);
  for (auto* clues : {&rowClues_, &colClues_}) {
    for (PlacedClue& clue : *clues) {
      clue.Widget->setGeometry(RectOf(scale_.Map(clue.At)));
      clue.Widget->FitText(unit);
    }
  }
  const Place box = ControlNamed("Shield").At;
  Place picture = ControlNamed("Picture1").At;
  picture.Left += box.Left;
  picture.Top += box.Top;
  continue_->setGeometry(RectOf(scale_.Map(picture)).translated(-shield_->pos()));
  status_->setGeometry(RectOf(PlaceOfStatusBar(width(), height(), unit)));
  status_->LayOut(unit);
  board_->SetScale(scale_);
}

double MainWindow::BoxUnit() const {
  const QFont desktop = QApplication::font();
  const double pixels =
      desktop.pixelSize() > 0 ? desktop.pixelSize() : desktop.pointSizeF() * logicalDpiY() / 72;
  return std::max({1.0, Unit(), pixels / kBoxText});
}

void MainWindow::resizeEvent(QResizeEvent*) {
  LayOut();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  Run([](Main& main) { Form_QueryUnload(main); });
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && IsMakingPuzzle(main_))
    return Press([this] { PressEndMaking(main_); });
  if (event->key() == Qt::Key_Escape && HintTakesClicks(main_)) return hint_->Press();
  QWidget::keyPressEvent(event);
}

void MainWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::WindowStateChange && isMinimized())
    Press([this] { PressButton(main_, ButtonOf(&Main::cmdPause)); });
  if (event->type() == QEvent::ActivationChange) {
    if (isActiveWindow()) {
      announcer_->Watch();
      if (accessibleName() != windowTitle()) whole_.start();
    } else {
      // Readers name a window that comes back: after a box, who plays is known.
      const bool box = QApplication::activeModalWidget() != nullptr;
      whole_.stop();
      setAccessibleName(box ? QStringLiteral("Bivouac") : windowTitle());
    }
  }
  QWidget::changeEvent(event);
}

bool MainWindow::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::KeyPress) keyUsedLast_ = true;
  if (event->type() == QEvent::MouseButtonPress) keyUsedLast_ = false;
  return false;
}

}  // namespace bivouac
