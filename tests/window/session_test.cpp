// A session at the real window: after each line that begins with "> " stands what became another, of what
// assistive tools are told, of what is painted on the board, of the focus, and of the settings; and every
// box, with what is set in it before anything is pressed.
//
// A line is something to press, a control, a field by its number, or keys, and then what is done in the boxes
// that it opens: keys, a text after an apostrophe, a control after an @, the heading of a column or a player
// to be clicked twice after a ^; several at once with a comma between them.
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDate>
#include <QDialog>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTableView>
#include <QTest>
#include <QTextStream>
#include <QTimer>
#include <gtest/gtest.h>

#include "game/play.h"
#include "tests/support/files.h"
#include "tests/support/looks.h"
#include "tests/window/game_run.h"
#include "tests/window/pixels.h"
#include "window/puzzle_table.h"

namespace bivouac {
namespace {

constexpr const char* kRecordingOpener =
    "echo \"$@\" > ${0%xdg-open}part && mv ${0%xdg-open}part ${0%xdg-open}asked\n";

using Values = QList<QPair<QString, QString>>;

/// The timers tick when the script says so.
class NoTicks : public QObject {
 protected:
  bool eventFilter(QObject*, QEvent* event) override { return event->type() == QEvent::Timer; }
};

class Session {
 public:
  Session(GameRun& run, Program& program, const QString& script)
      : run_(run), program_(program), lines_(script.split('\n')) {
    for (const char* timer : {"Timer1", "Timer2", "Timer3", "WholeName"})
      program_.Window().findChild<QTimer*>(timer)->installEventFilter(&noTicks_);
    QGuiApplication::clipboard()->clear();
    run_.Answerer = [this](QDialog& box) { AnswerBox(box); };
  }

  QString Told() {
    Activate();
    TellChanges();
    for (const QString& line : lines_) {
      if (line.startsWith('#')) told_ += line + '\n';
      if (!line.startsWith("> ")) continue;
      told_ += line + '\n';
      words_ = line.mid(2).split(' ');
      Activate();
      Do(words_.takeFirst());
      TellChanges();
    }
    return told_;
  }

 private:
  /// As a desktop does after a box.
  void Activate() {
    program_.Window().activateWindow();
    if (!QTest::qWaitForWindowActive(&program_.Window())) Tell("window", "not active");
  }

  static void PressKeys(QWidget& top, const QString& keys, bool held = false) {
    QWidget* const to = top.focusWidget() != nullptr ? top.focusWidget() : &top;
    const int code = QKeySequence(keys)[0].toCombined();
    const Qt::KeyboardModifiers modifiers(code & static_cast<int>(Qt::KeyboardModifierMask));
    const auto key = static_cast<Qt::Key>(code & ~static_cast<int>(Qt::KeyboardModifierMask));
    if (held) return QTest::simulateEvent(to, true, key, modifiers, QString(), true);
    const bool letter = key >= Qt::Key_A && key <= Qt::Key_Z && !modifiers;
    QTest::sendKeyEvent(QTest::Click, to, key, letter ? QString(QChar(key)).toLower() : QString(), modifiers);
  }

  void Do(const QString& word) {
    MainWindow& window = program_.Window();
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    if (isNumber) return ClickCell(program_, number);
    if (word == "held") return PressKeys(window, words_.takeFirst(), true);
    if (word == "focus") return Named(program_, words_.takeFirst())->setFocus(Qt::TabFocusReason);
    if (word == "tick")
      return void(QMetaObject::invokeMethod(window.findChild<QTimer*>(words_.takeFirst()), "timeout"));
    if (word == "close") return void(window.close());
    if (word == "large") return window.resize(window.size() * 3 / 2);
    if (word == "small") return window.resize(window.size() * 2 / 3);
    if (word == "minimise") return window.showMinimized();
    if (word == "drag" || word == "nudge")
      return Drag(words_.takeFirst().toInt(), words_.takeLast().toInt(), word == "drag" ? 1 : 0.6);
    if (word == "solve") return Solve(program_);
    if (word == "browser") return MakeOpener(words_.isEmpty() ? kRecordingOpener : "exit 3\n");
    if (word == "wait") return Wait();
    if (word == "tool") {  // Pressed by an assistive tool.
      QAccessibleInterface* it =
          QAccessible::queryAccessibleInterface(&window.Board())->child(words_.takeFirst().toInt());
      return it->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    QWidget* const widget = window.findChild<QWidget*>(word);
    widget != nullptr ? QTest::mouseClick(widget, Qt::LeftButton) : PressKeys(window, word);
  }

  /// For something to be opened, or a box.
  void Wait() {
    const auto before = told_.size();
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(Asked()) || told_.size() != before; }));
  }

  /// From one field so much of the way to another with the button held, in two strides.
  void Drag(int from, int to, double share) {
    BoardWidget& board = program_.Window().Board();
    const QPoint begin = board.CellRect(from).center();
    const QPoint end = begin + (board.CellRect(to).center() - begin) * share;
    const std::pair<QEvent::Type, QPoint> events[] = {{QEvent::MouseButtonPress, begin},
                                                      {QEvent::MouseMove, (begin + end) / 2},
                                                      {QEvent::MouseMove, end},
                                                      {QEvent::MouseButtonRelease, end}};
    for (const auto& [type, at] : events) {
      QMouseEvent event(type, at, board.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
      QCoreApplication::sendEvent(&board, &event);
    }
  }

  /// Under a box nothing of the window changes but what the box's caller did before; each word tells what it
  /// did.
  void AnswerBox(QDialog& box) {
    const auto* message = qobject_cast<QMessageBox*>(&box);
    QString text = box.windowTitle();
    if (message != nullptr) {
      text += " | " + message->text() + " | icon " + QString::number(message->icon());
      text += " | Enter " + message->defaultButton()->text() + " | Escape " + message->escapeButton()->text();
      text += " | over " + box.parentWidget()->objectName();
    }
    Tell("box", text);
    Values before;
    for (;;) {
      TellChanges();
      const Values now = ValuesIn(box);
      TellDifference("  in it ", before, now);
      before = now;
      if (words_.isEmpty()) {
        Tell("box", "stays open");
        box.close();
        return;
      }
      const QString word = words_.takeFirst();
      Tell("then", word);
      for (const QString& part : word.split(',')) {
        DoInBox(box, part);
        QCoreApplication::processEvents();
        if (!box.isVisible()) return;
      }
    }
  }

  static void DoInBox(QDialog& box, const QString& word) {
    const QString what = word.mid(1);
    auto* view = box.findChild<QTableView*>();
    if (word.startsWith('\'')) {
      QTest::keyClicks(box.focusWidget(), QString(what).replace('~', ' '));
    } else if (word.startsWith('^') && view != nullptr) {
      QHeaderView& head = *view->horizontalHeader();
      QTest::mouseClick(head.viewport(), Qt::LeftButton, {},
                        {head.sectionViewportPosition(what.toInt()) + 9, head.height() / 2});
    } else if (word.startsWith('^')) {
      auto* list = box.findChild<QListWidget*>();
      const QPoint at = list->visualItemRect(list->item(what.toInt())).center();
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
      QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
    } else if (word.startsWith('@')) {
      auto* button = box.findChild<QAbstractButton*>(what);
      button != nullptr ? button->click() : box.findChild<QWidget*>(what)->setFocus(Qt::TabFocusReason);
      if (what == "Today") {
        const int count = view->model()->rowCount();
        const auto today = QDate::currentDate().toJulianDay();
        const int size = box.windowTitle().section('x', -1).toInt();
        EXPECT_EQ(view->currentIndex().siblingAtColumn(0).data().toInt(), PuzzleOfDay(today, size, count));
      }
    } else {
      PressKeys(box, word);
    }
  }

  /// The chosen row and how many are shown, once all is known of each puzzle.
  static QString TextIn(const QTableView& view) {
    const auto& filter = dynamic_cast<const PuzzleFilter&>(*view.model());
    const auto& table = dynamic_cast<const PuzzleTable&>(*filter.sourceModel());
    EXPECT_TRUE(QTest::qWaitFor([&] { return table.Listing().Known() == table.rowCount(); }));
    QString text = QString::number(filter.rowCount()) + " rows";
    for (int column = 0; column < table.columnCount(); ++column) {
      const QModelIndex at = view.currentIndex().siblingAtColumn(column);
      text += " | " + at.data().toString() + " | " + at.data(Qt::AccessibleTextRole).toString();
    }
    return text;
  }

  static Values ValuesIn(QDialog& box) {
    Values values;
    for (const QWidget* widget : box.findChildren<QWidget*>()) {
      const auto* button = qobject_cast<const QAbstractButton*>(widget);
      const auto* push = qobject_cast<const QPushButton*>(widget);
      const auto* label = qobject_cast<const QLabel*>(widget);
      const auto* choice = qobject_cast<const QComboBox*>(widget);
      const auto* view = qobject_cast<const QTableView*>(widget);
      const auto* field = qobject_cast<const QLineEdit*>(widget);
      const auto* list = qobject_cast<const QListWidget*>(widget);
      QString text;
      if (button != nullptr) text = button->text() + (button->isChecked() ? " checked" : "");
      if (push != nullptr && push->isDefault()) text += " default";
      if (choice != nullptr) text = choice->currentText() + " of " + QString::number(choice->count());
      if (view != nullptr) text = TextIn(*view);
      if (label != nullptr && label->pixmap().isNull()) text = label->text();
      if (field != nullptr) text = '[' + field->text() + "] selected [" + field->selectedText() + ']';
      if (list != nullptr) {
        text = "";
        for (int row = 0; row < list->count(); ++row)
          text += (list->item(row)->isSelected() ? "*[" : "[") + list->item(row)->text() + ']';
      }
      if (text.isNull() || widget->objectName().startsWith("qt_") || !widget->isVisible()) continue;
      text += " | " + widget->accessibleName() + " | " + widget->accessibleDescription();
      text += widget->isEnabled() ? "" : " | disabled";
      text += widget == box.focusWidget() ? " | focus" : "";
      const bool isTitle = label != nullptr && label->buddy() != nullptr;
      const bool isChoice = choice != nullptr || (button != nullptr && push == nullptr);
      values.append({isTitle    ? "title of " + label->buddy()->objectName()
                     : isChoice ? "choice of " + widget->objectName()
                                : widget->objectName(),
                     text});
    }
    return values;
  }

  /// What the browser, or what else the desktop opens, was asked for.
  static QString Asked() { return qEnvironmentVariable("PATH") + "/asked"; }
  static QString TakeAsked() {
    QFile asked(Asked());
    if (!asked.open(QFile::ReadOnly)) return "nothing";
    const QString path = QString::fromLocal8Bit(asked.readAll()).trimmed();
    asked.remove();
    QFile file(path);
    return file.open(QFile::ReadOnly) ? QFileInfo(path).fileName() + ' ' + file.read(4) : path;
  }

  static QString Timeless(QString text) {
    static const QRegularExpression time("\\b\\d\\d:\\d\\d\\b");
    return text.replace(qEnvironmentVariable("XDG_RUNTIME_DIR"), "~")
        .replace('\n', "\\n")
        .replace(time, "mm:ss");
  }

  void Tell(const QString& what, const QString& text) { told_ += "  " + what + ": " + Timeless(text) + '\n'; }

  void TellDifference(const QString& start, const Values& before, const Values& now) {
    QMap<QString, QString> old;
    for (const auto& [name, text] : before) old[name] = Timeless(text);
    for (const auto& [name, text] : now) {
      if (!old.contains(name) || old[name] != Timeless(text)) Tell(start + name, text);
    }
  }

  void TellChanges() {
    // One event may wait for another: a tool's press, what it draws, and what is said of it.
    for (int round = 0; round < 8; ++round) QCoreApplication::processEvents();
    MainWindow& window = program_.Window();
    Values now;
    QAccessibleInterface* all = QAccessible::queryAccessibleInterface(&window);
    AddTold(now, *all, all->rect().topLeft());
    const QWidget* focus = window.focusWidget();
    now.append({"focus", focus == nullptr ? "" : focus->objectName()});
    now.append({"cursor", QString::number(Named(program_, "lblHint")->cursor().shape())});
    for (const char* name : {"Timer1", "Timer2", "Timer3"}) {
      const auto* timer = window.findChild<QTimer*>(name);
      now.append({name, timer->isActive() ? QString::number(timer->interval()) : "off"});
    }
    const QClipboard& clipboard = *QGuiApplication::clipboard();
    now.append({"clipboard", clipboard.text() + (clipboard.image().isNull() ? "" : " and a picture")});
    now.append({"opened", TakeAsked()});
    AddPainted(now);
    QFile settings(GameRun::SettingsFile());
    if (settings.open(QFile::ReadOnly))
      now.append({"settings", QString(settings.readAll()).replace('\n', ' ')});
    TellDifference("", values_, now);
    values_ = now;
  }

  static void AddTold(Values& values, QAccessibleInterface& of, QPoint corner) {
    const QAccessible::State state = of.state();
    const auto* widget = qobject_cast<QWidget*>(of.object());
    QStringList words{of.text(QAccessible::Name), QString::number(of.role()),
                      of.text(QAccessible::Description), of.text(QAccessible::Accelerator),
                      widget != nullptr ? widget->toolTip() : QString()};
    if (of.actionInterface() != nullptr) {
      words += of.actionInterface()->actionNames();
      if (!words[3].isEmpty()) {
        EXPECT_EQ(of.actionInterface()->keyBindingsForAction("Press").join(", "), words[3]);
      }
    }
    // Some versions of Qt let a check box be pressed, too.
    if (words.contains("Toggle")) words.removeAll("Press");
    for (const auto& [is, word] : {std::pair{state.focusable != 0, "focusable"},
                                   {state.focused != 0, "focused"},
                                   {state.disabled != 0, "disabled"},
                                   {state.invisible != 0, "invisible"},
                                   {state.checked != 0, "checked"}})
      words += is ? word : "";
    words.removeAll("");
    const QRect at = of.rect().isEmpty() ? QRect() : of.rect().translated(-corner);
    if (!state.invisible || of.childCount() > 0) {
      values.append({of.object()->objectName(), QString("%1 | %2,%3 %4x%5")
                                                    .arg(words.join(" | "))
                                                    .arg(at.x())
                                                    .arg(at.y())
                                                    .arg(at.width())
                                                    .arg(at.height())});
    }
    for (int i = 0; i < of.childCount(); ++i) {
      EXPECT_EQ(of.indexOfChild(of.child(i)), i);
      if (!at.isEmpty() && !of.child(i)->rect().isEmpty()) {
        const QPoint middle = of.child(i)->rect().center();
        EXPECT_EQ(of.childAt(middle.x(), middle.y()), of.child(i));
      }
      AddTold(values, *of.child(i), corner);
    }
  }

  /// The tile of each field, as the screen shows it, in brackets where a frame stands round it; and where the
  /// screen shows what is no longer so.
  void AddPainted(Values& values) {
    MainWindow& window = program_.Window();
    const QImage shown = window.screen()->grabWindow(window.winId()).toImage();
    const QRect stale = DifferentIn(shown, window.grab().toImage());
    if (!stale.isNull())
      Tell("not painted",
           QString("%1,%2 %3x%4").arg(stale.x()).arg(stale.y()).arg(stale.width()).arg(stale.height()));
    const BoardWidget& board = window.Board();
    for (int row = 0; row < board.Size() && board.isVisible(); ++row) {
      QString text;
      for (int cell = row * board.Size(); cell < (row + 1) * board.Size(); ++cell) {
        const QRect at = board.CellRect(cell).translated(board.pos());
        const auto [tile, difference] = ClosestTile(shown.copy(at.adjusted(1, 1, -1, -1)), at.size());
        const QChar sign = QLatin1Char(".gtT4??W"[tile]);
        text += difference > 5 ? '[' + QString(sign) + ']' : QString(sign);
      }
      values.append({QString("painted %1").arg(row + 1), text});
    }
  }

  NoTicks noTicks_;
  GameRun& run_;
  Program& program_;
  const QStringList lines_;
  QStringList words_;
  QString told_;
  Values values_;
};

TEST(Session, GoesAsItDid) {
  GameRun run("6");
  MakeOpener("exit 3\n");
  run.Run([&](Program& program) {
    const std::string path = BIVOUAC_SOURCE_DIR "/tests/data/plays/window.txt";
    const std::string told =
        Session(run, program, QString::fromStdString(BytesOf(path))).Told().toStdString();
    ExpectSameLines(told, KeptIn(path, told));
  });
}

}  // namespace
}  // namespace bivouac
