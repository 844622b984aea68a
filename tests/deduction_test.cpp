#include <gtest/gtest.h>

#include "deduction/clusters.h"
#include "deduction/runs.h"
#include "deduction/twins.h"
#include "deduction/wings.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"

namespace bivouac {
namespace {

/// Positions as a picture of a line: 'o' for those in the set.
Positions SetOf(std::string_view line) {
  Positions positions = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == 'o') positions |= 1u << i;
  }
  return positions;
}

TEST(RunsTest, OddRunsAreFilledInOneWayEvenOnesInSeveral) {
  struct Case {
    std::string_view Open;
    int Capacity;
    std::string_view Odd;
    std::string_view Even;
  };
  constexpr std::array kCases{
      Case{"......", 0, "......", "......"},
      Case{"o.....", 1, "o.....", "......"},
      Case{".ooo.o", 3, ".o.o.o", "......"},
      Case{"oo.ooo", 3, "...o.o", "oo...."},
      Case{"oooooo", 3, "......", "oooooo"},
      Case{"oooo.ooooooooooooo", 9, ".....o.o.o.o.o.o.o", "oooo.............."},
      Case{"oooooooooooooooooo", 9, "..................", "oooooooooooooooooo"},
  };
  for (const Case& it : kCases) {
    const LineRuns runs = CutRuns(SetOf(it.Open));
    EXPECT_EQ(runs.Capacity, it.Capacity) << it.Open;
    EXPECT_EQ(runs.Odd, SetOf(it.Odd)) << it.Open;
    EXPECT_EQ(runs.Even, SetOf(it.Even)) << it.Open;
  }
}

struct DeductionTest : testing::Test {
  ScriptedDesktop desktop;
  Game game{desktop};
  Main& main = game.main;
};

TEST_F(DeductionTest, LinesHoldTheBoardInBothDirectionsAndNothingBeyondIt) {
  LayBoard(main, R"(
      g.tT.T
      ......
      T.....
      .....t
      ......
      g....T)");
  main.Board[7] = 9;  // No code: it belongs to no set.
  for (const Direction direction : {Direction::Rows, Direction::Columns}) {
    const Axis axis{direction, 6};
    const Lines lines(main.Board, axis);
    for (int code = CELL_OPEN; code <= CELL_TREE; ++code) {
      for (int line = 0; line < 6; ++line) {
        EXPECT_EQ(lines.Of(code, line), PositionsOf(main.Board, axis, line, code));
      }
      for (const int line : {-2, -1, 6, 7}) EXPECT_EQ(lines.Of(code, line), 0u);
    }
  }
}

TEST_F(DeductionTest, TwinsInAColumnAreFoundAsInARow) {
  LayBoard(main, R"(
      .T.ggg
      .T.ggg
      .ggggg
      gggggg
      gggggg
      gggggg)");
  const auto find = FindTwins(main.Board, {Direction::Columns, 6});
  ASSERT_TRUE(find);
  EXPECT_EQ(find->Outcome, TwinOutcome::OneTent);
  EXPECT_EQ(find->FirstTree, 1);
  EXPECT_EQ(find->SecondTree, 7);
  ASSERT_EQ(find->Count, 1);
  EXPECT_EQ(find->Cells[0], 12);
  EXPECT_FALSE(FindTwins(main.Board, {Direction::Rows, 6}));
}

TEST_F(DeductionTest, ClustersNameTheFieldsInRisingOrder) {
  LayBoard(main, R"(
      gggggg
      gg.ggg
      ggTggg
      .TtT.g
      ggTggg
      gg.ggg)");
  const auto none = FindCluster(main.Board, 6);
  EXPECT_FALSE(none) << "four fields for three tents";
  main.Board[8] = CELL_GRASS;
  const auto find = FindCluster(main.Board, 6);
  ASSERT_TRUE(find);
  EXPECT_EQ(find->Code, CELL_TENT);
  EXPECT_EQ(std::vector<int>(find->Cells.begin(), find->Cells.end()), (std::vector<int>{18, 22, 32}));
}

TEST_F(DeductionTest, TheHintLeavesTheTwoTreesOfFormation4ToTheRater) {
  LayBoard(main, R"(
      gggggggg
      gggggggg
      gggg.ggg
      gggTT.gg
      gg.T.Tgg
      ggg.Tggg
      gggggggg
      gggggggg)");
  const auto find = FindWing(main.Board, 8, TwoTreesRule::InAllFormations);
  ASSERT_TRUE(find);
  EXPECT_EQ(find->Formation.Formation, 4);
  EXPECT_EQ(find->Message, WingMessage::TC);
  EXPECT_FALSE(FindWing(main.Board, 8, TwoTreesRule::NotInFormation4));
}

}  // namespace
}  // namespace bivouac
