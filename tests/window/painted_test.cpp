// What the window paints, held against the values that it draws and the pictures as they were committed.
#include <QFile>
#include <QImage>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include "game/play.h"
#include "tests/support/looks.h"
#include "tests/window/game_run.h"
#include "tests/window/pixels.h"

namespace bivouac {
namespace {

constexpr QSizeF kOpening(kWindowWidth / 15.0, kWindowHeight / 15.0);

/// The picture of a widget after what changed in Main was drawn.
QImage Painted(Program& program, const QString& name) {
  program.Window().Draw();
  return Named(program, name)->grab().toImage();
}

/// Where twips lie in a picture of the whole window: the layout in its middle, as large as it fits.
QRect InPicture(Program& program, const Place& at) {
  const QSizeF inner = program.Window().size();
  const double ratio = program.Window().devicePixelRatioF();
  const double factor =
      std::min(inner.width() / kOpening.width(), inner.height() / kOpening.height()) / 15 * ratio;
  const double left = (inner.width() * ratio - kWindowWidth * factor) / 2;
  const double top = (inner.height() * ratio - kWindowHeight * factor) / 2;
  return QRectF(left + at.Left * factor, top + at.Top * factor, at.Width * factor, at.Height * factor)
      .toRect();
}

/// Each cell shows the tile of its picture, where the layout has it, and no ground shows between them.
void ExpectTilesOfTheirCells(Program& program) {
  const Main& main = program.State();
  program.Window().Draw();
  const QImage window = program.Window().grab().toImage();
  QRect board;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    SCOPED_TRACE("cell " + std::to_string(cell));
    const QRect at = InPicture(program, main.Grid[cell].At);
    board |= at;
    const QImage painted = window.copy(at.adjusted(1, 1, -1, -1));
    const auto [closest, least] = ClosestTile(painted, at.size());
    const int picture = main.Grid[cell].Picture;
    EXPECT_EQ(closest, picture == 5 || picture == 6 ? picture - 4 : picture);
    EXPECT_LT(least, 16);
  }
  const QImage all = window.copy(board.adjusted(1, 1, -1, -1));
  const QRgb ground = 0xFF000000U | kWindowBackground;
  for (int y = 0; y < all.height(); ++y) {
    for (int x = 0; x < all.width(); ++x) ASSERT_NE(all.pixel(x, y), ground) << "a gap at " << x << ", " << y;
  }
}

QTimer& TimerNamed(Program& program, const char* name) {
  return *program.Window().findChild<QTimer*>(name);
}

void Tick(Program& program, const char* timer) {
  QMetaObject::invokeMethod(&TimerNamed(program, timer), "timeout");
}

void ResizeTo(Program& program, double scale) {
  program.Window().resize((kOpening * scale).toSize());
  QCoreApplication::processEvents();
}

TEST(Painted, EachCellShowsItsTileAtEverySizeAndInBothPhasesOfAHint) {
  for (const char* size : {"6", "17"}) {
    SCOPED_TRACE(size);
    GameRun run(size);
    run.Run([&](Program& program) {
      // Wholly on the screen, in its own proportions.
      const QRect screen = program.Window().screen()->availableGeometry();
      EXPECT_TRUE(screen.contains(program.Window().geometry()));
      const QSizeF inner = program.Window().size();
      EXPECT_NEAR(inner.width() / inner.height(), kOpening.width() / kOpening.height(), 0.01);
      EXPECT_GT(inner.height(), std::min(kOpening.height(), screen.height() * 0.85) - 1);

      OpenPuzzle(run, program, 1);
      Main& main = program.State();
      ExpectTilesOfTheirCells(program);
      ClickOn(program, "cmdHint");
      EXPECT_TRUE(TimerNamed(program, "Timer2").isActive());
      std::vector<QImage> phases;
      for (int phase = 0; phase < 2; ++phase) {
        Tick(program, "Timer2");
        ExpectTilesOfTheirCells(program);
        phases.push_back(Painted(program, "Grid"));
      }
      EXPECT_NE(phases[0], phases[1]);
      Tick(program, "Timer2");
      EXPECT_EQ(Painted(program, "Grid"), phases[0]);
      QTest::keyClick(&program.Window(), Qt::Key_Escape);
      EXPECT_FALSE(TimerNamed(program, "Timer2").isActive());

      for (const double scale : {0.6, 1.37}) {
        SCOPED_TRACE(scale);
        for (int cell = 0; cell < main.CellCount; ++cell) main.Grid[cell].Picture = (cell * 5 + cell / 8) % 8;
        ResizeTo(program, scale);
        ExpectTilesOfTheirCells(program);
      }
      program.Window().resize(900, 700);  // Too wide: the rest lies on both sides.
      QCoreApplication::processEvents();
      ExpectTilesOfTheirCells(program);
    });
  }
}

TEST(Painted, SoItIsOnASmallScreenAndWhereAPixelIsOneAndAHalf) {
  for (const char* screen :
       {R"("width": 460, "height": 400, "dpr": 1)", R"("width": 900, "height": 700, "dpr": 1.5)"}) {
    SCOPED_TRACE(screen);
    QFile file(qEnvironmentVariable("BIVOUAC_TEST_FOLDER") + "/screen.json");
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(R"({"screens": [{"name": "one", "x": 0, "y": 0, "logicalDpi": 96, "logicalBaseDpi": 96, )");
    file.write(screen);
    file.write("}]}");
    file.close();
    for (const char* test : {"Painted.Each*", "Window.ThePuzzles*"})
      RunInItsOwnProcess(test, "BIVOUAC_TEST_SCREEN", ":configfile=" + file.fileName());
  }
}

/// Red, green and blue of the whole window, as it looks from some steps away.
void ExpectLook(Program& program, const std::string& name) {
  program.Window().Draw();
  QCoreApplication::processEvents();
  const QImage image = program.Window().grab().toImage();
  std::string look;
  for (const int shift : {16, 8, 0})
    look += Shades(image.width(), image.height(), 6,
                   [&](int x, int y) { return 255 - (image.pixel(x, y) >> shift & 255); });
  ExpectAlike(look, Kept(name, look), 2);
}

TEST(Painted, TheWindowLooksAsItDid) {
  GameRun run("6");
  run.Play(1, [&](Program& program) {
    Main& main = program.State();
    program.Window().activateWindow();
    program.Window().Board().setFocus();
    main.Timer3.Enabled = false;
    main.LabelTijd.Caption = "12:34";
    main.RowCnt[0].ForeColor = main.ColCnt[5].ForeColor = TextColour::Red;
    ExpectLook(program, "window-game");
    ClickOn(program, "cmdPause");
    dynamic_cast<QPushButton&>(*Named(program, "cmdExit")).setDown(true);
    Named(program, "optSound")->setFocus(Qt::TabFocusReason);
    ExpectLook(program, "window-pause");
    ClickOn(program, "Picture1");
    main.Timer3.Enabled = false;
    ClickOn(program, "cmdHint");
    main.LabelTijd.Caption = "56:78";
    main.Timer2.Enabled = main.Timer3.Enabled = false;
    program.Window().resize(900, 700);
    ExpectLook(program, "window-hint");
  });
}

}  // namespace
}  // namespace bivouac
