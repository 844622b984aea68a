#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include "game/clock.h"
#include "game/layout.h"
#include "tests/support/looks.h"
#include "tests/window/game_run.h"
#include "window/text_fit.h"

namespace bivouac {
namespace {

QString TextOf(Program& program, const QString& name) {
  return dynamic_cast<TextLabel&>(*Find(program, name)).Text();
}

qint64 PackBytes(const char* name) {
  return QFile(GameRun::DataFolder() + "/" + name).size();
}

/// What a widget painted since the last look.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
  QRegion Painted;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) Painted += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
};

TEST(Window, PlaysAWholeGameWithTheMouse) {
  GameRun run("6");
  const int status = run.Run([&](Program& program) {
    EXPECT_FALSE(Find(program, "cmdNext")->isEnabled());
    OpenPuzzle(run, program, 3);
    EXPECT_EQ(TextOf(program, "StatusBar1.Panels(3)"), "Puzzle #: 3");
    EXPECT_EQ(TextOf(program, "RowCnt(0)").toStdString(), program.State().RowCnt[0].Caption);
    EXPECT_TRUE(Find(program, "cmdSolution")->isEnabled());

    int open = 0;
    while (program.State().Board[open] != CELL_OPEN) ++open;
    ClickCell(program, open, Qt::RightButton);
    EXPECT_EQ(TextOf(program, "LabelStap"), "1");
    ClickOn(program, "cmdUndo");
    EXPECT_EQ(TextOf(program, "LabelStap"), "0");
    EXPECT_FALSE(Find(program, "cmdUndo")->isEnabled());
    ClickOn(program, "cmdRedo");

    int tree = 0;
    while (program.State().Board[tree] != CELL_TREE) ++tree;
    run.Expect("Hint required?", Press(Qt::Key_Escape));  // No.
    ClickCell(program, tree);
    run.Expect("Hint required?", Press(Qt::Key_Return));  // Yes.
    run.Expect("Tent Check", Press(Qt::Key_Escape));
    ClickCell(program, tree);

    ClickOn(program, "cmdPause");
    EXPECT_TRUE(Find(program, "Shield")->isVisible());
    ClickOn(program, "Picture1");
    EXPECT_FALSE(Find(program, "Shield")->isVisible());

    run.Expect("Puzzle Solved!!!", Press(Qt::Key_Return));
    Solve(program);
    EXPECT_TRUE(Find(program, "cmdNext")->isEnabled());
    ClickOn(program, "cmdNext");
    EXPECT_EQ(TextOf(program, "StatusBar1.Panels(3)"), "Puzzle #: 4");
    run.Expect("Quit Bivouac", Press(Qt::Key_Escape));
    ClickOn(program, "cmdExit");
    run.Expect("Quit Bivouac", Press(Qt::Key_Return));
    ClickOn(program, "cmdExit");
  });
  EXPECT_EQ(status, 0);
}

TEST(Window, BothPressesOfADoubleClickCountAndOnlyTheCellIsPainted) {
  GameRun run("18");
  run.Play(1, [&](Program& program) {
    Main& main = program.State();
    BoardWidget& board = program.Window().Board();
    int cell = 40;
    while (main.Board[cell] != CELL_OPEN) ++cell;
    const QPoint at = board.CellRect(cell).center();
    QCoreApplication::processEvents();
    PaintWatch watch(board);

    ClickCell(program, cell);
    QMouseEvent second(QEvent::MouseButtonDblClick, at, board.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                       Qt::NoModifier);
    QCoreApplication::sendEvent(&board, &second);
    EXPECT_EQ(main.Board[cell], CELL_TENT);
    QCoreApplication::processEvents();
    EXPECT_EQ(watch.Painted.boundingRect(), board.CellRect(cell));

    // Ticks of the clock that change nothing paint nothing.
    watch.Painted = {};
    program.Window().Draw();
    QCoreApplication::processEvents();
    EXPECT_TRUE(watch.Painted.isEmpty());
  });
}

TEST(Window, TabWalksTheEnabledControlsInTheOrderOfTheTableAndThenTheBoard) {
  GameRun run;
  run.Run([&](Program& program) {
    std::vector<std::string> expected;
    for (const ControlRow& row : ControlTable()) {
      const bool takesFocus = row.Kind == ControlKind::Button || row.Kind == ControlKind::CheckBox ||
                              row.Kind == ControlKind::Link;
      if (takesFocus && Find(program, QString::fromUtf8(row.Name))->isEnabled())
        expected.emplace_back(row.Name);
    }
    expected.push_back("Grid");
    program.Window().activateWindow();
    Find(program, "cmdOptions")->setFocus();
    std::vector<std::string> walked;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      walked.push_back(program.Window().focusWidget()->objectName().toStdString());
      QTest::keyClick(program.Window().focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(walked, expected);
    EXPECT_EQ(program.Window().focusWidget()->objectName(), "cmdOptions");
  });
}

TEST(Window, PlaysWithTheKeyboard) {
  GameRun run("6");
  run.Run([&](Program& program) {
    Main& main = program.State();
    run.Expect("Select Puzzle", Type("1"));
    Find(program, "cmdOpen")->setFocus();
    QTest::keyClick(Find(program, "cmdOpen"), Qt::Key_Return);
    BoardWidget& board = program.Window().Board();
    EXPECT_EQ(program.Window().focusWidget(), &board);  // The button is disabled: play goes on at the board.

    // The frame stops at the edges.
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left,
                              Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Up}) {
      QTest::keyClick(&board, key);
    }
    EXPECT_EQ(board.Current(), 2 * 6 + 1);
    QTest::keyClick(&board, Qt::Key_Home);
    EXPECT_EQ(board.Current(), 2 * 6);
    while (main.Board[board.Current()] != CELL_OPEN && board.Current() % 6 != 5)
      QTest::keyClick(&board, Qt::Key_Right);
    const int cell = board.Current();
    QTest::keyClick(&board, Qt::Key_Space);
    EXPECT_EQ(main.Board[cell], CELL_GRASS);
    QTest::keyClick(&board, Qt::Key_Enter);
    EXPECT_EQ(main.Board[cell], CELL_TENT);

    Find(program, "cmdPause")->setFocus();
    QTest::keyClick(Find(program, "cmdPause"), Qt::Key_Space);
    EXPECT_EQ(program.Window().focusWidget()->objectName(), "Picture1");
    EXPECT_FALSE(board.isVisible());
    QTest::keyClick(Find(program, "Picture1"), Qt::Key_Return);
    EXPECT_FALSE(main.Paused);
    EXPECT_EQ(program.Window().focusWidget(), &board);
  });
}

TEST(Window, KeysPressEnabledButtonsAndWhatChangedIsSaid) {
  GameRun run("6");
  run.Run([&](Program& program) {
    Main& main = program.State();
    BoardWidget& board = program.Window().Board();
    const auto activate = [&] {  // As a desktop does after a box.
      program.Window().activateWindow();
      EXPECT_TRUE(QTest::qWaitForWindowActive(&program.Window()));
    };
    const auto press = [&](const QKeySequence& keys) {
      activate();
      QTest::keySequence(program.Window().focusWidget(), keys);
      activate();
      QCoreApplication::processEvents();
      return program.Window().Voice().Last().Text().toStdString();
    };
    board.setFocus();
    run.Expect("Select Puzzle", Type("5"));
    const std::string opened = press(Qt::CTRL | Qt::Key_O);
    EXPECT_EQ(opened, "Puzzle 5, 6 by 6, level 1, " + std::to_string(main.TreeCount) + " tents.");
    press(Qt::CTRL | Qt::Key_O);  // No box: the button is disabled.
    EXPECT_EQ(program.Window().focusWidget(), &board);

    press(Qt::Key_T);  // Shows the frame, no more.
    EXPECT_EQ(main.StepCount, 0);
    while (main.Board[board.Current()] != CELL_OPEN) press(Qt::Key_Right);
    const int cell = board.Current();
    const std::string place =
        "Row " + std::to_string(cell / 6 + 1) + ", column " + std::to_string(cell % 6 + 1) + ", ";
    QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(Find(program, "StatusBar1"));
    EXPECT_EQ(bar->child(bar->childCount() - 1)->role(), QAccessible::Notification);
    EXPECT_EQ(bar->child(bar->childCount() - 1)->text(QAccessible::Name).toStdString(), opened);
    const struct {
      QKeySequence Keys;
      int Code, Steps;
      std::string Said;
    } rows[] = {
        {Qt::Key_T, CELL_TENT, 2, "Tent."},
        {Qt::Key_T, CELL_TENT, 2, "Tent."},
        {Qt::Key_O, CELL_OPEN, 3, "Open."},
        {Qt::Key_G, CELL_GRASS, 4, "Grass."},
        {Qt::CTRL | Qt::Key_Z, CELL_OPEN, 3, place + "open."},
        {Qt::CTRL | Qt::Key_Z, CELL_TENT, 2, place + "tent."},
        {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, CELL_OPEN, 3, place + "open."},
        {Qt::CTRL | Qt::Key_Y, CELL_GRASS, 4, place + "grass."},
        {Qt::CTRL | Qt::Key_Y, CELL_GRASS, 4, place + "grass."},
        {Qt::CTRL | Qt::Key_R, CELL_OPEN, 0, "Started again."},
    };
    for (const auto& row : rows) {
      EXPECT_EQ(press(row.Keys), row.Said);
      EXPECT_EQ(main.Board[cell], row.Code) << row.Said;
      EXPECT_EQ(main.StepCount, row.Steps) << row.Said;
    }
    press(Qt::Key_P);
    EXPECT_TRUE(main.Paused);
    press(Qt::Key_H);  // Disabled.
    EXPECT_TRUE(press(Qt::Key_S).starts_with("Paused at ")) << press(Qt::Key_S);
    press(Qt::Key_P);
    EXPECT_FALSE(main.Paused);
    press(Qt::Key_H);
    EXPECT_FALSE(main.BoardLive);
    press(Qt::Key_Escape);
    EXPECT_TRUE(main.BoardLive);

    press(Qt::CTRL | Qt::Key_End);
    EXPECT_EQ(board.Current(), 35);
    press(Qt::Key_PageUp);
    EXPECT_EQ(board.Current(), 5);
    press(Qt::CTRL | Qt::Key_Home);
    press(Qt::Key_PageDown);
    EXPECT_EQ(board.Current(), 30);

    run.Expect("Help", [&](QDialog& box) {
      EXPECT_TRUE(run.Texts.back().contains("Ctrl+Shift+Z or Ctrl+Y: Redo"));
      EXPECT_TRUE(Find(program, "cmdRedo")->toolTip().contains("(Ctrl+Shift+Z, Ctrl+Y)"));
      QTest::keyClick(&box, Qt::Key_Escape);
    });
    press(Qt::Key_F1);
    run.Expect("Puzzle Solved!!!", Press(Qt::Key_Return));
    Solve(program);
    press(Qt::CTRL | Qt::Key_Right);
    EXPECT_EQ(main.PuzzleNo, 6);
    activate();
    run.Expect("Quit Bivouac", Press(Qt::Key_Return));
    QTest::keySequence(&board, Qt::CTRL | Qt::Key_Q);
  });
}

TEST(Window, EscapeAnywhereAndEnterOnTheTextEndAHint) {
  GameRun run("8");
  run.Play(1, [&](Program& program) {
    Main& main = program.State();
    QWidget* text = Find(program, "lblHint");
    for (const bool wrongField : {false, true}) {
      for (const bool byEscape : {true, false}) {
        if (wrongField) {  // The grass becomes a tent, and the hint asks first: No, and Yes.
          int wrong = 0;
          while (main.Board[wrong] != CELL_GRASS) ++wrong;
          ClickCell(program, wrong);
          run.Expect("Hint Report", Press(Qt::Key_Escape));
          run.Expect("Hint Report", Press(Qt::Key_Return));
        }
        Find(program, "cmdHint")->setFocus();
        QTest::keyClick(Find(program, "cmdHint"), Qt::Key_Return);
        EXPECT_TRUE(main.Timer2.Enabled && !main.BoardLive);
        EXPECT_EQ(text->cursor().shape(), Qt::PointingHandCursor);
        EXPECT_EQ(program.Window().focusWidget(), text);
        QTest::keyClick(byEscape ? Find(program, "cmdExit") : text,
                        byEscape ? Qt::Key_Escape : Qt::Key_Return);
        EXPECT_TRUE(!main.Timer2.Enabled && main.BoardLive);
        EXPECT_EQ(text->cursor().shape(), Qt::ArrowCursor);
      }
    }
  });
}

TEST(Window, AnUnhandledErrorIsReportedAndEndsTheProgramWithStatusOne) {
  struct Row {
    void (*Fail)(Main& main);
    const char* Line;
  };
  const Row rows[] = {
      {[](Main& main) { main.Board[kMaxCells] = 0; }, "Run-time error 9: index outside an array"},
      {[](Main&) { throw std::logic_error("a strange one"); }, "Error: a strange one"},
  };
  for (const Row& row : rows) {
    GameRun run("6");
    const int status = run.Play(1, [&](Program& program) {
      program.State().global.CurrentPlayer = 1;
      program.State().RecordTimes = row.Fail;
      run.Expect("Puzzle Solved!!!", Press(Qt::Key_Return));
      run.Expect("Bivouac", Press(Qt::Key_Return));
      Solve(program);
    });
    EXPECT_EQ(status, 1);
    EXPECT_EQ(run.Texts.back(), row.Line);
  }
}

TEST(Window, AnErrorAtStartNamesTheSettingsFile) {
  for (const char* size : {"5", "many"}) {
    GameRun run(size);
    run.Expect("Bivouac", Press(Qt::Key_Escape));
    EXPECT_EQ(run.Run([](Program&) { FAIL() << "the window was shown"; }), 1);
    EXPECT_TRUE(run.Texts.back().contains(GameRun::SettingsFile())) << run.Texts.back().toStdString();
  }
}

TEST(Window, EndsInTheMiddleOfANewPuzzleAndUnderABox) {
  enum class Way { CloseBox, Exit, UnderABox };
  for (const Way way : {Way::CloseBox, Way::Exit, Way::UnderABox}) {
    GameRun run("18");
    const qint64 before = PackBytes("BVPack18.bvq");
    if (way == Way::Exit) run.Expect("Quit Bivouac", Press(Qt::Key_Return));
    bool unwound = false;
    const int status = run.Run([&](Program& program) {
      const auto end = [&] {
        way == Way::Exit ? ClickOn(program, "cmdExit") : void(program.Window().close());
      };
      if (way == Way::UnderABox) {
        run.Expect("Puzzle Size", [&](QDialog&) { end(); });
        ClickOn(program, "cmdOptions");
      } else {
        QTimer::singleShot(0, [&] {
          EXPECT_FALSE(program.State().PuzzleOver);  // In the middle of the generator.
          end();
        });
        ClickOn(program, "cmdGenerate");
      }
      unwound = true;
    });
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(unwound);
    EXPECT_EQ(PackBytes("BVPack18.bvq"), before);
  }
}

TEST(Window, MakesANewPuzzleAndGoesOnWhereExitIsDeclined) {
  GameRun run("7");
  run.Run([&](Program& program) {
    const qint64 before = PackBytes("BVPack07.bvq");
    run.Expect("Quit Bivouac", Press(Qt::Key_Escape));
    run.Expect("Generate report", Press(Qt::Key_Return));
    QTimer::singleShot(0, [&] { ClickOn(program, "cmdExit"); });
    ClickOn(program, "cmdGenerate");
    EXPECT_EQ(PackBytes("BVPack07.bvq"), before + 1376);
    EXPECT_EQ(TextOf(program, "StatusBar1.Panels(3)"), QString("Puzzle #: %1").arg(before / 1376 + 1));
  });
}

/// True if the outermost pixels of the widget's text room all have one colour: no letter reaches its edge.
bool EdgesAreClear(QWidget& widget, int inset) {
  const QImage image = widget.grab().toImage();
  const QRect room = image.rect().adjusted(inset, 0, -inset, 0);
  for (const int y : {room.top(), room.bottom()}) {
    for (int x = room.left() + 4; x < room.right() - 4; ++x) {
      if (qGray(image.pixel(x, y)) < 90) return false;
    }
  }
  return true;
}

TEST(Window, NoTextIsClippedAtAnyScale) {
  const std::string name(16, 'W');
  const std::string hint =
      "One of the blinking trees can't place his tent on the blinking field between them without causing the "
      "other tree loosing the possibility to place his tent. As a result of that, the other two fields where "
      "the tent of that tree can be placed, the blinking field between those two other options must be "
      "grass! "
      "Tents can be placed on the fields with a blinking tent! Click HERE to continue...";
  GameRun run("18");
  run.Play(1, [&](Program& program) {
    Main& main = program.State();
    MainWindow& window = program.Window();
    PanelOf(main, 3).Text = "Puzzle #: 32767";
    PanelOf(main, 4).Text = "Total Puzzles: 32767";
    PanelOf(main, 5).Text = "Best Time: 88:88 by " + name;
    PanelOf(main, 6).Text = "Your Time: 88:88";
    for (const double scale : {0.6, 0.77, 1.0, 1.31, 2.0, 3.3}) {
      window.resize(static_cast<int>(545 * scale), static_cast<int>(602 * scale));
      for (const std::string& text : {std::string(), std::string(RulesText()), hint}) {
        main.lblHint.Caption = text;
        window.Draw();
        QCoreApplication::processEvents();
        for (auto* child : window.findChildren<QWidget*>()) {
          auto* label = dynamic_cast<TextLabel*>(child);
          if (label == nullptr || !label->isVisible() || label->Text().isEmpty()) continue;
          SCOPED_TRACE(label->objectName().toStdString() + " at " + std::to_string(scale));
          EXPECT_TRUE(TextFits(label->font(), label->Text(), label->TextRoom(), Wrapping::AtWords));
          EXPECT_GE(label->font().pixelSize(), static_cast<int>(8 * scale));
        }
        for (auto* button : window.findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly)) {
          SCOPED_TRACE(button->objectName().toStdString() + " at " + std::to_string(scale));
          EXPECT_TRUE(TextFits(button->font(), button->text(), button->size(), Wrapping::OneLine));
        }
        EXPECT_TRUE(EdgesAreClear(*Find(program, "lblHint"), 6)) << scale;
      }
    }
  });
}

QImage Clue(Program& program, TextColour colour) {
  program.State().RowCnt[0].ForeColor = colour;
  program.Window().Draw();
  return Find(program, "RowCnt(0)")->grab().toImage();
}

/// Around the pixels of a picture that are not ground, whatever their colour.
QRect Ink(const QImage& image) {
  QRect ink;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (qGray(image.pixel(x, y)) < 150) ink |= QRect(x, y, 1, 1);
    }
  }
  return ink;
}

TEST(Window, FinishedAndTooManyShowWithoutColourToo) {
  for (const auto& [size, width] : {std::pair{"18", 3}, {"6", 7}}) {
    GameRun run(size);
    run.Play(1, [&, tick = width](Program& program) {
      const QRect plain = Ink(Clue(program, TextColour::WindowText));
      const QImage clue = Clue(program, TextColour::Green);
      const QRect finished = Ink(clue);
      EXPECT_GE(finished.width(), plain.width() + tick);
      const auto topFromRight = [&](int x) {
        return Ink(clue.copy(finished.right() - x, 0, 2, clue.height())).top();
      };
      EXPECT_TRUE(tick < 7 || topFromRight(1) + 3 < topFromRight(tick)) << "it rises to the right";
      EXPECT_GE(Ink(Clue(program, TextColour::Red)).bottom(), plain.bottom() + 2);  // The line.
    });
  }
}

/// A line of an object and those in it: where it is, what assistive tools are told, and the tip under the
/// mouse.
void Tell(QAccessibleInterface* of, QPoint corner, QString& told) {
  const QAccessible::State state = of->state();
  const auto* widget = qobject_cast<QWidget*>(of->object());
  QStringList words{of->object()->objectName(),         QString::number(of->role()),
                    of->text(QAccessible::Name),        of->text(QAccessible::Description),
                    of->text(QAccessible::Accelerator), widget != nullptr ? widget->toolTip() : QString()};
  if (of->actionInterface() != nullptr) words += of->actionInterface()->actionNames();
  // Some versions of Qt let a check box be pressed, too.
  if (words.contains("Toggle")) words.removeAll("Press");
  words += state.focusable ? "focusable" : "";
  words += state.disabled ? "disabled" : "";
  words += state.invisible ? "invisible" : "";
  words += state.checked ? "checked" : "";
  const QRect at = of->rect().isEmpty() ? QRect() : of->rect().translated(-corner);
  told += QString("%1,%2 %3x%4 ").arg(at.x()).arg(at.y()).arg(at.width()).arg(at.height());
  told += words.join('|') + '\n';
  for (int i = 0; i < of->childCount(); ++i) {
    EXPECT_EQ(of->indexOfChild(of->child(i)), i);
    Tell(of->child(i), corner, told);
  }
}

TEST(Window, TellsAssistiveToolsWhatItShows) {
  GameRun run("6");
  run.Play(1, [&](Program& program) {
    Main& main = program.State();
    BoardWidget& board = program.Window().Board();
    QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(&board);
    ASSERT_EQ(grid->childCount(), 36);
    int cell = 0;
    while (main.Board[cell] != CELL_OPEN) ++cell;
    QAccessibleInterface* field = grid->child(cell);
    const QString place = QString("Row %1, column %2, ").arg(cell / 6 + 1).arg(cell % 6 + 1);
    EXPECT_TRUE(field->text(QAccessible::Name).startsWith(place + "open. Row: "));
    field->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    EXPECT_TRUE(field->text(QAccessible::Name).startsWith(place + "grass. Row: "));
    ClickOn(program, "cmdUndo");
    program.Window().activateWindow();
    QCoreApplication::processEvents();
    board.setFocus();
    for (int i = 0; i < 36; ++i) {
      const QPoint middle = grid->child(i)->rect().center();
      EXPECT_EQ(grid->childAt(middle.x(), middle.y()), grid->child(i));
      EXPECT_EQ(grid->child(i)->state().focused, i == board.Current());
    }
    const auto passOn = QAccessible::installUpdateHandler(nullptr);
    for (QWidget* widget :
         {static_cast<QWidget*>(&board), Find(program, "cmdUndo"), Find(program, "Label2")}) {
      QAccessibleEvent focus(widget, QAccessible::Focus);
      passOn(&focus);
      ASSERT_EQ(QAccessible::installUpdateHandler(passOn), passOn);
    }
    main.Timer3.Enabled = false;
    main.LabelTijd.Caption = "00:00";
    program.Window().Draw();
    QString told;
    QAccessibleInterface* all = QAccessible::queryAccessibleInterface(&program.Window());
    Tell(all, all->rect().topLeft(), told);
    ClickOn(program, "cmdHint");
    program.Window().resize(900, 700);
    QCoreApplication::processEvents();
    Tell(all, all->rect().topLeft(), told);
    EXPECT_EQ(told.toStdString(), Kept("told", told.toStdString()));
  });
}

TEST(Window, TheDialogOfThePlayersTakesItsKeys) {
  GameRun run;
  run.Run([&](Program& program) {
    FormNamen& form = program.Players();
    run.Expect("Players", [&](QDialog& dialog) {
      auto* field = dialog.findChild<QLineEdit*>("NaamInvoerveld");
      auto* list = dialog.findChild<QWidget*>("NaamLijst");
      EXPECT_EQ(dialog.focusWidget(), list);
      EXPECT_FALSE(field->isEnabled());

      dialog.findChild<QPushButton*>("KnopNieuweSpeler")->click();
      EXPECT_EQ(dialog.focusWidget(), field);
      // Enter is the field's own, with a box that belongs to the dialog.
      run.Expect("Loss of memory ?", [&](QDialog& box) {
        EXPECT_EQ(box.parentWidget(), &dialog);
        EXPECT_EQ(run.Texts.back().count('\n'), 1);
        QTest::keyClick(&box, Qt::Key_Return);
      });
      QTest::keyClick(field, Qt::Key_Return);
      EXPECT_TRUE(dialog.isVisible());

      // The field takes fifteen characters, whatever their length in memory.
      const QString tents = QString::fromUcs4(U"\U0001F3D5\U0001F3D5");
      field->insert("");
      QTest::keyClicks(field, "abcdefghijklmnopqrs");
      EXPECT_EQ(field->text(), "abcdefghijklmno");
      field->clear();
      qApp->processEvents();
      QTest::keyClicks(field, "Zoe");
      EXPECT_EQ(form.NaamInvoerveld.Text, "Zoe");
      QTest::keyClick(field, Qt::Key_Escape);
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(dialog.focusWidget(), list);
      EXPECT_EQ(program.State().global.PlayerCount, 0);

      dialog.findChild<QPushButton*>("KnopNieuweSpeler")->click();
      QTest::keyClicks(field, "Zoe");
      QTest::keyClick(field, Qt::Key_Return);
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(program.State().global.PlayerCount, 1);
      EXPECT_EQ(form.NaamLijst.ListIndex, 0);
      QTest::keyClick(list, Qt::Key_Return);
    });
    ClickOn(program, "cmdPlayers");
    EXPECT_EQ(program.Window().windowTitle(), "Bivouac - Zoe is playing");

    // Shown again, nothing is selected; the first arrow key selects the first player. Escape changes nothing.
    run.Expect("Players", [&](QDialog& dialog) {
      EXPECT_EQ(form.NaamLijst.ListIndex, -1);
      QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
      EXPECT_EQ(form.NaamLijst.ListIndex, 0);
      EXPECT_TRUE(form.KnopOK.Enabled);
      QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
    });
    ClickOn(program, "cmdPlayers");
    EXPECT_EQ(program.State().global.CurrentPlayer, 1);
    run.Expect("Players", [&](QDialog& dialog) { dialog.close(); });
    ClickOn(program, "cmdPlayers");
    run.Expect("Players", [&](QDialog& dialog) { dialog.findChild<QPushButton*>("CommandFree")->click(); });
    ClickOn(program, "cmdPlayers");
    EXPECT_EQ(program.State().global.CurrentPlayer, 0);
  });
  const QSettings kept("Bivouac", "Bivouac");
  EXPECT_EQ(kept.fileName(), GameRun::SettingsFile());
  EXPECT_EQ(kept.value("Players/Player01").toString(), "Zoe             ");
  EXPECT_EQ(kept.value("Players/Last_Player").toString(), "0");
}

TEST(Window, OpensTheWebSiteAndAPrintedPosition) {
  const QByteArray path = qgetenv("PATH");
  const QString folder = qEnvironmentVariable("BIVOUAC_TEST_FOLDER") + "/programs";
  QDir().mkpath(folder);
  QFile browser(folder + "/xdg-open");
  ASSERT_TRUE(browser.open(QFile::WriteOnly));
  browser.write(
      "#!/bin/sh\nPATH=/bin; echo \"$@\" > ${0%xdg-open}part && mv ${0%xdg-open}part ${0%xdg-open}asked\n");
  browser.close();
  browser.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  GameRun run;
  run.Run([&](Program& program) {
    qputenv("PATH", folder.toUtf8());
    ClickOn(program, "Label2");
    QFile asked(folder + "/asked");
    ASSERT_TRUE(QTest::qWaitFor([&] { return asked.exists(); }));
    ASSERT_TRUE(asked.open(QFile::ReadOnly));
    EXPECT_TRUE(asked.readAll().startsWith("https://"));
    EXPECT_FALSE(QFile::exists(GameRun::DataFolder() + "/temphtm.HTM"));

    // Nothing is printed while no puzzle is on the board, nor where the pack maker is not beside the game.
    asked.close();
    asked.remove();
    const auto print = [&] {
      program.Window().activateWindow();
      ASSERT_TRUE(QTest::qWaitForWindowActive(&program.Window()));
      QTest::keyClick(program.Window().focusWidget(), Qt::Key_P, Qt::ControlModifier);
    };
    print();
    OpenPuzzle(run, program, 1);
    EXPECT_FALSE(asked.exists());
    if (!BIVOUAC_PRINTS) return;
    print();
    ASSERT_TRUE(QTest::qWaitFor([&] { return asked.exists(); }));
    ASSERT_TRUE(asked.open(QFile::ReadOnly));
    QFile page(QString::fromLocal8Bit(asked.readAll()).trimmed());
    EXPECT_TRUE(page.fileName().endsWith(" 1.pdf")) << page.fileName().toStdString();
    ASSERT_TRUE(page.open(QFile::ReadOnly));
    EXPECT_TRUE(page.readAll().startsWith("%PDF"));
  });
  qputenv("PATH", path);
}

TEST(Window, ThePuzzlesAreListedChosenAndOpened) {
  GameRun run("10");
  run.Setting("Players/Count", "1");
  run.Setting("Players/Player01", "Zoe");
  run.Setting("Players/Last_Player", "1");
  const auto cell = [](QDialog& dialog, int row, int column) {
    const auto* view = dialog.findChild<QTableView*>("Puzzles");
    return view->model()->index(row, column).data().toString();
  };
  const auto list = [](Program& program) {
    program.Window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&program.Window()));
    QTest::keyClick(&program.Window(), Qt::Key_F2);
  };
  run.Play(3, [&](Program& program) {
    // In a game the table is for looking only.
    run.Expect("Puzzles 10x10", [&](QDialog& dialog) {
      auto* view = dialog.findChild<QTableView*>("Puzzles");
      EXPECT_EQ(view->currentIndex().row(), 2);
      EXPECT_FALSE(dialog.findChild<QPushButton*>("Open")->isEnabled());
      QTest::keyClick(view, Qt::Key_Return);
      EXPECT_TRUE(dialog.isVisible());
      QTest::keyClick(view, Qt::Key_Escape);
    });
    list(program);
    EXPECT_FALSE(program.State().PuzzleOver);

    AddPenalty(program.State(), 75);  // A time of 0:00 counts as none.
    run.Expect("Puzzle Solved!!!", Press(Qt::Key_Return));
    run.Expect("New Best Time!!!", Press(Qt::Key_Return));
    Solve(program);
    run.Expect("Puzzles 10x10", [&](QDialog& dialog) {
      auto* view = dialog.findChild<QTableView*>("Puzzles");
      EXPECT_EQ(cell(dialog, 2, 5), "solved");
      EXPECT_TRUE(cell(dialog, 2, 3).endsWith(" by Zoe"));
      EXPECT_EQ(cell(dialog, 2, 4), cell(dialog, 2, 3).left(5));
      EXPECT_TRUE(dialog.findChild<QLabel*>("Summary")->text().startsWith("1 of 100 solved, in 0"));

      dialog.findChild<QCheckBox*>("UnsolvedFilter")->click();
      EXPECT_EQ(cell(dialog, 2, 0), "4");
      dialog.findChild<QComboBox*>("LevelFilter")->setCurrentIndex(5);
      EXPECT_EQ(cell(dialog, 0, 1), "5");
      auto* rules = dialog.findChild<QComboBox*>("RuleFilter");
      ASSERT_TRUE(QTest::qWaitFor([&] { return rules->itemText(1).contains(','); }));
      rules->setCurrentIndex(rules->count() - 1);
      EXPECT_EQ(dialog.findChild<QListWidget*>("Needs")
                    ->findItems(rules->currentText().section(',', 0, 0), Qt::MatchExactly)
                    .size(),
                1);
      const QString number = cell(dialog, 0, 0);
      view->sortByColumn(0, Qt::DescendingOrder);
      EXPECT_LT(number.toInt(), cell(dialog, 0, 0).toInt());

      dialog.findChild<QPushButton*>("Today")->click();
      EXPECT_EQ(view->model()->rowCount(), 100);
      view->setCurrentIndex(view->model()->index(0, 0));
      QTest::keyClick(view, Qt::Key_Return);
    });
    list(program);
    EXPECT_EQ(program.State().PuzzleNo, 100);
    EXPECT_FALSE(program.State().PuzzleOver);
  });
}

}  // namespace
}  // namespace bivouac
