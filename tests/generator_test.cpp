#include "generator/generator.h"

#include <bit>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "game/board.h"
#include "game/layout.h"
#include "game/moves.h"
#include "game/play.h"
#include "game/text.h"
#include "generator/random.h"
#include "generator/unique_solution.h"
#include "rating/rating.h"
#include "storage/pack.h"
#include "storage/record_file.h"
#include "tests/support/files.h"
#include "tests/support/packs.h"
#include "tests/support/picture.h"
#include "tests/support/plain_proof.h"
#include "tests/support/scripted_desktop.h"
#include "tools/workbench.h"

namespace bivouac {
namespace {

/// What a proof leaves behind.
struct Proof {
  bool Unique = false;
  long Rounds = 0;
  Array<int> Board;
  Array<int> Solution;
};

using ProofProcedure = long (*)(Main&, bool&);

Proof Prove(Main& main, ProofProcedure procedure) {
  Proof proof;
  proof.Rounds = procedure(main, proof.Unique);
  proof.Board = main.Board;
  proof.Solution = main.Solution;
  return proof;
}

std::string Digits(const Array<int>& cells) {
  std::string digits;
  for (int i = 0; i <= cells.Upper(); ++i) digits += std::to_string(cells[i]);
  return digits;
}

void ExpectEqual(const Proof& fast, const Proof& plain, const std::string& where) {
  ASSERT_EQ(fast.Unique, plain.Unique) << where;
  ASSERT_EQ(fast.Rounds, plain.Rounds) << where;
  ASSERT_EQ(Digits(fast.Board), Digits(plain.Board)) << where;
  ASSERT_EQ(Digits(fast.Solution), Digits(plain.Solution)) << where;
}

/// Proves the board of `main` in both forms and expects the same in all respects.
void ExpectSameProof(Main& main, const std::string& where) {
  const Array<int> board = main.Board;
  const Proof plain = Prove(main, PlainCheckUniqueSolution);
  main.Board = board;
  const Proof fast = Prove(main, CheckUniqueSolution);
  ExpectEqual(fast, plain, where);
}

struct ProofCase {
  std::string Pack;
  long Number = 0;
  int Size = 0;
  int Verdict = 0;
  long Rounds = 0;
};

std::vector<ProofCase> WorkedProofs() {
  std::vector<ProofCase> cases;
  for (const std::vector<std::string>& row : ReadTable("tests/data/proof.tsv")) {
    cases.push_back(
        {row.at(0), std::stol(row.at(1)), std::stoi(row.at(2)), std::stoi(row.at(3)), std::stol(row.at(4))});
  }
  return cases;
}

PackRecord RecordOf(const ProofCase& row) {
  return ReadPack("tests/data/layouts/" + row.Pack).at(static_cast<std::size_t>(row.Number) - 1);
}

TEST(Proof, AgreesWithTheWorkedResults) {
  ScriptedDesktop desktop;
  Game game(desktop);
  const std::vector<ProofCase> cases = WorkedProofs();
  ASSERT_EQ(cases.size(), 260U);
  for (const ProofCase& row : cases) {
    const PackRecord record = RecordOf(row);
    for (const ProofProcedure procedure : {PlainCheckUniqueSolution, CheckUniqueSolution}) {
      LayOutRecord(game.main, record);
      const Proof proof = Prove(game.main, procedure);
      EXPECT_EQ(proof.Unique, row.Verdict == 1) << row.Pack << ' ' << row.Number;
      EXPECT_EQ(proof.Rounds, row.Rounds) << row.Pack << ' ' << row.Number;
    }
  }
}

/// Enough to try damage of every kind on every size. The plain form takes a microsecond a round.
constexpr long kRoundsASize = 50'000;

/// Draws layouts, hurts most of them, and compares the two forms.
void CompareProofsOfSize(int size) {
  ScriptedDesktop desktop;
  desktop.Seed = static_cast<std::uint64_t>(size) * 1'000'000;
  Game game(desktop);
  Main& main = game.main;
  main.BoardSize = size;
  SizeLayout(main);
  Array<int> scratch;
  scratch.Redim(main.CellCount - 1);
  Random random(static_cast<std::uint64_t>(size));
  const auto bump = [&](Label& label, int by) {
    label.Caption = std::to_string(IntegerFromText(label.Caption) + by);
  };
  for (int attempt = 0; desktop.Yields < kRoundsASize || attempt < 60; ++attempt) {
    DrawLayout(main, scratch);
    const int line = random.Below(size);
    const int cell = random.Below(main.CellCount);
    switch (attempt % 8) {
      case 3:
        bump(main.RowCnt[line], 1);
        break;
      case 4:
        bump(main.ColCnt[line], -1);
        break;
      case 5:
        bump(main.RowCnt[line], -size);
        break;
      case 6:  // The count may be too high now.
        main.Board[cell] = CELL_OPEN;
        break;
      case 7:
        bump(main.ColCnt[line], 1);
        bump(main.RowCnt[random.Below(size)], 1);
        main.Board[cell] = main.Board[cell] == CELL_TREE ? CELL_TREE : (++main.TreeCount, CELL_TREE);
        break;
      default:
        break;
    }
    ExpectSameProof(main, "size " + std::to_string(size) + " attempt " + std::to_string(attempt));
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(Proof, PassesTheSameRoundsAsThePlainForm) {
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    CompareProofsOfSize(size);
    if (HasFatalFailure()) return;
  }
}

TEST(Proof, BoardsWithoutSenseEndToo) {
  ScriptedDesktop desktop;
  Game game(desktop);
  Main& main = game.main;
  const std::string empty = "......\n......\n......\n......\n......\n......\n";
  LayBoard(main, empty);
  ExpectSameProof(main, "no trees");
  EXPECT_EQ(Prove(main, CheckUniqueSolution).Rounds, 1);

  main.TreeCount = 3;
  main.RowCnt[0].Caption = "9";
  main.ColCnt[1].Caption = "9";
  ExpectSameProof(main, "trees that are nowhere");

  LayBoard(main, "TTTTTT\nTTTTTT\nTTTTTT\nTTTTTT\nTTTTTT\nTTTTTT\n");
  ExpectSameProof(main, "nothing but trees");
  main.TreeCount = 35;
  bool unique = false;
  EXPECT_THROW(CheckUniqueSolution(main, unique), RunTimeError);
  main.TreeCount = -1;
  EXPECT_THROW(CheckUniqueSolution(main, unique), RunTimeError);
  main.TreeCount = 36;
  main.ColCnt[3].Caption = "";
  EXPECT_THROW(CheckUniqueSolution(main, unique), RunTimeError);
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
  ForEachSide(main, trees[index], [&](int side, int) {
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
  Array<int> scratch;
  scratch.Redim(main.CellCount - 1);
  int kept = 0;
  int several = 0;
  for (int attempt = 0; attempt < 300; ++attempt) {
    DrawLayout(main, scratch);
    bool unique = false;
    CheckUniqueSolution(main, unique);
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
  bool unique = true;
  LayBoard(game.main,
           ".v..>.\n"
           "......\n"
           "......\n"
           "......\n"
           ".<....\n"
           "......\n");
  CheckUniqueSolution(game.main, unique);
  EXPECT_FALSE(unique);

  LayBoard(game.main,
           ".v..>.\n"
           "......\n"
           "......\n"
           "......\n"
           "....>.\n"
           "......\n");
  CheckUniqueSolution(game.main, unique);
  EXPECT_TRUE(unique);
}

/// The layout with the longest search among the worked ones of a size.
PackRecord LongestSearch(int size) {
  ProofCase longest;
  for (const ProofCase& row : WorkedProofs()) {
    if (row.Size == size && row.Rounds > longest.Rounds) longest = row;
  }
  return RecordOf(longest);
}

// The plain form yields at every round, the fast one now and then: the clicks come at the same rounds.
TEST(Proof, ClicksWhileItYieldsCountFromTheNextRound) {
  ScriptedDesktop desktop;
  Game game(desktop);
  Main& main = game.main;
  const PackRecord record = LongestSearch(17);
  LayOutRecord(main, record);
  desktop.Yields = 0;
  bool unique = false;
  const long rounds = CheckUniqueSolution(main, unique);
  const long batch = 8192;
  ASSERT_EQ(desktop.Yields, (rounds + batch - 1) / batch);
  ASSERT_GE(desktop.Yields, 5);

  Random random(17);
  int differ = 0;
  for (int round = 0; round < 24; ++round) {
    struct Click {
      int Yield, Cell, Code;
    };
    std::vector<Click> clicks;
    for (int i = 0; i < 1 + round % 6; ++i) {
      const int cell = random.Below(main.CellCount);
      const int code = random.Below(round < 18 ? 3 : 4);
      if (record.Layout[cell] != CELL_TREE || round >= 18)
        clicks.push_back({1 + random.Below(4), cell, code});
    }
    const auto proofWithClicks = [&](ProofProcedure procedure, long roundsAYield) {
      LayOutRecord(main, record);
      long yields = 0;
      std::string seen;
      desktop.WhileYielding = [&] {
        const long passed = yields++ * roundsAYield;
        if (passed % batch != 0) return;
        for (const Click& click : clicks) {
          if (click.Yield * batch != passed) continue;
          seen += Digits(main.Solution);
          main.Board[click.Cell] = click.Code;
        }
      };
      const Proof proof = Prove(main, procedure);
      desktop.WhileYielding = nullptr;
      return std::pair{proof, seen};
    };
    const auto [plain, plainSeen] = proofWithClicks(PlainCheckUniqueSolution, 1);
    const auto [fast, fastSeen] = proofWithClicks(CheckUniqueSolution, batch);
    ExpectEqual(fast, plain, "clicks of round " + std::to_string(round));
    ASSERT_EQ(fastSeen, plainSeen) << "Solution while it yields, round " << round;
    differ += fast.Rounds != rounds;
  }
  EXPECT_GT(differ, 5) << "the clicks hardly changed a search";
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
    RecordFile pack(PackPath(game.global, size), kPackRecordBytes);
    long number = 0;
    for (PackRecord& puzzle : puzzles) ReadRecord(pack, ++number, puzzle);
    return puzzles;
  }

  ScriptedDesktop desktop;
  Game game{desktop};
  Main& main = game.main;
  PackRecord& record = game.global.PuzzleRec;

 private:
  TempFolder folder_;
};

/// What must hold for every record that the generator makes.
void ExpectSoundRecord(const Main& main) {
  const PackRecord& record = main.global.PuzzleRec;
  const int size = main.BoardSize;
  std::vector<int> tentsOfRow(18), tentsOfCol(18), claims(kMaxCells);
  int trees = 0;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    const int code = record.Layout[cell];
    if (code == CELL_TENT) {
      ++tentsOfRow.at(static_cast<std::size_t>(cell / size));
      ++tentsOfCol.at(static_cast<std::size_t>(cell % size));
      EXPECT_FALSE(AnyAround(main, cell, [&](int near) { return record.Layout[near] == CELL_TENT; }));
    }
    if (code == CELL_TREE) {
      ++trees;
      ForEachSide(main, cell, [&](int side, int direction) {
        if (direction == record.TentDirs[cell]) ++claims.at(static_cast<std::size_t>(side));
      });
    }
    if (code < CELL_TENT) {
      ForEachSide(main, cell, [&](int side, int) { EXPECT_NE(record.Layout[side], CELL_OPEN); });
    }
  }
  int tents = 0;
  for (int cell = 0; cell < kMaxCells; ++cell) {
    tents += record.Layout[cell] == CELL_TENT;
    EXPECT_EQ(claims[static_cast<std::size_t>(cell)], record.Layout[cell] == CELL_TENT ? 1 : 0);
    EXPECT_TRUE(cell < main.CellCount || (record.Layout[cell] == 0 && record.TentDirs[cell] == 0));
  }
  for (int i = 0; i < kMaxSize; ++i) {
    EXPECT_EQ(record.RowCounts[i], tentsOfRow[static_cast<std::size_t>(i)]);
    EXPECT_EQ(record.ColCounts[i], tentsOfCol[static_cast<std::size_t>(i)]);
  }
  EXPECT_EQ(tents, trees);
  EXPECT_EQ(trees, main.TreeCount);
  EXPECT_EQ(SizeOf(record.LevelSize), size);
  EXPECT_EQ(LevelOf(record.LevelSize), main.Level);
  EXPECT_EQ(record.BestMinutes + record.BestSeconds + record.BestPlayer, 0);
  for (int cell = 0; cell < main.CellCount; ++cell) EXPECT_EQ(main.Board[cell], record.Layout[cell]);
}

TEST_F(Generator, EveryRecordKeepsTheRulesOfALayout) {
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    LayOut(size);
    for (int puzzle = 0; puzzle < (size < 12 ? 40 : 8); ++puzzle) {
      MakePuzzle(main);
      ExpectSoundRecord(main);
      ASSERT_GE(main.Level, 1);
      ASSERT_LE(main.Level, 5);
      const PackRecord made = record;
      bool unique = false;
      CheckUniqueSolution(main, unique);
      EXPECT_TRUE(unique);
      int level = 0;
      RatePuzzle(main, level);
      EXPECT_EQ(level, main.Level);
      EXPECT_EQ(record, made);
      ASSERT_FALSE(HasFailure()) << "size " << size << " puzzle " << puzzle;
    }
  }
}

// Directions outside the trees tell of rejected layouts, but only of those since the last one that was rated.
TEST_F(Generator, DirectionsOfRejectedLayoutsStayInTheRecord) {
  LayOut(6);
  int leftOvers = 0;
  for (int puzzle = 0; puzzle < 50; ++puzzle) {
    MakePuzzle(main);
    for (int cell = 0; cell < main.CellCount; ++cell) {
      leftOvers += record.Layout[cell] != CELL_TREE && record.TentDirs[cell] != 0;
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
  EXPECT_GE(looks, 49);
}

TEST_F(Generator, SavesThenReportsThenStarts) {
  LayOut(6);
  main.global.PersonalPos = 4;
  main.PuzzleCount[0] = 0;
  desktop.WhileOpen = [&](const MessageBox& box) {
    EXPECT_EQ(box.Title, "Generate report");
    EXPECT_EQ(box.Symbol, BoxSymbol::Information);
    EXPECT_EQ(box.Text, "The new generated puzzle has level 1 with difficulty 0.8333333");
    EXPECT_EQ(main.Level, 1);
    EXPECT_FLOAT_EQ(main.Difficulty, 10.0F / 12);
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
    EXPECT_EQ(FileLength(PackPath(main.global, 8)) % kPackRecordBytes, 0U);
    EXPECT_EQ(SavedPuzzles(8).at(0), before.at(0));
  }
}

// Nothing bars clicks on the board: whatever they do to a layout, only what the rater finished is kept.
TEST_F(Generator, ClicksNeverBringAnUnratedRecordIntoThePack) {
  LayOut(6);
  Random random(5);
  int clicks = 0;
  desktop.WhileYielding = [&] {
    const int cell = random.Below(main.CellCount);
    if (random.Below(40) == 0 && main.Board[cell] != CELL_TREE) {
      Grid_Click(main, cell);
      ++clicks;
    }
    if (random.Below(200) == 0 && main.cmdUndo.Enabled) cmdUndo_Click(main);
  };
  for (int puzzle = 0; puzzle < 20; ++puzzle) cmdGenerate_Click(main);
  EXPECT_GT(clicks, 100);
  desktop.WhileYielding = nullptr;
  for (const PackRecord& kept : SavedPuzzles(6)) {
    LayOutRecord(main, kept);
    int level = 0;
    RatePuzzle(main, level);
    EXPECT_EQ(level, LevelOf(kept.LevelSize));
    EXPECT_GE(level, 1);
  }
}

// One number over many records: an unmeant change of the generator, the proof or the rater shows here.
TEST_F(Generator, Signature) {
  std::uint64_t hash = 0;
  const auto add = [&](int value) {
    hash = Random::Mix(hash + Random::kGoldenGap + static_cast<std::uint64_t>(value));
  };
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    LayOut(size);
    for (int puzzle = 0; puzzle < 12; ++puzzle) {
      MakePuzzle(main);
      for (const int field : record.TentDirs) add(field);
      for (const int field : record.Layout) add(field);
      for (const int field : record.RowCounts) add(field);
      for (const int field : record.ColCounts) add(field);
      add(record.LevelSize);
      add(static_cast<int>(std::bit_cast<std::int32_t>(main.Difficulty)));
    }
  }
  EXPECT_EQ(hash, 17224563856084697444U);
}

}  // namespace
}  // namespace bivouac
