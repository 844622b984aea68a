#include "generator/generator.h"

#include <algorithm>
#include <bit>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "game/board.h"
#include "game/layout.h"
#include "game/play.h"
#include "generator/layout_drawing.h"
#include "generator/random.h"
#include "generator/unique_solution.h"
#include "packs/faults.h"
#include "storage/pack_files.h"
#include "tests/support/files.h"
#include "tests/support/picture.h"
#include "tests/support/plain_proof.h"
#include "tests/support/scripted_desktop.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

/// A number over many values: an unmeant change of one of them shows in it.
class Signature {
 public:
  void Add(int value) { Hash = Random::Mix(Hash + Random::kGoldenGap + static_cast<std::uint64_t>(value)); }
  std::uint64_t Hash = 0;
};

class GameTest : public testing::Test {
 protected:
  void LayOut(int size) {
    main.BoardSize = size;
    SizeLayout(main);
    main.PuzzleOver = true;
    RefreshButtons(main);
  }

  ScriptedDesktop desktop;
  Game game{desktop};
  Main& main = game.main;
};

class Proof : public GameTest {
 protected:
  bool Verdict(void (*procedure)(Main&, bool&) = CheckUniqueSolution) {
    bool unique = false;
    procedure(main, unique);
    return unique;
  }

  /// The verdict of both forms, which must leave the same board.
  bool JudgedVerdict() {
    const Array<int> board = main.Board;
    const bool plain = Verdict(PlainCheckUniqueSolution);
    const std::string prepared = BoardDigits(main);
    main.Board = board;
    EXPECT_EQ(Verdict(), plain);
    EXPECT_EQ(BoardDigits(main), prepared);
    return plain;
  }

  bool VerdictOf(const char* picture) {
    LayBoard(main, picture);
    return JudgedVerdict();
  }
};

/// Does a layout harm of one of eight kinds, three of which are none.
void Harm(Main& main, int kind, Random& random) {
  const auto bump = [&](FixedArray<Label, kMaxSize>& clues, int by) {
    Label& label = clues[random.Below(main.BoardSize)];
    label.Caption = std::to_string(std::stoi(label.Caption) + by);
  };
  int& cell = main.Board[random.Below(main.CellCount)];
  const int code = kind == 6 ? CELL_OPEN : kind == 7 ? CELL_TREE : cell;
  main.TreeCount += (code == CELL_TREE) - (cell == CELL_TREE);
  cell = code;
  if (kind == 3 || kind == 7) bump(main.RowCnt, 1);
  if (kind == 4) bump(main.ColCnt, -1);
  if (kind == 5) bump(main.RowCnt, -main.BoardSize);
  if (kind == 7) bump(main.ColCnt, 1);
}

TEST_F(Proof, GivesTheVerdictsOfThePlainForm) {
  Signature signature;
  int mostYields = 0;
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    LayOut(size);
    Random random(static_cast<std::uint64_t>(size));
    for (int attempt = 0; attempt < 200; ++attempt) {
      SCOPED_TRACE("size " + std::to_string(size) + " attempt " + std::to_string(attempt));
      DrawLayout(main);
      Harm(main, attempt % 8, random);
      if (attempt < 16) {
        signature.Add(JudgedVerdict());
        continue;
      }
      desktop.Yields = 0;
      signature.Add(Verdict());
      ASSERT_GE(desktop.Yields, 1);
      mostYields = std::max(mostYields, desktop.Yields);
    }
  }
  EXPECT_EQ(signature.Hash, 14343612309003939717U);
  EXPECT_GT(mostYields, 1) << "no proof was long enough to yield twice";
}

TEST_F(Proof, BoardsWithoutSenseEndToo) {
  EXPECT_TRUE(VerdictOf("......\n......\n......\n......\n......\n......"));
  EXPECT_TRUE(VerdictOf("TTTTTT\nTTTTTT\nTTTTTT\nTTTTTT\nTTTTTT\nTTTTTT"));
  for (const int count : {35, 37, -1}) {
    main.TreeCount = count;
    EXPECT_THROW(Verdict(), RunTimeError);
  }
  main.TreeCount = 36;
  main.ColCnt[3].Caption = "";
  EXPECT_THROW(Verdict(), RunTimeError);
  EXPECT_FALSE(VerdictOf("...... 1\n...... 1\n...... 1\n...... 1\n..T... 1\n...... 1\n1 1 1 1 1 1"));
  main.RowCnt[5].Caption = "-1";
  EXPECT_TRUE(JudgedVerdict());
}

// Each tree has one place for its tent but the first one, which could also stand in the west if its row and
// its column were not full by then.
TEST_F(Proof, TheTentOfTheFirstTreeIsNotTested) {
  EXPECT_FALSE(VerdictOf(".v..>.\n......\n......\n......\n.<....\n......"));
  EXPECT_TRUE(VerdictOf(".v..>.\n......\n......\n......\n....>.\n......"));
}

/// Counts the solutions for the trees from a cell on, by trying everything. Stops at two. `left` holds what
/// rows and columns still need, a row and a column in turn.
int CountSolutions(Main& main, std::vector<int>& left, int tree = 0) {
  while (tree < main.CellCount && main.Board[tree] != CELL_TREE) ++tree;
  if (tree == main.CellCount) return std::count(left.begin(), left.end(), 0) == main.BoardSize * 2;
  int solutions = 0;
  ForEachSide(main.BoardSize, tree, [&](int side, int) {
    const auto isTent = [&](int cell) { return main.Board[cell] == CELL_TENT; };
    if (solutions >= 2 || main.Board[side] >= CELL_TENT || AnyAround(main, side, isTent)) return;
    const auto set = [&](int code, int by) {
      main.Board[side] = code;
      left.at(static_cast<std::size_t>(RowOf(main, side)) * 2) += by;
      left.at(static_cast<std::size_t>(ColOf(main, side)) * 2 + 1) += by;
    };
    set(CELL_TENT, -1);
    solutions += CountSolutions(main, left, tree + 1);
    set(CELL_OPEN, 1);
  });
  return solutions;
}

TEST_F(Proof, KeepsNothingThatBruteForceSolvesTwice) {
  LayOut(6);
  int kept = 0;
  int several = 0;
  for (int attempt = 0; attempt < 300; ++attempt) {
    DrawLayout(main);
    const bool unique = Verdict();
    std::vector<int> clues;
    for (int i = 0; i < 6; ++i) clues.insert(clues.end(), {RowClue(main, i), ColClue(main, i)});
    const int solutions = CountSolutions(main, clues);
    EXPECT_GE(solutions, 1);
    EXPECT_FALSE(unique && solutions > 1) << "attempt " << attempt;
    kept += unique;
    several += solutions > 1;
  }
  EXPECT_TRUE(kept > 150 && several > 20);
}

/// A window with its packs in an empty folder of its own.
class Generator : public GameTest {
 protected:
  void SetUp() override { game.global.DataDir = folder_ / ""; }

  PackContent Saved() { return ReadContent(PackPath(game.global, main.BoardSize)); }

  PackRecord& record = game.global.PuzzleRec;

 private:
  TempFolder folder_;
};

// The signature covers the generator, the proof and the rater.
TEST_F(Generator, MakesFullLayoutsWithoutFaultAndTheSameAsBefore) {
  Signature signature;
  int leftOvers = 0;  // Directions of trees of rejected layouts.
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    LayOut(size);
    for (int puzzle = 0; puzzle < 12; ++puzzle) {
      MakePuzzle(main);
      int trees = 0;
      for (int cell = 0; cell < main.CellCount; ++cell) {
        const int code = record.Layout[cell];
        EXPECT_EQ(main.Board[cell], code);
        trees += code == CELL_TREE;
        EXPECT_TRUE(code != CELL_TREE || main.TentDir[cell] == record.TentDirs[cell]);
        leftOvers += code != CELL_TREE && record.TentDirs[cell] != 0;
        signature.Add(code);
        signature.Add(record.TentDirs[cell]);
        if (code >= CELL_TENT) continue;
        ForEachSide(size, cell, [&](int side, int) { EXPECT_NE(record.Layout[side], CELL_OPEN); });
      }
      EXPECT_EQ(trees, main.TreeCount);
      EXPECT_EQ(record.LevelSize, LevelSizeOf(main.Level, size));
      EXPECT_TRUE(main.Level >= 1 && main.Level <= 5);
      signature.Add(main.Level);
      signature.Add(std::bit_cast<std::int32_t>(main.Difficulty));
      const PackRecord made = record;
      for (const Fault& fault : FaultsOf("made", {{made}, 0}, main)) ADD_FAILURE() << fault.Words;
      ASSERT_FALSE(HasFailure()) << "size " << size << " puzzle " << puzzle;
    }
  }
  EXPECT_GT(leftOvers, 0);
  EXPECT_EQ(signature.Hash, 461898511494061834U);
}

TEST_F(Generator, TheWindowWaitsBlankWhileItRuns) {
  LayOut(7);
  main.StepCount = 3;
  main.MoveLogTop = 5;
  main.BoardLive = false;
  main.Paused = true;
  for (ImageCell& cell : main.Grid) cell.Picture = CELL_TREE;
  int looks = 0;
  desktop.WhileYielding = [&] {
    if (++looks > 1) return;
    EXPECT_TRUE(main.Timer1.Enabled && main.GenFirstTick);
    EXPECT_EQ(main.LabelStap.Caption, "0");
    EXPECT_EQ(main.StepCount + main.MoveLogTop, 0);
    EXPECT_TRUE(main.BoardLive && !main.Paused && !main.PuzzleOver);
    EXPECT_TRUE(main.cmdExit.Enabled);
    for (int i = 0; i < main.BoardSize; ++i) {
      EXPECT_FALSE(main.RowCnt[i].Visible || main.ColCnt[i].Visible);
      EXPECT_EQ(main.RowCnt[i].Caption + main.ColCnt[i].Caption, "00");
    }
    for (int cell = 0; cell < main.CellCount; ++cell) EXPECT_EQ(main.Grid[cell].Picture, CELL_OPEN);
    EXPECT_EQ(main.Grid[main.CellCount].Picture, CELL_TREE);
    EXPECT_EQ(record.LevelSize, 7);
  };
  cmdGenerate_Click(main);
  EXPECT_GE(looks, 3);
}

TEST_F(Generator, SavesThenReportsThenStarts) {
  LayOut(6);
  main.global.PersonalPos = 4;
  main.PuzzleCount[0] = 0;
  desktop.WhileOpen = [&](const MessageBox& box) {
    EXPECT_EQ(box.Title, "Generate report");
    EXPECT_EQ(box.Symbol, BoxSymbol::Information);
    EXPECT_EQ(box.Text, "The new generated puzzle has level 1 with difficulty 0.9999999");
    EXPECT_FALSE(main.Timer1.Enabled);
    EXPECT_FALSE(main.RowCnt[0].Visible);
    EXPECT_EQ(main.global.PersonalPos, 0);
    EXPECT_EQ(PanelOf(main, 3).Text, "Puzzle #: 1");
    EXPECT_EQ(main.PuzzleCount[0], 1);
  };
  cmdGenerate_Click(main);
  EXPECT_EQ(desktop.Titles(), std::vector<std::string>{"Generate report"});
  EXPECT_TRUE(main.RowCnt[5].Visible && main.ColCnt[5].Visible);
  EXPECT_TRUE(main.Timer3.Enabled);
  EXPECT_TRUE(main.cmdHint.Enabled && main.cmdSolution.Enabled && !main.cmdGenerate.Enabled);
  for (int cell = 0; cell < main.CellCount; ++cell) EXPECT_NE(main.Board[cell], CELL_TENT);
  EXPECT_EQ(Saved().Records, std::vector<PackRecord>{record});
}

TEST_F(Generator, ARefusedPuzzleIsReportedAndPlayed) {
  LayOut(6);
  main.PuzzleCount[0] = 7;
  cmdGenerate_Click(main);
  EXPECT_EQ(desktop.Titles(), (std::vector<std::string>{"Puzzle Save Error", "Generate report"}));
  EXPECT_THROW(Saved(), InputError);
  EXPECT_TRUE(main.Timer3.Enabled);
}

TEST_F(Generator, TheEndOfTheProgramLeavesThePackAlone) {
  LayOut(8);
  cmdGenerate_Click(main);
  const PackRecord first = record;
  for (const int last : {1, 40, 300}) {
    int yields = 0;
    desktop.WhileYielding = [&] {
      if (++yields == last) desktop.End();
    };
    EXPECT_THROW(while (true) cmdGenerate_Click(main), ProgramEnd);
    EXPECT_EQ(Saved().SpareBytes, 0);
    EXPECT_EQ(Saved().Records.at(0), first);
  }
}

}  // namespace
}  // namespace bivouac
