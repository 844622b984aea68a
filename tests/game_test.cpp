// What the plays cannot reach: odd clocks, marks and sizes.
#include <gtest/gtest.h>

#include "game/blinking.h"
#include "game/clock.h"
#include "game/controls.h"
#include "game/layout.h"
#include "game/moves.h"
#include "game/play.h"
#include "game/spoken.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"

namespace bivouac {
namespace {

// Tents at cells 1, 14, 22 and 32; rows 1 and 4 and columns 0, 3 and 5 need none.
constexpr std::string_view kPuzzle = ">.....\n......\n.>..v.\n......\n......\n.>....";
class GameTest : public testing::Test {
 protected:
  ScriptedDesktop desktop;
  Game game{desktop};
  Main& main = game.main;
};

TEST_F(GameTest, ARedoNeverEndsThePuzzle) {
  LayBoard(main, kPuzzle);
  StartPuzzle(main);
  for (const int cell : {1, 1, 14, 14, 22, 22, 19, 32}) Grid_Click(main, cell);
  main.Solution[32] = CELL_OPEN;  // Keeps the click from ending it.
  Grid_Click(main, 32);
  cmdUndo_Click(main);
  main.Solution[32] = CELL_TENT;
  cmdRedo_Click(main);
  EXPECT_EQ(main.Board[32], CELL_TENT);
  EXPECT_FALSE(main.PuzzleOver);
}

TEST_F(GameTest, TheTimeOfDayIsReadByPositions) {
  struct Case {
    const char* Text;
    int Seconds;
  };
  for (const Case& c : {Case{"23:59:58", 86398}, Case{"9:05:07", 32707}, Case{"10:5:9", 36309},
                        Case{"10:5:19", 36319}, Case{"1:2:3", 3723}, Case{"1:12:3", 4323},
                        Case{"12:30:45 PM", 45000}, Case{"", 0}, Case{"1", 3600 + 1}, Case{"nonsense", 0}}) {
    desktop.Now = c.Text;
    ReadClock(main);
    EXPECT_EQ(main.ClockNow, c.Seconds) << c.Text;
    EXPECT_EQ(main.ClockText, c.Text);
  }
}

TEST_F(GameTest, MarksBlinkByTheirTiles) {
  LayBoard(main, kPuzzle);
  struct Case {
    int Tile, PhaseTrue, PhaseFalse, After;
  };
  constexpr Case kCases[] = {{-2, 2, 0, 0}, {-1, 1, 0, 0}, {0, 0, 0, 0}, {1, 0, 1, 1},
                             {2, 0, 2, 2},  {3, 0, 3, 3},  {4, 4, 0, 0}, {7, 7, 3, 3}};
  int cell = 6;
  for (const Case& c : kCases) AddBlink(main, cell++, c.Tile);
  AddBlink(main, -3, 4);
  AddBlink(main, 400, 4);
  main.BlinkPhase = true;
  Timer2_Timer(main);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(main.Grid[6 + i].Picture, kCases[i].PhaseTrue) << i;
  Timer2_Timer(main);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(main.Grid[6 + i].Picture, kCases[i].PhaseFalse) << i;
  EXPECT_TRUE(main.BlinkPhase);
  PutBackMarkedTiles(main);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(main.Grid[6 + i].Picture, kCases[i].After) << i;
  main.BlinkTop = -1;
  Timer2_Timer(main);
  EXPECT_FALSE(main.BlinkPhase);
}

TEST_F(GameTest, EverySizeIsLaidOutInsideTheShield) {
  constexpr int kPitches[] = {1080, 840, 720, 720, 600, 480, 480, 480, 360, 360, 360, 360, 360};
  main.PuzzleOver = true;
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    SCOPED_TRACE(size);
    main.BoardSize = size;
    SizeLayout(main);
    const int pitch = kPitches[size - kMinSize];
    EXPECT_EQ(main.Grid[size + 2].At, (Place{360 + 2 * pitch, 360 + pitch, pitch + 15, pitch + 15}));
    EXPECT_EQ(main.ColCnt[1].At, (Place{360 + pitch, 120, pitch + 15, 255}));
    EXPECT_EQ(main.RowCnt[1].At, (Place{105, 360 + pitch + (pitch - 255) / 2, 255, 255}));
  }
  for (const int size : {kMinSize - 1, kMaxSize + 1}) {
    main.BoardSize = size;
    EXPECT_THROW(RefreshButtons(main), RunTimeError) << "only reached with a stored size out of range";
  }
}

TEST(Controls, StandOnAGridOfFourPixels) {
  for (const ControlRow& row : ControlTable()) {
    for (const int at : {row.At.Left, row.At.Top, row.At.Width - 15, row.At.Height - 15})
      EXPECT_EQ(at % 60, 0) << row.Name << ": " << at;
  }
}

TEST_F(GameTest, MarksThatAreAlikeAreSaidTogetherAndNoneTwice) {
  LayBoard(main, kPuzzle);
  StartPuzzle(main);
  Told told;
  told.WhatChanged(main, {});
  main.BoardLive = false;
  main.Timer2.Enabled = true;
  main.lblHint.Caption = "Look! Click HERE to continue...";
  for (const auto& [cell, tile] : {std::pair{3, -1}, {5, -1}, {3, -1}, {4, 2}, {12, 7}, {-1, -1}}) {
    AddBlink(main, cell, tile);
  }
  EXPECT_EQ(told.WhatChanged(main, {}),
            "Look! Row 1 columns 4 and 6: grass; row 1 column 5: tent; row 3 column 1: tree.");
  EXPECT_TRUE(SpokenField(main, 12).starts_with("Row 3, column 1, tree, blinking."));
}

}  // namespace
}  // namespace bivouac
