// Moves, undo, the start of play, the clock, blinking, layout, sound and the web link, on the scripted
// desktop.
#include <gtest/gtest.h>
#include <stdexcept>

#include "game/blinking.h"
#include "game/board.h"
#include "game/clock.h"
#include "game/controls.h"
#include "game/layout.h"
#include "game/moves.h"
#include "game/play.h"
#include "game/sound.h"
#include "game/spoken.h"
#include "game/web_link.h"
#include "tests/support/files.h"
#include "tests/support/installation.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"

namespace bivouac {
namespace {

// Tents at cells 1, 14, 22 and 32; rows 1 and 4 and columns 0, 3 and 5 need none.
constexpr std::string_view kPuzzle = R"(
    >.....
    ......
    .>..v.
    ......
    ......
    .>....
)";
constexpr int kTents[] = {1, 14, 22, 32};

class GameTest : public testing::Test {
 protected:
  GameTest() {
    main.SoundOn = true;
    for (int i = 0; i < 10; ++i) main.SoundId[i] = i;
  }

  void Start(std::string_view picture = kPuzzle) {
    LayBoard(main, picture);
    StartPuzzle(main);
    desktop.Played.clear();
  }
  /// Clicks a cell until it shows the code.
  void Put(int cell, int code) {
    for (int clicks = 0; main.Board[cell] != code; ++clicks) {
      if (clicks == 3) throw std::logic_error("the clicks on a cell were dropped");
      Grid_Click(main, cell);
    }
  }
  /// Decides every cell but one as the solution has it.
  void SolveAllBut(int last) {
    for (int cell = 0; cell < main.CellCount; ++cell) {
      if (cell == last || main.Board[cell] == CELL_TREE) continue;
      Put(cell, RightCode(main, cell));
    }
  }

  ScriptedDesktop desktop;
  Game game{desktop};
  Main& main = game.main;
};

TEST_F(GameTest, StartGrassesWhatCannotHoldATentAndSettlesZeroClues) {
  desktop.Now = "09:00:00";
  LayBoard(main, kPuzzle);
  main.Elapsed = 77;
  StartPuzzle(main);
  EXPECT_EQ(DrawBoard(main), Tidy(R"(
    T.gggg
    gggggg
    gT.gTg
    g.gg.g
    gggggg
    gT.ggg
  )"));
  EXPECT_EQ(main.RowCnt[1].ForeColor, TextColour::Green);
  EXPECT_EQ(main.ColCnt[3].ForeColor, TextColour::Green);
  EXPECT_EQ(main.RowCnt[0].ForeColor, TextColour::WindowText);
  for (int tent : kTents) EXPECT_EQ(main.Solution[tent], CELL_TENT);
  EXPECT_EQ(desktop.Played, std::vector{1});
  EXPECT_TRUE(main.Timer3.Enabled);
  EXPECT_EQ(main.ClockStart, 9 * 3600);
  EXPECT_EQ(main.Elapsed, 77) << "left to the first tick";
  Timer3_Timer(main);
  EXPECT_EQ(main.Elapsed, 0);
}

TEST_F(GameTest, ClicksAreDroppedWhilePausedOverOrWithAHintOnShow) {
  Start();
  for (bool Main::*flag : {&Main::Paused, &Main::PuzzleOver}) {
    main.*flag = true;
    Grid_Click(main, 1);
    Grid_Click(main, 0);
    main.*flag = false;
  }
  main.BoardLive = false;
  Grid_Click(main, 1);
  EXPECT_EQ(main.StepCount, 0);
  EXPECT_EQ(main.Board[1], CELL_OPEN);
  EXPECT_TRUE(desktop.Played.empty());
  EXPECT_TRUE(desktop.Boxes.empty());
}

TEST_F(GameTest, ALineIsGreenAfterAClickOnlyWhenNothingIsOpenAndAtOnceAfterAnUndo) {
  Start(R"(
    .v....
    ......
    ......
    ....^.
    ......
    ......
  )");
  // Row 1 needs one tent, at cell 7; cells 6 and 8 touch no tree and are grass. Open them to leave the line
  // undecided.
  Put(6, CELL_OPEN);
  Put(7, CELL_TENT);
  EXPECT_EQ(main.RowCnt[1].ForeColor, TextColour::WindowText);
  Put(8, CELL_TENT);
  EXPECT_EQ(main.RowCnt[1].ForeColor, TextColour::Red);
  cmdUndo_Click(main);
  EXPECT_EQ(main.RowCnt[1].ForeColor, TextColour::Green) << "cell 6 is still open";
  cmdRedo_Click(main);
  EXPECT_EQ(main.RowCnt[1].ForeColor, TextColour::Red);
  cmdUndo_Click(main);
  Put(6, CELL_GRASS);
  EXPECT_EQ(main.RowCnt[1].ForeColor, TextColour::Green);
}

TEST_F(GameTest, TheLastRightFieldSolvesThePuzzleAndASelectedPlayersTimeIsRecorded) {
  static int recorded;
  recorded = 0;
  main.RecordTimes = [](Main& m) {
    recorded += m.PuzzleOver ? 0 : static_cast<int>(static_cast<ScriptedDesktop&>(m.desktop).Boxes.size());
  };
  for (const int player : {0, 2}) {
    game.global.CurrentPlayer = player;
    Start();
    main.PuzzleOver = false;
    SolveAllBut(32);
    Grid_Click(main, 32);
    EXPECT_FALSE(main.PuzzleOver);
    main.LabelTijd.Caption = "12:34";
    desktop.WhileOpen = [&](const MessageBox&) { EXPECT_FALSE(main.Timer3.Enabled || main.PuzzleOver); };
    desktop.Played.clear();
    Grid_Click(main, 32);
    EXPECT_EQ(desktop.Played, (std::vector{2, 0}));
    EXPECT_EQ(desktop.Titles().back(), "Puzzle Solved!!!");
    EXPECT_EQ(desktop.Boxes.back().Text, "Congratulations! Your time is 12:34");
    EXPECT_TRUE(main.PuzzleOver && main.cmdGenerate.Enabled);
    EXPECT_EQ(recorded, player) << "after the second of the boxes";
  }
}

TEST_F(GameTest, TheSolvedTestStopsAtTheFirstWrongTent) {
  struct Case {
    int Wrong, Opened;
    bool Solved;
  };
  // The last right tent is placed last, at cell 32.
  for (const Case& c : {Case{35, 32, true}, Case{34, 35, true}, Case{30, 32, false}}) {
    Start();
    main.PuzzleOver = false;
    SolveAllBut(32);
    Put(c.Wrong, CELL_TENT);
    Put(c.Opened, CELL_OPEN);
    EXPECT_FALSE(main.PuzzleOver);
    Put(32, CELL_TENT);
    EXPECT_EQ(main.PuzzleOver, c.Solved) << c.Wrong;
  }
}

TEST_F(GameTest, ARedoNeverEndsThePuzzle) {
  Start();
  SolveAllBut(32);
  Grid_Click(main, 32);
  main.Solution[32] = CELL_OPEN;  // Keeps the click from ending it.
  Grid_Click(main, 32);
  cmdUndo_Click(main);
  main.Solution[32] = CELL_TENT;
  cmdRedo_Click(main);
  EXPECT_EQ(main.Board[32], CELL_TENT);
  EXPECT_FALSE(main.PuzzleOver);
}

TEST_F(GameTest, AQuestionAboutATreeCostsHalfWhereTheTentStandsAlready) {
  Start();
  desktop.Now = "12:01:00";
  desktop.Answers = {BoxAnswer::No};
  Grid_Click(main, 16);
  EXPECT_EQ(main.Elapsed, 0);
  struct Case {
    int Tree;
    const char* Text;
  };
  int expected = 0;
  for (const Case& c :
       {Case{0, "The Tent for this Tree is East"}, Case{16, "The Tent for this Tree is South"}}) {
    desktop.Answers = {BoxAnswer::Yes, BoxAnswer::Yes};
    Grid_Click(main, c.Tree);
    EXPECT_EQ(desktop.Boxes.back().Title, "Tent Check");
    EXPECT_EQ(desktop.Boxes.back().Text, c.Text);
    EXPECT_EQ(main.Elapsed, expected += 30);
  }
  Put(1, CELL_TENT);
  const int steps = main.StepCount;
  Grid_Click(main, 0);
  EXPECT_EQ(main.Elapsed, expected + 15);
  EXPECT_EQ(main.StepCount, steps) << "a question is no move";

  main.TentDir[0] = 0;
  desktop.Answers = {BoxAnswer::Yes};
  const std::size_t boxes = desktop.Boxes.size();
  Grid_Click(main, 0);
  EXPECT_EQ(desktop.Boxes.size(), boxes + 1) << "a tree without a tent: the question alone";
}

TEST_F(GameTest, UndoAndRedoWalkTheLogAndAClickCutsIt) {
  Start();
  for (int cell : {1, 14, 14, 32}) Grid_Click(main, cell);
  Grid_Click(main, 7);  // Grass from the start: on to tent.
  cmdUndo_Click(main);
  EXPECT_EQ(main.Board[7], CELL_GRASS);
  for (int i = 0; i < 3; ++i) cmdUndo_Click(main);
  EXPECT_EQ(main.Board[14], CELL_OPEN);
  EXPECT_EQ(main.StepCount, 1);
  EXPECT_EQ(main.MoveLogTop, 5);
  cmdRedo_Click(main);
  EXPECT_EQ(main.Board[14], CELL_GRASS);
  EXPECT_EQ(main.LabelStap.Caption, "2");
  Grid_Click(main, 32);
  EXPECT_EQ(main.MoveLogTop, 3);
  EXPECT_FALSE(main.cmdRedo.Enabled);
  for (int i = 0; i < 3; ++i) cmdUndo_Click(main);
  EXPECT_FALSE(main.cmdUndo.Enabled);
  EXPECT_FALSE(main.cmdRestart.Enabled);
  EXPECT_TRUE(main.cmdRedo.Enabled);
  EXPECT_THROW(cmdUndo_Click(main), RunTimeError) << "step 0 has no entry in the log";
}

TEST_F(GameTest, UndoOfAnOpenCellBringsTheTentBackAndIsSilentDuringARollBack) {
  Start();
  for (int i = 0; i < 3; ++i) Grid_Click(main, 1);
  desktop.Played.clear();
  main.BoardLive = false;
  main.cmdRedo.Enabled = false;
  cmdUndo_Click(main);
  EXPECT_EQ(main.Board[1], CELL_TENT);
  EXPECT_TRUE(desktop.Played.empty());
  EXPECT_FALSE(main.cmdRedo.Enabled) << "the buttons are not refreshed";
  main.BoardLive = true;
  cmdUndo_Click(main);
  EXPECT_EQ(desktop.Played, std::vector{6});
}

TEST_F(GameTest, TheStepCounterHasSixteenBits) {
  Start();
  main.StepCount = 32767;
  EXPECT_THROW(Grid_Click(main, 1), RunTimeError);
}

TEST_F(GameTest, TheSolutionIsAPictureOnly) {
  Start();
  Put(2, CELL_TENT);
  const std::string board = DrawBoard(main);
  cmdSolution_Click(main);
  EXPECT_EQ(DrawBoard(main), board);
  EXPECT_EQ(main.Grid[2].Picture, CELL_GRASS);
  EXPECT_EQ(main.Grid[1].Picture, CELL_TENT);
  EXPECT_EQ(main.Grid[0].Picture, CELL_TREE);
  EXPECT_FALSE(main.Timer3.Enabled);
  EXPECT_TRUE(main.PuzzleOver);
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

TEST_F(GameTest, TheClockRunsAcrossMidnight) {
  desktop.Now = "23:59:50";
  Start();
  desktop.Now = "00:00:10";
  Timer3_Timer(main);
  EXPECT_EQ(main.LabelTijd.Caption, "00:20");
  AddPenalty(main, 30);
  Timer3_Timer(main);
  EXPECT_EQ(main.LabelTijd.Caption, "00:50");
  cmdPause_Click(main);
  desktop.Now = "00:00:20";
  Picture1_Click(main);
  desktop.Now = "00:00:21";
  Timer3_Timer(main);
  EXPECT_EQ(main.Elapsed, 51);
  EXPECT_EQ(FormatClock(6005), "00:05");
}

TEST_F(GameTest, APauseStopsTheClockAndHidesTheBoard) {
  desktop.Now = "10:00:00";
  Start();
  desktop.Now = "10:12:34";
  Timer3_Timer(main);
  cmdPause_Click(main);
  EXPECT_FALSE(main.cmdPause.Enabled);
  EXPECT_FALSE(main.cmdHint.Enabled);
  EXPECT_TRUE(main.cmdSolution.Enabled);
  desktop.Now = "10:22:34";
  Picture1_Click(main);
  Timer3_Timer(main);
  EXPECT_EQ(main.LabelTijd.Caption, "12:34");
  EXPECT_TRUE(main.cmdPause.Enabled);
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

TEST_F(GameTest, TheWaitingAnimationRunsAlongTheDiagonalsInThreeColours) {
  for (int size : {6, 12, 18}) {
    main.BoardSize = size;
    SizeLayout(main);
    main.GenFirstTick = true;
    Timer1_Timer(main);
    const int last = size - 1;
    for (int cell : {0, last, last * size, last * size + last})
      EXPECT_EQ(main.Grid[cell].Picture, CELL_GRASS);
    Timer1_Timer(main);
    EXPECT_EQ(main.Grid[0].Picture, CELL_OPEN);
    EXPECT_EQ(main.Grid[size + 1].Picture, CELL_GRASS);
    for (int i = 2; i <= 9; ++i) Timer1_Timer(main);
    EXPECT_EQ(main.Grid[0].Picture, CELL_TENT);
    for (int i = 10; i <= 27; ++i) Timer1_Timer(main);
    EXPECT_EQ(main.Grid[0].Picture, CELL_GRASS);
  }
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

TEST_F(GameTest, WithoutAGameNextWaitsForAPuzzleThatIsNotTheLast) {
  main.PuzzleOver = true;
  main.PuzzleCount[6] = 3;
  for (int number = 0; number <= 3; ++number) {
    main.PuzzleNo = number;
    RefreshButtons(main);
    EXPECT_EQ(main.cmdNext.Enabled, number == 1 || number == 2) << number;
    EXPECT_TRUE(main.cmdOpen.Enabled);
  }
  main.PuzzleCount[6] = 0;
  main.PuzzleNo = 0;
  RefreshButtons(main);
  EXPECT_FALSE(main.cmdOpen.Enabled);
  EXPECT_FALSE(main.cmdNext.Enabled);
}

TEST_F(GameTest, SurroundingsOfATentStopAtTheEdges) {
  LayBoard(main, "......\n......\n.T....\n......\n......\n......");
  FillAroundTent(main, 12, FillTarget::DrawnBoard);
  EXPECT_EQ(DrawBoard(main), "......\ngg....\n.T....\ngg....\n......\n......\n");
  EXPECT_EQ(main.Grid[6].Picture, CELL_GRASS);
  FillAroundTent(main, 35, FillTarget::Solution);
  EXPECT_EQ(main.Solution[28], CELL_GRASS);
  EXPECT_EQ(main.Board[28], CELL_OPEN);
}

TEST_F(GameTest, SoundsPlayOnlyWhenLoadedAndWanted) {
  game.global.AppDir = "/program/";
  desktop.SoundIds["/program/Hint.wav"] = -1;
  main.SoundOn = false;
  Init_Sound(main);
  EXPECT_EQ(desktop.Loaded.size(), 10u);
  Speel(main, Sound::Assign);
  main.optSound.Checked = true;
  optSound_Click(main);
  Speel(main, Sound::Giggle);
  Speel(main, Sound::Hint);
  EXPECT_EQ(desktop.Played, std::vector{9});
  EXPECT_EQ((desktop.Settings[{"Options", "Sound"}]), "True");
  EXPECT_EQ(desktop.Settings.count({"Options", "Sounds"}), 0u);
  main.SettingsLoading = true;
  main.optSound.Checked = false;
  optSound_Click(main);
  EXPECT_TRUE(main.SoundOn) << "the program itself set the box";

  desktop.SoundEngine = 0;
  Init_Sound(main);
  EXPECT_FALSE(main.optSound.Enabled || main.optSound.Checked || main.SoundOn);
  EXPECT_EQ(desktop.Loaded.size(), 10u) << "and no more";
}

TEST_F(GameTest, TheWebLinkTellsWhatWentWrongAndLeavesNoFile) {
  const TempFolder folder;
  game.global.DataDir = folder / "";
  struct Case {
    ProgramAnswer Browser;
    int ShellCode;
    const char* Title;
  };
  for (const Case& c : {Case{{33, "/usr/bin/browser"}, 32, "URL Failed"},
                        Case{{32, "/usr/bin/browser"}, 33, "Browser Not Found"},
                        Case{{33, "   "}, 33, "Browser Not Found"}}) {
    desktop.Browser = c.Browser;
    desktop.ShellCode = c.ShellCode;
    Label2_Click(main);
    EXPECT_EQ(desktop.Titles().back(), c.Title);
    EXPECT_TRUE(FilesIn(folder / "").empty());
  }
  EXPECT_EQ(desktop.Boxes.size(), 3U);
  desktop.Browser = {33, "/usr/bin/browser"};
  Label3_Click(main);
  EXPECT_EQ(desktop.Boxes.size(), 3U) << "no word where it opens";
  EXPECT_EQ(desktop.Opened.size(), 2U);
  game.global.DataDir += "missing/";
  EXPECT_THROW(Label2_Click(main), RunTimeError);
}

TEST_F(GameTest, WhatIsSaidTellsFieldsLinesAndWhatChanged) {
  Start();
  main.Timer3.Enabled = true;
  Told told;
  const auto said = [&](bool clicked = false, Listener::On focus = Listener::On::Elsewhere) {
    return told.WhatChanged(main, {.Focus = focus, .Frame = 14, .Clicked = clicked});
  };
  EXPECT_EQ(said(), "");
  EXPECT_EQ(SpokenField(main, 19),
            "Row 4, column 2, open. Row: 0 of 1 tent, 2 open. Column: 0 of 1 tent, 2 open.");
  EXPECT_EQ(SpokenProgress(main), "Time 00:00, 0 steps, 4 tents left.");
  Put(14, CELL_TENT);
  EXPECT_EQ(said(true), "Tent. Row finished.");
  Put(22, CELL_TENT);
  EXPECT_EQ(said(), "Row 4, column 5, tent. Column finished.");
  cmdUndo_Click(main);
  EXPECT_EQ(said(), "Row 4, column 5, grass.");
  cmdRedo_Click(main);
  EXPECT_EQ(said(), "Row 4, column 5, tent. Row and column finished.");
  Put(19, CELL_TENT);
  EXPECT_EQ(said(), "Row 4, column 2, tent. Row has too many tents.");
  EXPECT_EQ(SpokenField(main, 19),
            "Row 4, column 2, tent. Row: 2 of 1 tent, too many. Column: 1 of 1 tent, 1 open.");

  // A hint: fields of a row that are marked alike are named together, and none twice.
  main.BoardLive = false;
  main.Timer2.Enabled = true;
  main.lblHint.Caption = "Look! Click HERE to continue...";
  for (const auto& [cell, tile] : {std::pair{3, -1}, {5, -1}, {3, -1}, {4, 2}, {12, 7}, {-1, -1}}) {
    AddBlink(main, cell, tile);
  }
  EXPECT_EQ(said(), "Look! Row 1 columns 4 and 6: grass; row 1 column 5: tent; row 3 column 1: tree.");
  EXPECT_TRUE(SpokenField(main, 12).starts_with("Row 3, column 1, tree, blinking."));
  cmdSolution_Click(main);
  EXPECT_EQ(said(), "The solution is shown.");
}

}  // namespace
}  // namespace bivouac
