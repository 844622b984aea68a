#include "generator/generator.h"

#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "game/board.h"
#include "game/layout.h"
#include "game/text.h"
#include "generator/random.h"
#include "generator/unique_solution.h"
#include "storage/record_file.h"
#include "tests/support/picture.h"
#include "tests/support/plain_proof.h"
#include "tests/support/scripted_desktop.h"

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

void LayRecord(Main& main, const PackRecord& record) {
  main.BoardSize = SizeOf(record.LevelSize);
  SizeLayout(main);
  main.TreeCount = 0;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.Board[cell] = record.Layout[cell];
    main.TreeCount += record.Layout[cell] == CELL_TREE;
  }
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Caption = std::to_string(record.RowCounts[i]);
    main.ColCnt[i].Caption = std::to_string(record.ColCounts[i]);
  }
}

struct ProofCase {
  std::string Pack;
  long Number = 0;
  int Size = 0;
  int Verdict = 0;
  long Rounds = 0;
};

std::vector<ProofCase> WorkedProofs() {
  std::ifstream table(BIVOUAC_SOURCE_DIR "/tests/data/proof.tsv");
  std::vector<ProofCase> cases;
  for (ProofCase row; table >> row.Pack >> row.Number >> row.Size >> row.Verdict >> row.Rounds;) {
    cases.push_back(row);
  }
  return cases;
}

TEST(Proof, AgreesWithTheWorkedResults) {
  ScriptedDesktop desktop;
  Game game(desktop);
  const std::vector<ProofCase> cases = WorkedProofs();
  ASSERT_EQ(cases.size(), 260U);
  for (const ProofCase& row : cases) {
    RecordFile pack(BIVOUAC_SOURCE_DIR "/tests/data/layouts/" + row.Pack, kPackRecordBytes);
    PackRecord record;
    ReadRecord(pack, row.Number, record);
    for (const ProofProcedure procedure : {PlainCheckUniqueSolution, CheckUniqueSolution}) {
      LayRecord(game.main, record);
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
  RecordFile pack(BIVOUAC_SOURCE_DIR "/tests/data/layouts/" + longest.Pack, kPackRecordBytes);
  PackRecord record;
  ReadRecord(pack, longest.Number, record);
  return record;
}

// The plain form yields at every round, the fast one now and then: the clicks come at the same rounds.
TEST(Proof, ClicksWhileItYieldsCountFromTheNextRound) {
  ScriptedDesktop desktop;
  Game game(desktop);
  Main& main = game.main;
  const PackRecord record = LongestSearch(17);
  LayRecord(main, record);
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
      LayRecord(main, record);
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

TEST(Random, WholePartsStayBelowTheLimitAndReachEveryNumber) {
  Random random(7);
  for (const int limit : {1, 4, 36, 324}) {
    std::vector<int> hits(static_cast<std::size_t>(limit));
    for (int i = 0; i < limit * 100; ++i) {
      const auto [first, second] = random.BelowTwice(limit);
      ++hits.at(static_cast<std::size_t>(first));
      ++hits.at(static_cast<std::size_t>(second));
    }
    for (const int count : hits) EXPECT_GT(count, 100) << limit;
  }
}

}  // namespace
}  // namespace bivouac
