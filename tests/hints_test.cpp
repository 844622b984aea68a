#include "hints/hints.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "game/error.h"
#include "game/moves.h"
#include "game/play.h"
#include "rating/rating.h"
#include "tests/support/files.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"
#include "workbench/position.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

using Texts = std::vector<std::string>;

/// The marks of one rule alone, as Marks gives them, and its text; dashes if it finds nothing.
Texts Tell(const Main& main, std::string_view name) {
  const auto& rules = HintRules();
  const auto* rule =
      std::find_if(rules.begin(), rules.end(), [&](const HintRule& it) { return it.Name == name; });
  if (rule == rules.end()) throw std::logic_error("no such rule");
  const Clues clues(rule->Along == LineKind::Row ? main.RowCnt : main.ColCnt);
  Lines lines(main.Board, {rule->Along, main.BoardSize}, clues, clues);
  lines.ReadBoard();
  FoundHint hint{rule, {}};
  try {
    if (!rule->Look(lines, hint.Found)) return {"-", "-"};
  } catch (const RunTimeError&) {
    return {"FAULT", "-"};
  }
  std::string marks;
  for (const FoundField& field : hint.Found.Fields)
    marks += ',' + std::to_string(field.Cell) + ':' + std::to_string(BlinkTileOf(field.Is));
  return {marks, std::string(hint.Text())};
}

// Cases of the rules that play hardly reaches: two trees around a field, leaning and turned either way, wings
// at the edge and out of the mirror, and trees too many in the last line. All clues are 0. Columns: name,
// rule, board, last marks, text; a dash for nothing.
TEST(Hints, RarePositions) {
  for (const Texts& columns : ReadTable("tests/data/rare_hints.tsv")) {
    ASSERT_EQ(columns.size(), 5u);
    Workbench bench;
    const std::string lines = columns[2].size() == 64 ? "8\t0,0,0,0,0,0,0,0\t0,0,0,0,0,0,0,0\t-\t"
                                                      : "6\t0,0,0,0,0,0\t0,0,0,0,0,0\t-\t";
    LayPosition(bench.main, lines + columns[2]);
    const Texts told = Tell(bench.main, columns[1]);
    EXPECT_TRUE(told[0].ends_with(columns[3])) << columns[0] << told[0];
    EXPECT_EQ(told[1], columns[4]) << columns[0];
  }
}

// From a hint to its pass in one step, and back: after the two rules that the rater does besides its passes,
// both tables go together.
TEST(Hints, EachRuleAfterTheSecondBearsTheNameOfItsPass) {
  static_assert(kHintRuleCount == kPassCount + 2);
  for (int i = 2; i < kHintRuleCount; ++i) {
    const HintRule& rule = HintRules()[i];
    const Pass& pass = PassTable()[i - 2];
    EXPECT_EQ("Pass" + std::string(rule.Name), pass.Name);
    EXPECT_EQ(rule.Stage, pass.Tier) << rule.Name;
    EXPECT_EQ(rule.Along, pass.Along) << rule.Name;
  }
}

// A hint around which the game goes on. Two trees, both with their tents to the east.
class HintFrame : public testing::Test {
 protected:
  HintFrame() {
    LayBoard(main, ">...gg\n gggggg\n g>..gg\n gggggg\n gggggg\n gggggg");
    main.SoundOn = true;
    for (int i = 0; i < 10; ++i) main.SoundId[i] = i;
  }
  /// Whether the board, the hint button and the pause button take clicks.
  std::string Live() {
    std::string live;
    for (const bool one : {main.BoardLive, main.cmdHint.Enabled, main.cmdPause.Enabled})
      live += one ? '1' : '0';
    return live;
  }

  ScriptedDesktop desktop;
  Game game{desktop};
  Main& main = game.main;
};

TEST_F(HintFrame, FaultsEndInAnErrorThatLeavesThePauseShut) {
  main.Board[1] = CELL_GRASS;  // Wrong, and no move made it.
  desktop.Answers = {BoxAnswer::Yes};
  EXPECT_THROW(cmdHint_Click(main), RunTimeError);
  for (int cell = 0; cell < main.CellCount; ++cell) main.Board[cell] = CELL_GRASS;
  main.RowCnt[0].Caption = "7";  // A search that leaves an array.
  main.BoardLive = main.cmdPause.Enabled = true;
  EXPECT_THROW(cmdHint_Click(main), RunTimeError);
  EXPECT_FALSE(main.cmdPause.Enabled);
  EXPECT_TRUE(main.BoardLive);
}

TEST_F(HintFrame, WhereHintsEndNothingIsPaid) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.Board[cell] = main.Solution[cell] == CELL_OPEN ? static_cast<int>(CELL_GRASS) : main.Solution[cell];
  }
  cmdHint_Click(main);
  EXPECT_EQ(main.lblHint.Caption, "No more logical hints available...");
  EXPECT_EQ(main.Elapsed, 0);
  EXPECT_TRUE(desktop.Played.empty() && !main.Timer2.Enabled);
  EXPECT_EQ(Live(), "111");
  main.cmdHint.Enabled = false;
  lblHint_Click(main);
  EXPECT_EQ(main.lblHint.Caption, "");
  EXPECT_FALSE(main.cmdHint.Enabled);
  main.lblHint.Caption = RulesText();
  lblHint_Click(main);
  EXPECT_EQ(main.lblHint.Caption, RulesText());
  EXPECT_TRUE(main.cmdHint.Enabled);
}

}  // namespace
}  // namespace bivouac
