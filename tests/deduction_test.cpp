#include <gtest/gtest.h>

#include "deduction/lines.h"
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
    const Runs runs = CutRuns(SetOf(it.Open));
    EXPECT_EQ(runs.Capacity, it.Capacity) << it.Open;
    EXPECT_EQ(runs.Odd, SetOf(it.Odd)) << it.Open;
    EXPECT_EQ(runs.Even, SetOf(it.Even)) << it.Open;
  }
}

TEST(WingsTest, TheHintLeavesTheTwoTreesOfFormation4ToTheRater) {
  ScriptedDesktop desktop;
  Game game(desktop);
  Main& main = game.main;
  LayBoard(main, R"(
      gggggggg
      gggggggg
      gggg.ggg
      gggTT.gg
      gg.T.Tgg
      ggg.Tggg
      gggggggg
      gggggggg)");
  const Clues none(main.RowCnt);
  Lines rows(main.Board, {LineKind::Row, 8}, none, none);
  rows.ReadBoard();
  Find find;
  Wing wing;
  EXPECT_FALSE(FindWing(rows, BothInner::NotInFormation4, find, wing));
  ASSERT_TRUE(FindWing(rows, BothInner::InAllFormations, find, wing));
  EXPECT_EQ(wing.Formation, 4);
  EXPECT_EQ(find.Case, WingBothInner);
}

}  // namespace
}  // namespace bivouac
