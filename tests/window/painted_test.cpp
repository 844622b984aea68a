// What the window paints, held against the values that it draws and the pictures as they were committed.
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <tuple>

#include "game/play.h"
#include "tests/window/game_run.h"

namespace bivouac {
namespace {

constexpr QSizeF kOpening(kWindowWidth / 15.0, kWindowHeight / 15.0);

/// Mean difference of two pictures, 0 to 255 a channel. Of different sizes: a channel's whole range.
double Difference(const QImage& one, const QImage& other) {
  if (one.size() != other.size() || one.isNull()) return 255;
  double sum = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QRgb a = one.pixel(x, y);
      const QRgb b = other.pixel(x, y);
      sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
    }
  }
  return sum / 3 / one.width() / one.height();
}

/// Pixels whose channels all lie within 48 of a colour's.
int CountNear(const QImage& image, QRgb colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QRgb pixel = image.pixel(x, y);
      count += std::abs(qRed(pixel) - qRed(colour)) < 48 && std::abs(qGreen(pixel) - qGreen(colour)) < 48 &&
                       std::abs(qBlue(pixel) - qBlue(colour)) < 48
                   ? 1
                   : 0;
    }
  }
  return count;
}

/// A picture as it was committed, at a size.
const QImage& Asset(const QString& name, QSize size) {
  static std::map<QString, QImage> originals;
  static std::map<std::tuple<QString, int, int>, QImage> pictures;
  QImage& original = originals[name];
  if (original.isNull()) original.load(BIVOUAC_SOURCE_DIR "/assets/tiles/" + name + ".png");
  QImage& picture = pictures[{name, size.width(), size.height()}];
  if (picture.isNull()) picture = original.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  return picture;
}

/// The picture of a widget after what changed in Main was drawn.
QImage Painted(Program& program, const QString& name) {
  program.Window().Draw();
  return Find(program, name)->grab().toImage();
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
    const QRect inside = at.adjusted(1, 1, -1, -1);
    const QImage painted = window.copy(inside);
    int closest = -1;
    double least = 255;
    for (const int tile : {0, 1, 2, 3, 4, 7}) {
      const QImage whole = Asset("part" + QString::number(tile), at.size());
      const double difference = Difference(painted, whole.copy(inside.translated(-at.topLeft())));
      if (difference < least) {
        least = difference;
        closest = tile;
      }
    }
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
    RunInItsOwnProcess("Painted.Each*", "BIVOUAC_TEST_SCREEN", ":configfile=" + file.fileName());
  }
}

TEST(Painted, TextsStandWhereTheirValuesSay) {
  GameRun run("6");
  run.Play(1, [&](Program& program) {
    Main& main = program.State();
    // Lines between the panels of the status bar.
    for (Panel& panel : main.StatusBar1) panel.Text = "";
    const QImage bar = Painted(program, "StatusBar1");
    int end = 0;
    for (const PanelRow& row : PanelTable().first(5)) {
      end += row.Width;
      const int x = bar.width() * end / kPanelWidths;
      for (const int beside : {x - 3, x + 3}) {
        EXPECT_NE(bar.pixel(x, bar.height() / 2), bar.pixel(beside, bar.height() / 2));
        for (const int y : {2, bar.height() - 2}) EXPECT_EQ(bar.pixel(x, y), bar.pixel(beside, y));
      }
    }

    // A clue in its three colours, and in no other than its own.
    for (Label* clue : {&main.RowCnt[0], &main.ColCnt[5]}) {
      const QString name = clue == &main.RowCnt[0] ? "RowCnt(0)" : "ColCnt(5)";
      struct Row {
        TextColour Value;
        QRgb Colour;
      };
      constexpr Row kRows[] = {{TextColour::WindowText, 0xFF101010},
                               {TextColour::Green, 0xFF00FF00},
                               {TextColour::Red, 0xFFFF0000}};
      for (const Row& row : kRows) {
        clue->Caption = "8";
        clue->ForeColor = row.Value;
        const QImage eight = Painted(program, name);
        for (const Row& other : kRows) {
          const int pixels = CountNear(eight, other.Colour);
          if (other.Value == row.Value) {
            EXPECT_GT(pixels, 5) << name.toStdString();
          } else {
            EXPECT_EQ(pixels, 0) << name.toStdString();
          }
        }
        clue->Caption = "1";
        EXPECT_GT(Difference(Painted(program, name), eight), 1);
      }
    }
    for (const ControlRow& row : ControlTable()) {
      if (row.Kind != ControlKind::Figure && row.Kind != ControlKind::Text && row.Kind != ControlKind::Link)
        continue;
      SCOPED_TRACE(row.Name);
      const QImage label = Painted(program, QString::fromUtf8(row.Name));
      EXPECT_GT(CountNear(label, static_cast<QRgb>(row.Background)), label.width() * label.height() / 2);
      EXPECT_GT(CountNear(label, static_cast<QRgb>(row.Foreground)), 10);
    }
    const std::pair<QString, std::string*> labels[] = {
        {"LabelTijd", &main.LabelTijd.Caption},
        {"LabelStap", &main.LabelStap.Caption},
        {"lblHint", &main.lblHint.Caption},
        {"StatusBar1", &PanelOf(main, 5).Text},
    };
    for (const auto& [name, caption] : labels) {
      SCOPED_TRACE(name.toStdString());
      *caption = "88:88";
      const QImage text = Painted(program, name);
      EXPECT_GT(CountNear(text, 0xFF000000), 20);
      *caption = "11:11";
      EXPECT_GT(Difference(Painted(program, name), text), 0.1);
    }
  });
}

TEST(Painted, ControlsHaveTheirFaceTheirTextAndTheirState) {
  GameRun run;
  run.Run([&](Program& program) {
    program.Window().activateWindow();
    QCoreApplication::processEvents();
    for (const ControlRow& row : ControlTable()) {
      auto* button = program.Window().findChild<QAbstractButton*>(QString::fromUtf8(row.Name));
      if (button == nullptr) continue;
      SCOPED_TRACE(row.Name);
      EXPECT_EQ(button->text(), QString::fromUtf8(row.Caption));
      EXPECT_EQ(button->geometry(),
                QRect(row.At.Left / 15, row.At.Top / 15, row.At.Width / 15, row.At.Height / 15));
      const auto reset = [&] {
        program.Window().Board().setFocus();
        button->setText(QString::fromUtf8(row.Caption));
        button->setEnabled(true);
        button->setDown(false);
      };
      // Every state has a look of its own.
      const std::function<void()> changes[] = {
          [] {}, [&] { button->setText(""); }, [&] { button->setFocus(Qt::TabFocusReason); },
          [&] { button->setEnabled(false); },
          [&] { row.Kind == ControlKind::Button ? button->setDown(true) : button->toggle(); }};
      std::vector<QImage> looks;
      for (const auto& change : changes) {
        reset();
        change();
        looks.push_back(button->grab().toImage());
        for (std::size_t i = 0; i + 1 < looks.size(); ++i)
          EXPECT_GT(Difference(looks[i], looks.back()), 0.3) << i;
      }
      if (row.Kind != ControlKind::Button) continue;
      const auto light = [&](int y) { return qGray(looks[1].pixel(20, y)); };
      EXPECT_GT(light(4), light(12));  // Lit from above.
      EXPECT_GT(light(12), light(20));
      if (row.Background == kSystemDefault) continue;
      const QRect middle = looks[1].rect().adjusted(8, 8, -8, -8);
      EXPECT_EQ(CountNear(looks[1].copy(middle), static_cast<QRgb>(row.Background)),
                middle.width() * middle.height());
    }
  });
}

TEST(Painted, APauseShowsItsPictureAndAFrameStandsRoundOneCell) {
  GameRun run("6");
  run.Play(1, [&](Program& program) {
    BoardWidget& board = program.Window().Board();
    const QImage plain = board.grab().toImage();
    program.Window().activateWindow();
    QCoreApplication::processEvents();
    board.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&board, Qt::Key_Space);  // Shows the frame, and no more.
    EXPECT_EQ(program.State().StepCount, 0);
    EXPECT_EQ(board.Current(), 0);
    QTest::keyClick(&board, Qt::Key_Down);
    const QImage framed = board.grab().toImage();
    for (int cell = 0; cell < 36; ++cell) {
      const QRect at = board.CellRect(cell).adjusted(1, 1, -1, -1);
      const double difference = Difference(plain.copy(at), framed.copy(at));
      if (cell == board.Current()) {
        EXPECT_GT(difference, 5);
      } else {
        EXPECT_EQ(difference, 0) << cell;
      }
    }
    EXPECT_EQ(board.Current(), 6);

    ClickOn(program, "cmdPause");
    const QImage picture = Painted(program, "Picture1");
    EXPECT_LT(Difference(picture, Asset("picture1@4x", picture.size())), 4);
    const QRect shield = InPicture(program, ControlNamed("Shield").At);
    const QImage window = program.Window().grab().toImage();
    for (const QPoint corner : {shield.topLeft() + QPoint(2, 2), shield.bottomRight() - QPoint(2, 2)}) {
      EXPECT_EQ(window.pixel(corner), 0xFF000000U | static_cast<QRgb>(ControlNamed("Shield").Background));
    }
  });
}

TEST(Painted, ATimerTicksAsLongAsItsValueSays) {
  GameRun run("6");
  run.Run([&](Program& program) {
    Main& main = program.State();
    struct Row {
      const char* Name;
      Timer Main::*Value;
    };
    for (const Row& row :
         {Row{"Timer1", &Main::Timer1}, Row{"Timer2", &Main::Timer2}, Row{"Timer3", &Main::Timer3}}) {
      SCOPED_TRACE(row.Name);
      QTimer& timer = TimerNamed(program, row.Name);
      Timer& value = main.*row.Value;
      EXPECT_EQ(timer.isActive(), value.Enabled);
      value.Enabled = true;
      program.Window().Draw();
      EXPECT_TRUE(timer.isActive());
      EXPECT_EQ(timer.interval(), value.Interval);
      value.Interval += 70;
      program.Window().Draw();
      EXPECT_EQ(timer.interval(), value.Interval);
      value.Enabled = false;
      program.Window().Draw();
      EXPECT_FALSE(timer.isActive());
    }
    OpenPuzzle(run, program, 1);
    EXPECT_TRUE(TimerNamed(program, "Timer3").isActive());
    const QImage before = Painted(program, "LabelTijd");
    main.ClockStart -= 100;
    Tick(program, "Timer3");
    EXPECT_NE(Painted(program, "LabelTijd"), before);
    main.GenFirstTick = true;
    Tick(program, "Timer1");
    EXPECT_EQ(main.Grid[0].Picture, CELL_GRASS);
    ExpectTilesOfTheirCells(program);
  });
}

}  // namespace
}  // namespace bivouac
