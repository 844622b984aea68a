#include "generator/generator.h"

#include <algorithm>
#include <cstring>
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

class Generator : public GameTest {
 protected:
  PackRecord& record = game.global.PuzzleRec;
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
      std::int32_t difficulty;
      std::memcpy(&difficulty, &main.Difficulty, sizeof difficulty);
      signature.Add(difficulty);
      const PackRecord made = record;
      for (const Fault& fault : FaultsOf("made", {{made}, 0}, main)) ADD_FAILURE() << fault.Words;
      ASSERT_FALSE(HasFailure()) << "size " << size << " puzzle " << puzzle;
    }
  }
  EXPECT_GT(leftOvers, 0);
  EXPECT_EQ(signature.Hash, 461898511494061834U);
}

}  // namespace
}  // namespace bivouac
