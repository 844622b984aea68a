// The real window on a screen that nobody sees: bytes become clicks, keys, resizes and what an assistive tool
// presses, also under open boxes and while a puzzle is made.
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include "events/presses.h"
#include "fuzz/bytes.h"
#include "fuzz/invariants.h"
#include "fuzz/target.h"
#include "tests/support/installation.h"
#include "window/program.h"
#include "window/widgets.h"

namespace bivouac {
namespace {

/// Settings and data in a folder of their own, and the application that Qt wants.
class Surroundings {
 public:
  Surroundings()
      : folder_(QFile::exists("/dev/shm") ? QStringLiteral("/dev/shm/bivouac_fuzz_XXXXXX")
                                          : QDir::tempPath() + "/bivouac_fuzz_XXXXXX") {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false");
    qputenv("XDG_CONFIG_HOME", folder_.filePath("config").toUtf8());
    qputenv("XDG_DATA_HOME", folder_.filePath("data").toUtf8());
    qputenv("XDG_RUNTIME_DIR", folder_.path().toUtf8());
    qputenv("ALSOFT_DRIVERS", "null");
    qputenv("PATH", "");  // No browser comes up.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    application_ = new QApplication(count_, arguments_);
    QApplication::setApplicationName("Bivouac");
  }

 private:
  QTemporaryDir folder_;
  int count_ = 1;
  char name_[8] = "bivouac";
  char* arguments_[2] = {name_, nullptr};
  QApplication* application_;  ///< Stays: Qt is half gone when static objects end.
};

/// Short packs, so that a start is short.
void Install(Bytes& bytes) {
  const QDir data(qEnvironmentVariable("XDG_DATA_HOME") + "/Bvc");
  QDir(data).removeRecursively();
  QDir().mkpath(data.path());
  WriteShortPacks(data.path().toStdString());
  QSettings settings("Bivouac", "Bivouac");
  settings.clear();
  settings.setValue("Options/Size",
                    QString::number(bytes.Once(2) ? kMinSize : kMinSize + bytes.Below(kSizes)));
  const int players = bytes.Below(3);
  settings.setValue("Players/Count", QString::number(players));
  for (int player = 1; player <= players; ++player)
    settings.setValue(QStringLiteral("Players/Player0%1").arg(player), QStringLiteral("Name %1").arg(player));
  settings.setValue("Players/Last_Player", QString::number(bytes.Below(players + 1)));
  settings.sync();
}

/// The hand at mouse and keyboard. Each event is an event of the loop, so that boxes and yields meet it too.
class Hand : public QObject {
 public:
  Hand(Program& program, Bytes& bytes)
      : program_(program), bytes_(bytes), watched_{program.State(), program.Players(), Array<int>()} {
    Schedule();
  }

 private:
  void Schedule() {
    QTimer::singleShot(0, this, [this] { Act(); });
  }

  void Act() {
    Schedule();
    if (program_.Road().Ended()) {
      // The report of an error waits to be read.
      if (QWidget* report = QApplication::activeModalWidget()) report->close();
      return;
    }
    CountEvent();
    const int size = State().BoardSize;
    const int puzzles = PuzzlesOfSize();
    if (bytes_.AtEnd()) {
      Leave();
    } else {
      Event();
    }
    if (State().BoardSize != size) {
      watched_.NoPuzzleOfThisSize = true;
    } else if (PuzzlesOfSize() > puzzles) {
      const std::string wrong = WrongInMadePuzzle(State());
      if (!wrong.empty())
        Fault("A puzzle that was made has one solution, and its clues count it -- " + wrong);
    }
    Check();
  }

  Main& State() { return program_.State(); }
  int PuzzlesOfSize() { return State().PuzzleCount[State().BoardSize - kMinSize]; }

  /// Closes what is open, and the window at last.
  void Leave() {
    if (auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
      if (auto* edited = box->findChild<QLineEdit*>("NaamInvoerveld");
          edited != nullptr && edited->isEnabled())
        Key(*edited, Qt::Key_Escape);
      box->close();
    } else {
      program_.Window().close();
    }
  }

  void Event() {
    QWidget* top = QApplication::activeModalWidget();
    if (top == nullptr) top = &program_.Window();
    switch (bytes_.Below(16)) {
      case 0:
      case 1:
      case 2:
      case 3:
        return Click(*top);
      case 4:
      case 5:
        return PressSomeButton(*top);
      case 6:
        return PressSomeButton(program_.Window());  // An assistive tool asks nobody whether a box is open.
      case 7: {
        BoardWidget& board = program_.Window().Board();
        if (board.Size() > 0) board.Press(bytes_.Below(board.Size() * board.Size()));
        return;
      }
      case 8:
        return PlayOn();
      case 9:
        program_.Window().resize(400 + bytes_.Below(256) * 4, 400 + bytes_.Below(256) * 4);
        return;
      case 10:
        if (bytes_.Once(16)) top->close();
        return;
      default:
        return Key(*(top->focusWidget() != nullptr ? top->focusWidget() : top), SomeKey());
    }
  }

  /// So that games get solved at all.
  void PlayOn() {
    const Main& main = State();
    ClickRightFields(main, [&](int cell) {
      const bool live = !main.Paused && main.BoardLive && !IsMakingPuzzle(main);
      if (live && program_.Road().Modals() == 0) program_.Window().Board().Press(cell);
    });
  }

  void Click(QWidget& top) {
    const QPoint at(bytes_.Below(256) * top.width() / 256, bytes_.Below(256) * top.height() / 256);
    QWidget* widget = top.childAt(at);
    if (widget == nullptr) widget = &top;
    const QPointF inside = widget->mapFrom(&top, at);
    const QPointF global = widget->mapToGlobal(inside);
    const QPointer<QWidget> alive(widget);
    const auto send = [&](QEvent::Type type, Qt::MouseButtons held) {
      Send(alive, QMouseEvent(type, inside, global, Qt::LeftButton, held, Qt::NoModifier));
    };
    send(QEvent::MouseButtonPress, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, Qt::NoButton);
  }

  /// What came before the event may have ended the widget.
  static void Send(const QPointer<QWidget>& alive, QEvent&& event) {
    if (alive != nullptr) QApplication::sendEvent(alive, &event);
  }

  void PressSomeButton(QWidget& top) {
    const auto buttons = top.findChildren<QAbstractButton*>();
    if (!buttons.isEmpty()) buttons.at(bytes_.Below(static_cast<int>(buttons.size())))->click();
  }

  struct Pressed {
    int Code;
    Qt::KeyboardModifiers Modifiers;
    QString Text;
  };

  Pressed SomeKey() {
    constexpr Qt::Key kKeys[] = {Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Space, Qt::Key_Return,
                                 Qt::Key_Return, Qt::Key_Escape,  Qt::Key_Left,  Qt::Key_Right,
                                 Qt::Key_Up,     Qt::Key_Down,    Qt::Key_Home,  Qt::Key_End,
                                 Qt::Key_F1,     Qt::Key_PageUp};
    const int kind = bytes_.Below(32);
    if (kind < 14) return {kKeys[kind], Qt::NoModifier, {}};
    constexpr char16_t kLetters[] = u"PHSGTOZNRYQ12367";
    const char16_t letter = kLetters[bytes_.Below(16)];
    const bool control = bytes_.Once(2);
    return {letter, control ? Qt::ControlModifier : Qt::NoModifier,
            control ? QString() : QString(QChar(letter))};
  }

  static void Key(QWidget& widget, const Pressed& key) {
    const QPointer<QWidget> alive(&widget);
    for (const QEvent::Type type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
      Send(alive, QKeyEvent(type, key.Code, key.Modifiers, key.Text));
    }
  }
  static void Key(QWidget& widget, Qt::Key key) { Key(widget, {key, Qt::NoModifier, {}}); }

  /// What the box on top holds, and the dialog below it.
  Amid AmidNow() {
    const Amid outer = program_.Dialog().isVisible() ? Amid::Players : Amid::Nothing;
    const QWidget* box = QApplication::activeModalWidget();
    return box == nullptr ? outer : AmidOf(State(), box->windowTitle().toStdString(), outer);
  }

  /// A box that is closed, and whose caller has not gone on, still holds it: nobody can tell what.
  void Check() {
    const Main& main = State();
    const bool closing = program_.Road().Modals() > 0 && QApplication::activeModalWidget() == nullptr;
    if (closing || program_.Road().Ended() || !main.Visible) return;
    watched_.Now = AmidNow();
    if (main.StepCount == 0 && !main.PuzzleOver && !IsMakingPuzzle(main) && watched_.Now == Amid::Nothing) {
      watched_.StartBoard = main.Board;
      watched_.NoPuzzleOfThisSize = false;
    }
    const std::string broken = Broken(watched_);
    if (!broken.empty()) {
      Fault(broken + "; over " + std::to_string(main.PuzzleOver) + ", paused " + std::to_string(main.Paused) +
            ", live " + std::to_string(main.BoardLive) + ", size " + std::to_string(main.BoardSize) +
            ", making " + std::to_string(IsMakingPuzzle(main)) + ", step " + std::to_string(main.StepCount));
    }
    CheckWindow();
  }

  void CheckWindow() {
    const Main& main = State();
    MainWindow& window = program_.Window();
    for (const ControlRow& row : ControlTable()) {
      const auto* widget = window.findChild<QWidget*>(QString::fromLatin1(row.Name.data()));
      if (row.ItsButton != nullptr && widget->isEnabled() != (main.*row.ItsButton).Enabled)
        Fault("A button shows whether it is enabled.");
      const auto* label = dynamic_cast<const TextLabel*>(widget);
      if (row.ItsLabel != nullptr && label->Text().toStdString() != (main.*row.ItsLabel).Caption)
        Fault("A label shows its caption: " + (main.*row.ItsLabel).Caption);
    }
    const auto* sound = window.findChild<QAbstractButton*>("optSound");
    if (sound->isChecked() != main.optSound.Checked || sound->isEnabled() != main.optSound.Enabled)
      Fault("The box of the sounds shows whether they are on.");
    for (const auto& [name, timer] :
         {std::pair{"Timer1", &main.Timer1}, {"Timer2", &main.Timer2}, {"Timer3", &main.Timer3}}) {
      if (window.findChild<QTimer*>(name)->isActive() != timer->Enabled)
        Fault("A timer runs while it is enabled.");
    }
    for (int line = 0; line < kMaxSize; ++line) {
      const auto* clue = window.findChild<QWidget*>(QStringLiteral("RowCnt(%1)").arg(line));
      if (clue->isHidden() == (main.RowCnt[line].Visible && !main.Shield.Visible))
        Fault("A clue shows while it is visible and no shield is.");
    }
    if (window.Board().isHidden() != main.Shield.Visible)
      Fault("The shield hides the board, and nothing else.");
    if (window.windowTitle().toStdString() != main.Caption) Fault("The title is what the game says.");
    for (int panel = 0; panel < 6; ++panel) {
      const auto* label = dynamic_cast<const TextLabel*>(
          window.findChild<QWidget*>(QStringLiteral("StatusBar1.Panels(%1)").arg(panel + 1)));
      if (label == nullptr || label->Text().toStdString() != main.StatusBar1[panel].Text)
        Fault("A panel shows its text: " + main.StatusBar1[panel].Text);
    }
    const QWidget* focus = window.focusWidget();
    if (focus != nullptr && (!focus->isEnabled() || !focus->isVisibleTo(&window)))
      Fault("The focus is on a control that can be used: " + focus->objectName().toStdString());
    const auto* bar = window.findChild<QWidget*>("StatusBar1");
    if (bar->geometry().bottom() != window.height() - 1 || bar->width() != window.width())
      Fault("The status bar has the whole bottom edge.");
  }

  Program& program_;
  Bytes& bytes_;
  Watched watched_;
};

}  // namespace
}  // namespace bivouac

/// What the library of fonts keeps to the end is no leak of ours.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "leak:libfontconfig";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bivouac::Surroundings surroundings;
  bivouac::Bytes bytes(data, size);
  bivouac::Install(bytes);
  {
    bivouac::Program program;
    const bivouac::Hand hand(program, bytes);
    const int status = program.Run();
    // A size of 19 or 20, or a rule of hints that read beyond the board, after the pause was barred.
    const bivouac::Main& main = program.State();
    const bool inHint = !main.PuzzleOver && !main.Paused && !main.cmdPause.Enabled;
    const bool named = main.BoardSize > bivouac::kMaxSize || inHint;
    if (status != 0 && !named) bivouac::Fault("No run-time error but those that are meant.");
  }
  // A program that ended before its event loop began leaves Qt in the mood to leave every loop at once.
  QTimer::singleShot(0, qApp, [] { QApplication::exit(); });
  QApplication::exec();
  return 0;
}
