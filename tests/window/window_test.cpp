#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include "game/clock.h"
#include "game/layout.h"
#include "tests/window/game_run.h"
#include "window/text_fit.h"

namespace bivouac {
namespace {

QString TextOf(Program& program, const QString& name) {
  return dynamic_cast<TextLabel&>(*Named(program, name)).Text();
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

TEST(Window, SettingsThatCannotBeWrittenAreToldOnce) {
  GameRun run("6");
  QFile::remove(GameRun::SettingsFile());
  QDir().mkpath(GameRun::SettingsFile());
  run.Run([&](Program& program) {
    run.Expect("Settings not saved", Press(Qt::Key_Return));
    ClickOn(program, "optSound");
    ClickOn(program, "optSound");
  });
  QDir().rmdir(GameRun::SettingsFile());
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
    QTimer::singleShot(0, [&] {
      EXPECT_FALSE(Named(program, "cmdGenerate")->isEnabled());
      EXPECT_TRUE(program.Window().findChild<QTimer*>("Timer1")->isActive());
      ClickOn(program, "cmdExit");
    });
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
        EXPECT_TRUE(EdgesAreClear(*Named(program, "lblHint"), 6)) << scale;
      }
    }
  });
}

TEST(Window, ThePuzzlesHaveTheRoomThatTheirTextsTake) {
  GameRun run("10");
  run.Setting("Players/Count", "1");
  run.Setting("Players/Player01", "Zoe");
  run.Setting("Players/Last_Player", "1");
  run.Play(3, [&](Program& program) {
    AddPenalty(program.State(), 75);  // A time of 0:00 counts as none.
    run.Expect("Puzzle Solved!!!", Press(Qt::Key_Return));
    run.Expect("New Best Time!!!", Press(Qt::Key_Return));
    Solve(program);
    run.Expect("Puzzles 10x10", [&](QDialog& dialog) {
      auto* view = dialog.findChild<QTableView*>("Puzzles");
      EXPECT_EQ(view->horizontalScrollBar()->maximum(), 0);
      QTest::keyClick(view, Qt::Key_End);
      EXPECT_EQ(view->currentIndex().row(), 99);
      dialog.close();
    });
    program.Window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&program.Window()));
    QTest::keyClick(&program.Window(), Qt::Key_F2);
  });
}

}  // namespace
}  // namespace bivouac
