#include "rating/rating.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>

#include "game/board.h"
#include "game/layout.h"
#include "generator/generator.h"
#include "rating/rater.h"
#include "tests/support/lay_record.h"
#include "tests/support/packs.h"
#include "tests/support/picture.h"
#include "tests/support/plain_rater.h"
#include "tests/support/scripted_desktop.h"

namespace bivouac {
namespace {

/// The names of the passes of a rating, a faulty one last and marked.
std::string NamesOf(const RatingTrace& trace) {
  std::string names;
  const auto add = [&](std::string_view mark, int pass) {
    if (!names.empty()) names += ',';
    names += mark;
    names += PassTable()[static_cast<std::size_t>(pass)].Name;
  };
  for (const int pass : trace.Passes) add("", pass);
  if (trace.FaultyPass >= 0) add("!", trace.FaultyPass);
  return names;
}

std::string Exact(float number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.9g", static_cast<double>(number));
  return text;
}

struct RatingTest : testing::Test {
  ScriptedDesktop desktop;
  Game game{desktop};
  Main& main = game.main;
};

TEST_F(RatingTest, WorkedResultsComeOutTheSame) {
  std::map<std::string, std::vector<PackRecord>> packs;
  const auto table = ReadTable("tests/data/rating.tsv");
  ASSERT_EQ(table.size(), 391u);
  for (const auto& row : table) {
    auto& pack = packs[row[0]];
    if (pack.empty()) pack = ReadPack("tests/data/rating/" + row[0]);
    SCOPED_TRACE(row[0] + " record " + row[1]);
    PackRecord record = pack.at(static_cast<std::size_t>(std::stoi(row[1]) - 1));
    record.LevelSize = LevelSizeOf(0, std::stoi(row[2]));
    LayRecord(main, record);
    int level = 0;
    RatingTrace trace;
    RatePuzzle(main, level, trace);
    EXPECT_EQ(std::to_string(level), row[3]);
    EXPECT_EQ(Exact(main.Difficulty), row[4]);
    EXPECT_EQ(BoardDigits(main), row[5]);
    EXPECT_EQ(NamesOf(trace), row.size() > 6 ? row[6] : "");
  }
}

/// What is left after a rating or a pass.
struct Outcome {
  int Result = 0;  ///< Level, or 1 if the pass changed the board. A pass that ended in an error: -its number.
  std::string Difficulty;
  std::string Board;
  int BlinkTop = 0;
  std::string Passes;

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << outcome.Result << ' ' << outcome.Difficulty << ' ' << outcome.Board << ' ' << outcome.BlinkTop
             << ' ' << outcome.Passes;
}

template <class Rate>
Outcome RateWith(Main& main, Rate rate) {
  main.BlinkTop = 7;
  RatingTrace trace;
  int level = 0;
  rate(main, level, trace);
  return {level, Exact(main.Difficulty), BoardDigits(main), main.BlinkTop, NamesOf(trace)};
}

Outcome RateFast(Main& main) {
  return RateWith(main, [](Main& it, int& level, RatingTrace& trace) { RatePuzzle(it, level, trace); });
}

template <class Run>
Outcome Attempt(Main& main, Run run) {
  main.BlinkTop = 7;
  Outcome outcome;
  try {
    outcome.Result = run();
  } catch (const RunTimeError& error) {
    outcome.Result = -static_cast<int>(error.Number());
  }
  outcome.Board = BoardDigits(main);
  outcome.BlinkTop = main.BlinkTop;
  return outcome;
}

/// Runs a pass on the board as it stands, the clues being those of PuzzleRec.
Outcome RunPass(Main& main, int pass) {
  const Array<int> position = main.Board;
  Rater rater(main);
  for (int cell = 0; cell < main.CellCount; ++cell) rater.Set(cell, position[cell]);
  return Attempt(main, [&] { return PassTable()[static_cast<std::size_t>(pass)].Run(rater); });
}

Outcome RunPassPlainly(Main& main, int pass) {
  return Attempt(main, [&] { return RunPlainPass(main, pass); });
}

[[maybe_unused]] int PassNumber(std::string_view name) {
  const auto table = PassTable();
  const auto* row = std::find_if(&*table.begin(), &*table.begin() + table.size(),
                                 [&](const PassRow& it) { return it.Name == name; });
  if (row == &*table.begin() + table.size()) throw std::logic_error("no such pass");
  return static_cast<int>(row - &*table.begin());
}

/// Random boards that are no puzzles, thick with what passes look for.
class RandomBoards {
 public:
  explicit RandomBoards(unsigned seed) : random_(seed) {}

  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  /// A position: cells of random codes, needs near what the lines hold, captions now and then of another
  /// puzzle or no number.
  void LayPosition(Main& main) {
    FillCells(main);
    PackRecord& record = main.global.PuzzleRec;
    for (int i = 0; i < main.BoardSize; ++i) {
      record.RowCounts[i] = static_cast<std::int16_t>(Near(main, i * main.BoardSize, 1));
      record.ColCounts[i] = static_cast<std::int16_t>(Near(main, i, main.BoardSize));
    }
    SetCaptions(main);
  }

  /// Trees and clues of no puzzle, in PuzzleRec.
  void LayRecord(Main& main) {
    PackRecord& record = main.global.PuzzleRec;
    const int trees = 2 + Below(6);
    for (int cell = 0; cell < main.CellCount; ++cell) {
      record.Layout[cell] = static_cast<std::int16_t>(Below(12) < trees ? CELL_TREE
                                                      : Below(3) == 0   ? CELL_TENT
                                                                        : CELL_GRASS);
    }
    const int most = 1 + Below(main.BoardSize / 2);
    for (int i = 0; i < main.BoardSize; ++i) {
      record.RowCounts[i] = static_cast<std::int16_t>(Below(most + 1));
      record.ColCounts[i] = static_cast<std::int16_t>(Below(most + 1));
    }
    SetCaptions(main);
  }

 private:
  void FillCells(Main& main) {
    const int open = 1 + Below(12);
    const int grass = Below(8);
    const int tents = Below(3);
    const int trees = 1 + Below(8);
    for (int cell = 0; cell < main.CellCount; ++cell) {
      const int drawn = Below(open + grass + tents + trees);
      main.Board[cell] = drawn < open                   ? CELL_OPEN
                         : drawn < open + grass         ? CELL_GRASS
                         : drawn < open + grass + tents ? CELL_TENT
                                                        : CELL_TREE;
    }
  }

  int Near(const Main& main, int first, int step) {
    int tents = 0;
    for (int i = 0; i < main.BoardSize; ++i) tents += main.Board[first + i * step] == CELL_TENT;
    return tents + Below(5);
  }

  void SetCaptions(Main& main) {
    const int kind = Below(8);
    for (int i = 0; i < main.BoardSize; ++i) {
      const int other = kind == 0 ? Below(4) : 0;
      main.RowCnt[i].Caption = std::to_string(main.global.PuzzleRec.RowCounts[i] + other);
      main.ColCnt[i].Caption = std::to_string(main.global.PuzzleRec.ColCounts[i] + other);
    }
    if (kind == 1) main.RowCnt[Below(main.BoardSize)].Caption.clear();
    if (kind == 2) main.ColCnt[Below(main.BoardSize)].Caption += "x";
  }

  std::mt19937 random_;
};

TEST_F(RatingTest, EveryPassDoesWhatItsPlainFormDoesOnRandomPositions) {
  RandomBoards boards(20261122);
  std::map<std::string_view, int> finds;
  int faults = 0;
  for (int round = 0; round < kSizes * 150; ++round) {
    main.BoardSize = kMinSize + round % kSizes;
    SizeLayout(main);
    main.global.PuzzleRec = {};
    boards.LayPosition(main);
    const Array<int> position = main.Board;
    for (int pass = 0; pass < static_cast<int>(PassTable().size()); ++pass) {
      main.Board = position;
      const Outcome fast = RunPass(main, pass);
      main.Board = position;
      const Outcome plain = RunPassPlainly(main, pass);
      const std::string_view name = PassTable()[static_cast<std::size_t>(pass)].Name;
      main.Board = position;
      ASSERT_EQ(fast, plain) << name << '\n' << DrawBoard(main);
      if (fast.Result == 1) ++finds[name];
      if (fast.Result < 0) ++faults;
    }
  }
  // The comparison means something: each pass found what it looks for, and some ended in an error.
  for (const PassRow& pass : PassTable()) EXPECT_GT(finds[pass.Name], 20) << pass.Name;
  EXPECT_GT(faults, 100);
}

TEST_F(RatingTest, WholeRatingsEqualThePlainForm) {
  RandomBoards boards(7);
  std::map<int, int> levels;
  for (int round = 0; round < kSizes * 60; ++round) {
    main.BoardSize = kMinSize + round % kSizes;
    SizeLayout(main);
    if (round / kSizes % 3 == 0) {
      boards.LayRecord(main);
    } else {
      Array<int> shuffleOrder;
      shuffleOrder.Redim(main.CellCount - 1);
      DrawLayout(main, shuffleOrder);
      for (int cell = 0; cell < main.CellCount; ++cell) {
        main.global.PuzzleRec.Layout[cell] = static_cast<std::int16_t>(main.Board[cell]);
      }
      for (int i = 0; i < main.BoardSize; ++i) {
        main.global.PuzzleRec.RowCounts[i] = static_cast<std::int16_t>(RowClue(main, i));
        main.global.PuzzleRec.ColCounts[i] = static_cast<std::int16_t>(ColClue(main, i));
      }
    }
    const Outcome fast = RateFast(main);
    ASSERT_EQ(fast, RateWith(main, RatePlainly)) << "size " << main.BoardSize << " round " << round;
    ASSERT_EQ(fast, RateFast(main)) << "a second rating of size " << main.BoardSize;
    ++levels[fast.Result];
  }
  for (const int level : {-1, 1, 3, 4, 5}) EXPECT_GT(levels[level], 0) << "level " << level;
}

}  // namespace
}  // namespace bivouac
