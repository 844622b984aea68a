#include "hints/hints.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "game/blinking.h"
#include "game/board.h"
#include "game/clock.h"
#include "game/error.h"
#include "game/moves.h"
#include "game/play.h"
#include "game/text.h"
#include "rating/rating.h"
#include "tests/support/files.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"
#include "workbench/position.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

using Texts = std::vector<std::string>;

/// A whole puzzle played by hints alone.
class Walk {
 public:
  explicit Walk(const PackRecord& record) {
    LayOutRecord(main_, record);
    main_.PuzzleOver = false;
    main_.BoardLive = true;
    StartPuzzle(main_);
  }

  void Play() {
    while (!main_.PuzzleOver && !fault_ && !testing::Test::HasFatalFailure()) Step();
  }

 private:
  void Step() {
    const std::string board = BoardDigits(main_);
    const int elapsed = main_.Elapsed;
    try {
      cmdHint_Click(main_);
    } catch (const RunTimeError& error) {
      ASSERT_EQ(error.Number(), ErrorNumber::IndexOutsideArray);
      fault_ = true;
    }
    ASSERT_EQ(BoardDigits(main_), board);
    if (fault_) return;
    fields_.clear();
    if (main_.BlinkTop == -1) {
      ASSERT_EQ(main_.lblHint.Caption, "No more logical hints available...");
    } else {
      ASSERT_TRUE((std::set{5, 10, 15, 20, 25, 30, 40}.contains(main_.Elapsed - elapsed)));
      Timer2_Timer(main_);
      ASSERT_NO_FATAL_FAILURE(CollectFields());
    }
    lblHint_Click(main_);
    for (const auto& [cell, code] : fields_) Decide(cell, code);
    if (fields_.empty()) Reveal();
  }

  /// The fields that the hint decides; it must be right.
  void CollectFields() {
    const auto hint = FindHint(main_);
    ASSERT_EQ(hint->Text(), main_.lblHint.Caption);
    for (const FoundField& field : hint->Found.Fields) {
      if (!IsDecided(field.Is)) continue;
      const bool tent = field.Is == Role::Tent;
      ASSERT_EQ(main_.Solution[field.Cell] == CELL_TENT, tent) << field.Cell << ": " << hint->Text();
      Add(field.Cell, tent ? CELL_TENT : CELL_GRASS);
    }
  }
  void Add(int cell, int code) {
    if (main_.Board[cell] == CELL_OPEN) fields_[cell] = code;
  }
  void Decide(int cell, int code) {
    while (!main_.PuzzleOver && main_.Board[cell] != code) Grid_Click(main_, cell);
  }
  /// Helps on where hints end: the first open field as the solution has it.
  void Reveal() {
    const auto open = BoardDigits(main_).find('0');
    ASSERT_NE(open, std::string::npos) << "a full board that is not solved";
    const int cell = static_cast<int>(open);
    Decide(cell, main_.Solution[cell] == CELL_TENT ? CELL_TENT : CELL_GRASS);
  }

  Workbench bench_;
  Main& main_ = bench_.main;
  std::map<int, int> fields_;
  bool fault_ = false;
};

TEST(Hints, WholePuzzlesPlayedByHintsAlone) {
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    for (const PackRecord& record : ReadPack("assets/packs/BVPack" + TwoDigits(size) + ".bvq")) {
      Walk(record).Play();
      if (HasFatalFailure()) return;
    }
  }
}

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
  /// A right field, a wrong one, a right one and two wrong ones: one click makes grass, two make a tent.
  void MakeThreeFieldsWrong() {
    for (const int cell : {2, 1, 14, 14, 3, 3, 15, 15}) Grid_Click(main, cell);
    desktop.Played.clear();
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

TEST_F(HintFrame, WrongFieldsAreUndoneWithTheCorrectMovesAfterThem) {
  MakeThreeFieldsWrong();
  desktop.Answers = {BoxAnswer::Yes};
  desktop.WhileOpen = [&](const MessageBox&) {
    EXPECT_EQ(Live(), "000");
    EXPECT_EQ(main.Elapsed, 10);
  };
  cmdHint_Click(main);
  ASSERT_EQ(desktop.Boxes.size(), 1u);
  EXPECT_EQ(desktop.Boxes[0].Title, "Hint Report");
  EXPECT_EQ(desktop.Boxes[0].Text,
            "One or more fields are not correct!\nUndo untill all incorrect solved fields are restored?");
  EXPECT_EQ(desktop.Boxes[0].Symbol, BoxSymbol::Warning);
  EXPECT_EQ(main.StepCount, 1);
  EXPECT_EQ(BoardDigits(main).substr(0, 16), "3010111111111300");
  EXPECT_EQ(main.Elapsed, 10);
  EXPECT_EQ(desktop.Played, std::vector{8});
  EXPECT_EQ(Live(), "111");
  EXPECT_TRUE(main.cmdRedo.Enabled && !main.Timer2.Enabled);
}

TEST_F(HintFrame, WrongFieldsAreShownOrNotAsThePlayerLikes) {
  MakeThreeFieldsWrong();
  desktop.Answers = {BoxAnswer::No, BoxAnswer::No, BoxAnswer::No, BoxAnswer::Yes};
  cmdHint_Click(main);
  EXPECT_EQ(main.Elapsed, 10);
  EXPECT_EQ(Live(), "111");
  cmdHint_Click(main);
  EXPECT_EQ(desktop.Boxes.back().Text, "Do you want to see the incorrect solved fields?");
  EXPECT_EQ(desktop.Boxes.back().Symbol, BoxSymbol::Question);
  EXPECT_EQ(main.Elapsed, 10 + 10 + 30);
  EXPECT_EQ(Marks(main), "1:1,3:2,15:2");
  EXPECT_EQ(Live(), "000");
  lblHint_Click(main);
  EXPECT_EQ(main.lblHint.Caption, "");
  EXPECT_EQ(Live(), "111");
  EXPECT_EQ(main.StepCount, 8);
}

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

TEST_F(HintFrame, UndoRestartAndSolutionLeaveAHintOnShow) {
  Grid_Click(main, 3);
  cmdHint_Click(main);
  const int elapsed = main.Elapsed;
  desktop.Now = "12:00:05";
  Timer3_Timer(main);
  EXPECT_EQ(main.Elapsed, elapsed + 5) << "the clock runs on under a hint";
  const auto sounds = desktop.Played;
  cmdUndo_Click(main);
  EXPECT_EQ(desktop.Played, sounds);
  EXPECT_THROW(cmdUndo_Click(main), RunTimeError);  // The button is not refreshed.
  StartPuzzle(main);
  EXPECT_FALSE(main.BoardLive || main.cmdHint.Enabled);
  cmdSolution_Click(main);
  EXPECT_TRUE(main.Timer2.Enabled);
  EXPECT_NE(main.lblHint.Caption, "");
  lblHint_Click(main);
  EXPECT_TRUE(main.BoardLive && main.PuzzleOver);
  EXPECT_FALSE(main.Timer2.Enabled || main.cmdHint.Enabled);
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
