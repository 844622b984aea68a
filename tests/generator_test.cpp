#include "generator/generator.h"

#include <algorithm>
#include <bit>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "game/board.h"
#include "game/layout.h"
#include "game/play.h"
#include "game/text.h"
#include "generator/layout_drawing.h"
#include "generator/random.h"
#include "generator/unique_solution.h"
#include "rating/rating.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "tests/support/files.h"
#include "tests/support/packs.h"
#include "tests/support/picture.h"
#include "tests/support/plain_proof.h"
#include "tests/support/scripted_desktop.h"
#include "tools/faults.h"
#include "tools/workbench.h"

namespace bivouac {
namespace {

/// A number over many values: an unmeant change of one of them shows in it.
class Signature {
 public:
  void Add(int value) { Hash = Random::Mix(Hash + Random::kGoldenGap + static_cast<std::uint64_t>(value)); }
  std::uint64_t Hash = 0;
};

bool Verdict(Main& main, void (*procedure)(Main&, bool&) = CheckUniqueSolution) {
  bool unique = false;
  procedure(main, unique);
  return unique;
}

/// The verdict of both forms, which must leave the same board.
bool JudgedVerdict(Main& main, const std::string& where) {
  const Array<int> board = main.Board;
  const bool plain = Verdict(main, PlainCheckUniqueSolution);
  const std::string prepared = BoardDigits(main);
  main.Board = board;
  EXPECT_EQ(Verdict(main), plain) << where;
  EXPECT_EQ(BoardDigits(main), prepared) << where;
  return plain;
}

// That the fast form agrees with them, the tables of the tool show.
TEST(Proof, TheJudgeAgreesWithTheWorkedResults) {
  ScriptedDesktop desktop;
  Game game(desktop);
  for (const std::vector<std::string>& row : ReadTable("tests/data/proof.tsv")) {
    const std::string pack = "tests/data/layouts/" + row.at(0);
    LayOutRecord(game.main, ReadPack(pack).at(std::stoul(row.at(1)) - 1));
    EXPECT_EQ(Verdict(game.main, PlainCheckUniqueSolution), row.at(3) == "1") << pack << ' ' << row.at(1);
  }
}

/// Does a layout harm of one of eight kinds, three of which are none.
void Harm(Main& main, int kind, Random& random) {
  const auto bump = [&](FixedArray<Label, kMaxSize>& clues, int by) {
    Label& label = clues[random.Below(main.BoardSize)];
    label.Caption = std::to_string(IntegerFromText(label.Caption) + by);
  };
  int& code = main.Board[random.Below(main.CellCount)];
  if (kind == 3 || kind == 7) bump(main.RowCnt, 1);
  if (kind == 4) bump(main.ColCnt, -1);
  if (kind == 5) bump(main.RowCnt, -main.BoardSize);
  if (kind == 6) {
    main.TreeCount -= code == CELL_TREE;
    code = CELL_OPEN;
  }
  if (kind == 7) {
    bump(main.ColCnt, 1);
    main.TreeCount += code != CELL_TREE;
    code = CELL_TREE;
  }
}

TEST(Proof, GivesTheVerdictsOfThePlainForm) {
  Signature signature;
  int mostYields = 0;
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    ScriptedDesktop desktop;
    desktop.Seed = static_cast<std::uint64_t>(size) * 1'000'000;
    Game game(desktop);
    game.main.BoardSize = size;
    SizeLayout(game.main);
    Random random(static_cast<std::uint64_t>(size));
    for (int attempt = 0; attempt < 200; ++attempt) {
      DrawLayout(game.main);
      Harm(game.main, attempt % 8, random);
      const std::string where = "size " + std::to_string(size) + " attempt " + std::to_string(attempt);
      desktop.Yields = 0;
      signature.Add(attempt < 16 ? JudgedVerdict(game.main, where) : Verdict(game.main));
      if (attempt >= 16) mostYields = std::max(mostYields, desktop.Yields);
      ASSERT_GE(desktop.Yields, 1);
    }
  }
  EXPECT_EQ(signature.Hash, 15486376903040656974U);
  EXPECT_GT(mostYields, 1) << "no proof was long enough to yield twice";
}

TEST(Proof, BoardsWithoutSenseEndToo) {
  ScriptedDesktop desktop;
  Game game(desktop);
  Main& main = game.main;
  LayBoard(main, "......\n......\n......\n......\n......\n......\n");
  EXPECT_TRUE(JudgedVerdict(main, "no trees"));
  LayBoard(main, "TTTTTT\nTTTTTT\nTTTTTT\nTTTTTT\nTTTTTT\nTTTTTT\n");
  EXPECT_TRUE(JudgedVerdict(main, "nothing but trees"));
  for (const int count : {35, 37, -1}) {
    main.TreeCount = count;
    EXPECT_THROW(Verdict(main), RunTimeError);
  }
  main.TreeCount = 36;
  main.ColCnt[3].Caption = "";
  EXPECT_THROW(Verdict(main), RunTimeError);
  LayBoard(main, "...... 1\n...... 1\n...... 1\n...... 1\n..T... 1\n...... 1\n1 1 1 1 1 1");
  EXPECT_FALSE(JudgedVerdict(main, "one tree with four sides"));
  main.RowCnt[5].Caption = "-1";
  EXPECT_TRUE(JudgedVerdict(main, "a clue below 0"));
}

/// Counts the solutions from the tree at `index` on, by trying everything. Stops at two.
int CountSolutions(Main& main, const std::vector<int>& trees, std::size_t index) {
  if (index == trees.size()) {
    for (int i = 0; i < main.BoardSize; ++i) {
      int inRow = 0;
      int inCol = 0;
      for (int j = 0; j < main.BoardSize; ++j) {
        inRow += main.Board[i * main.BoardSize + j] == CELL_TENT;
        inCol += main.Board[j * main.BoardSize + i] == CELL_TENT;
      }
      if (inRow != RowClue(main, i) || inCol != ColClue(main, i)) return 0;
    }
    return 1;
  }
  int solutions = 0;
  ForEachSide(main.BoardSize, trees[index], [&](int side, int) {
    const bool free = main.Board[side] != CELL_TREE && main.Board[side] != CELL_TENT &&
                      !AnyAround(main, side, [&](int near) { return main.Board[near] == CELL_TENT; });
    if (!free || solutions >= 2) return;
    const int before = main.Board[side];
    main.Board[side] = CELL_TENT;
    solutions += CountSolutions(main, trees, index + 1);
    main.Board[side] = before;
  });
  return solutions;
}

TEST(Proof, KeepsNothingThatBruteForceSolvesTwice) {
  ScriptedDesktop desktop;
  Game game(desktop);
  Main& main = game.main;
  main.BoardSize = 6;
  SizeLayout(main);
  int kept = 0;
  int several = 0;
  for (int attempt = 0; attempt < 300; ++attempt) {
    DrawLayout(main);
    const bool unique = Verdict(main);
    std::vector<int> trees;
    for (int cell = 0; cell < main.CellCount; ++cell) {
      if (main.Board[cell] == CELL_TREE) trees.push_back(cell);
    }
    const int solutions = CountSolutions(main, trees, 0);
    ASSERT_GE(solutions, 1);
    EXPECT_FALSE(unique && solutions > 1) << "attempt " << attempt;
    kept += unique;
    several += solutions > 1;
  }
  EXPECT_GT(kept, 150);
  EXPECT_GT(several, 20);
}

// Each tree has one place for its tent but the first one, which could also stand in the west if its row and
// its column were not full by then.
TEST(Proof, TheTentOfTheFirstTreeIsNotTested) {
  ScriptedDesktop desktop;
  Game game(desktop);
  LayBoard(game.main,
           ".v..>.\n"
           "......\n"
           "......\n"
           "......\n"
           ".<....\n"
           "......\n");
  EXPECT_FALSE(Verdict(game.main));

  LayBoard(game.main,
           ".v..>.\n"
           "......\n"
           "......\n"
           "......\n"
           "....>.\n"
           "......\n");
  EXPECT_TRUE(Verdict(game.main));
}

/// A window of a size with its packs in an empty folder of its own.
class Generator : public testing::Test {
 protected:
  void SetUp() override { game.global.DataDir = folder_ / ""; }

  void LayOut(int size) {
    game.main.BoardSize = size;
    SizeLayout(game.main);
    game.main.PuzzleOver = true;
    RefreshButtons(game.main);
  }

  std::vector<PackRecord> SavedPuzzles(int size) {
    std::vector<PackRecord> puzzles(static_cast<std::size_t>(PackCount(game.global, size)));
    RecordFile<PackRecord> pack(PackPath(game.global, size));
    long number = 0;
    for (PackRecord& puzzle : puzzles) pack.Read(++number, puzzle);
    return puzzles;
  }

  ScriptedDesktop desktop;
  Game game{desktop};
  Main& main = game.main;
  PackRecord& record = game.global.PuzzleRec;

 private:
  TempFolder folder_;
};

TEST_F(Generator, EveryRecordIsAFullLayoutWithoutFault) {
  int leftOvers = 0;  // Directions of trees of rejected layouts.
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    LayOut(size);
    for (int puzzle = 0; puzzle < (size < 12 ? 40 : 8); ++puzzle) {
      MakePuzzle(main);
      int trees = 0;
      for (int cell = 0; cell < main.CellCount; ++cell) {
        const int code = record.Layout[cell];
        EXPECT_EQ(main.Board[cell], code);
        trees += code == CELL_TREE;
        EXPECT_TRUE(code != CELL_TREE || main.TentDir[cell] == record.TentDirs[cell]);
        leftOvers += code != CELL_TREE && record.TentDirs[cell] != 0;
        if (code >= CELL_TENT) continue;
        ForEachSide(main.BoardSize, cell, [&](int side, int) { EXPECT_NE(record.Layout[side], CELL_OPEN); });
      }
      EXPECT_EQ(trees, main.TreeCount);
      EXPECT_EQ(record.LevelSize, LevelSizeOf(main.Level, size));
      EXPECT_TRUE(main.Level >= 1 && main.Level <= 5);
      EXPECT_EQ(record.BestMinutes + record.BestSeconds + record.BestPlayer, 0);
      for (int i = 0; i < size; ++i) EXPECT_EQ(RowClue(main, i), record.RowCounts[i]);
      for (int i = 0; i < size; ++i) EXPECT_EQ(ColClue(main, i), record.ColCounts[i]);
      const PackRecord made = record;
      for (const Fault& fault : FaultsOf("made", {{made}, 0}, main)) ADD_FAILURE() << fault.Words;
      ASSERT_FALSE(HasFailure()) << "size " << size << " puzzle " << puzzle;
    }
  }
  EXPECT_GT(leftOvers, 0);
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
    EXPECT_TRUE(main.Timer1.Enabled);
    EXPECT_TRUE(main.GenFirstTick);
    EXPECT_EQ(main.LabelStap.Caption, "0");
    EXPECT_EQ(main.StepCount + main.MoveLogTop, 0);
    EXPECT_TRUE(main.BoardLive && !main.Paused && !main.PuzzleOver);
    for (const Button* button : {&main.cmdOptions, &main.cmdGenerate, &main.cmdOpen, &main.cmdNext,
                                 &main.cmdPlayers, &main.cmdResetTime, &main.cmdPause, &main.cmdSolution,
                                 &main.cmdHint, &main.cmdRestart, &main.cmdUndo, &main.cmdRedo}) {
      EXPECT_FALSE(button->Enabled);
    }
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
    EXPECT_EQ(main.Level, 1);
    EXPECT_FLOAT_EQ(main.Difficulty, 1);
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
  const std::vector<PackRecord> pack = SavedPuzzles(6);
  ASSERT_EQ(pack.size(), 1U);
  EXPECT_EQ(pack[0], record);
}

TEST_F(Generator, ARefusedPuzzleIsReportedAndPlayed) {
  LayOut(6);
  main.PuzzleCount[0] = 7;
  cmdGenerate_Click(main);
  EXPECT_EQ(desktop.Titles(), (std::vector<std::string>{"Puzzle Save Error", "Generate report"}));
  EXPECT_FALSE(FileExists(PackPath(main.global, 6)));
  EXPECT_TRUE(main.Timer3.Enabled);
}

TEST_F(Generator, TheEndOfTheProgramLeavesThePackAlone) {
  LayOut(8);
  cmdGenerate_Click(main);
  const std::vector<PackRecord> before = SavedPuzzles(8);
  for (const int last : {1, 65, 500, 1500}) {
    int yields = 0;
    desktop.WhileYielding = [&] {
      if (++yields == last) desktop.End();
    };
    EXPECT_THROW(while (true) cmdGenerate_Click(main), ProgramEnd);
    EXPECT_EQ(BytesOf(PackPath(main.global, 8)).size() % RecordFile<PackRecord>::kBytes, 0U);
    EXPECT_EQ(SavedPuzzles(8).at(0), before.at(0));
  }
}

// One number over many records: an unmeant change of the generator, the proof or the rater shows here.
TEST_F(Generator, MakesTheSamePuzzlesAsBefore) {
  Signature signature;
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    LayOut(size);
    for (int puzzle = 0; puzzle < 12; ++puzzle) {
      MakePuzzle(main);
      for (const int field : record.TentDirs) signature.Add(field);
      for (const int field : record.Layout) signature.Add(field);
      for (const int field : record.RowCounts) signature.Add(field);
      for (const int field : record.ColCounts) signature.Add(field);
      signature.Add(record.LevelSize);
      signature.Add(static_cast<int>(std::bit_cast<std::int32_t>(main.Difficulty)));
    }
  }
  EXPECT_EQ(signature.Hash, 11926019970017106997U);
}

}  // namespace
}  // namespace bivouac
