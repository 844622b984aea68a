#include "rating/rating.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>

#include "game/board.h"
#include "game/layout.h"
#include "rating/rater.h"
#include "tests/support/files.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

struct RatingTest : testing::Test {
  ScriptedDesktop desktop;
  Game game{desktop};
  Main& main = game.main;
};

/// Runs a pass on the board as it stands, the clues being those of PuzzleRec. Returns 1 if it changed the
/// board, 0 if not, and the number of an error that ended it, less than zero.
int TryPass(Main& main, const Pass& pass) {
  const Array<int> position = main.Board;
  Rater rater(main);
  for (int cell = 0; cell < main.CellCount; ++cell) rater.Set(cell, position[cell]);
  main.BlinkTop = 7;
  try {
    return RunPass(rater, pass);
  } catch (const RunTimeError& error) {
    return -static_cast<int>(error.Number());
  }
}

/// Random boards that are no puzzles, thick with what passes look for.
class RandomBoards {
 public:
  explicit RandomBoards(unsigned seed) : random_(seed) {}

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

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

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

// The signature (FNV-1a) was taken when a plain transcription of the rules, which rescans the board cell by
// cell, gave the same outcomes on 300,000 such positions, each with every pass.
TEST_F(RatingTest, EveryPassKeepsItsSignatureOnRandomPositions) {
  RandomBoards boards(20261122);
  std::uint64_t signature = 0xCBF29CE484222325U;
  std::map<std::string_view, int> finds;
  int faults = 0;
  for (int round = 0; round < kSizes * 150; ++round) {
    main.BoardSize = kMinSize + round % kSizes;
    SizeLayout(main);
    main.global.PuzzleRec = {};
    boards.LayPosition(main);
    const Array<int> position = main.Board;
    for (const Pass& pass : PassTable()) {
      main.Board = position;
      const int result = TryPass(main, pass);
      finds[pass.Name] += result == 1;
      faults += result < 0;
      std::ostringstream outcome;
      outcome << result << "  " << BoardDigits(main) << ' ' << main.BlinkTop << ' ';
      for (const char c : outcome.str())
        signature = (signature ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    }
  }
  EXPECT_EQ(signature, 6750795185566465377U);
  // It means something: each pass found what it looks for, and some ended in an error.
  for (const Pass& pass : PassTable()) EXPECT_GT(finds[pass.Name], 20) << pass.Name;
  EXPECT_GT(faults, 100);
}

/// A board of the table of passes as a picture: rows with a stroke between them, a row's clue behind it
/// unless it is 0. The rows that are left out at the end are grass.
std::string Picture(const std::string& rows) {
  std::istringstream stream(rows);
  std::string text;
  std::size_t size = 0;
  std::size_t count = 0;
  for (std::string row; std::getline(stream, row, '/'); ++count) {
    if (size == 0) size = std::min(row.find(' '), row.size());
    text += row + (row.find(' ') == row.npos ? " 0\n" : "\n");
  }
  for (; count < size; ++count) text += std::string(size, 'g') + " 0\n";
  for (std::size_t i = 0; i < size; ++i) text += "0 ";
  return text;
}

// Columns: what it shows, pass, board before, board after; a dash if the pass finds nothing, and an
// exclamation mark, after what it changed, if the board's bounds end it. What plays no part is grass.
TEST_F(RatingTest, PassesDecideHandMadePositions) {
  for (const auto& columns : ReadTable("tests/data/passes.tsv")) {
    ASSERT_EQ(columns.size(), 4u);
    LayBoard(main, Picture(columns[2]));
    for (int i = 0; i < main.BoardSize; ++i) {
      main.global.PuzzleRec.RowCounts[i] = static_cast<std::int16_t>(RowClue(main, i));
      main.global.PuzzleRec.ColCounts[i] = static_cast<std::int16_t>(ColClue(main, i));
    }
    std::string after = columns[3];
    const bool fault = after.ends_with('!');
    if (fault) after.pop_back();
    const bool unchanged = after == "-" || after.empty();
    const std::string expected = unchanged ? DrawBoard(main) : Tidy(Picture(after));
    const auto* pass = std::find_if(PassTable().begin(), PassTable().end(),
                                    [&](const Pass& it) { return it.Name == columns[1]; });
    ASSERT_NE(pass, PassTable().end()) << columns[1];
    EXPECT_EQ(TryPass(main, *pass), fault       ? -static_cast<int>(ErrorNumber::IndexOutsideArray)
                                    : unchanged ? 0
                                                : 1)
        << columns[0];
    EXPECT_EQ(DrawBoard(main), expected) << columns[0];
  }
}

TEST_F(RatingTest, ABoardThatIsNotLaidOutIsNoPuzzle) {
  main.BoardSize = 8;
  SizeLayout(main);
  for (const int size : {5, 9, 19, 0, -1}) {
    main.BoardSize = size;
    int level = 3;
    RatePuzzle(main, level);
    EXPECT_EQ(level, -1) << size;
  }
}

}  // namespace
}  // namespace bivouac
