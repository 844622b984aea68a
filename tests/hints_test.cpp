#include "hints/hints.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

#include "game/blinking.h"
#include "game/board.h"
#include "game/clock.h"
#include "game/error.h"
#include "game/layout.h"
#include "game/moves.h"
#include "game/play.h"
#include "game/text.h"
#include "rating/rating.h"
#include "tests/support/packs.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"
#include "tools/workbench.h"

namespace bivouac {
namespace {

using Texts = std::vector<std::string>;

Texts Split(const std::string& text, char separator) {
  Texts parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

/// A game in which the sounds have the ids of their numbers.
struct HintGame : Game {
  HintGame() : Game(desktop) {
    main.SoundOn = true;
    for (int i = 0; i < 12; ++i) main.SoundId[i] = i;
  }
  ScriptedDesktop desktop;
};

// The columns of the table of worked results: size, clues of the rows, clues of the columns, directions (a
// dash where the search alone is asked), board, outcome, seconds, sounds, marks, text.
void Lay(Main& main, const Texts& columns) {
  main.BoardSize = std::stoi(columns[0]);
  SizeLayout(main);
  const Texts rows = Split(columns[1], ',');
  const Texts cols = Split(columns[2], ',');
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Caption = rows.at(static_cast<std::size_t>(i));
    main.ColCnt[i].Caption = cols.at(static_cast<std::size_t>(i));
  }
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.Board[cell] = columns[4].at(static_cast<std::size_t>(cell)) - '0';
    if (columns[3] != "-") main.TentDir[cell] = columns[3].at(static_cast<std::size_t>(cell)) - '0';
  }
  main.BoardLive = true;
}

/// What the hint did, in the columns from the outcome on.
Texts Play(HintGame& game, bool searchAlone) {
  Main& main = game.main;
  game.desktop.Answers = {BoxAnswer::No, BoxAnswer::Yes};
  try {
    searchAlone ? HintBasic(main) : cmdHint_Click(main);
  } catch (const RunTimeError& error) {
    return {error.Number() == ErrorNumber::IndexOutsideArray ? "FAULT" : error.what()};
  }
  const bool wrong = !game.desktop.Boxes.empty();
  const bool find = main.BlinkTop != -1;
  EXPECT_EQ(main.BoardLive, !find);
  EXPECT_EQ(main.Timer2.Enabled, find);
  std::string sounds;
  for (const int sound : game.desktop.Played) sounds += (sounds.empty() ? "" : ",") + std::to_string(sound);
  const int shown = wrong ? 10 * (main.BlinkTop + 1) : 0;
  return {wrong  ? "WRONG"
          : find ? "FIND"
                 : "NONE",
          std::to_string(main.Elapsed - shown), sounds.empty() ? "-" : sounds, find ? Marks(main) : "-",
          main.lblHint.Caption};
}

TEST(Hints, WorkedResults) {
  const auto table = ReadTable("tests/data/hints.tsv");
  EXPECT_EQ(table.size(), 529u);
  for (const Texts& columns : table) {
    ASSERT_EQ(columns.size(), 10u);
    HintGame game;
    Lay(game.main, columns);
    Texts expected(columns.begin() + 5, columns.end());
    if (expected[0] == "FAULT") expected.resize(1);
    EXPECT_EQ(Play(game, columns[3] == "-"), expected) << columns[4];
  }
}

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

  HintGame game_;
  Main& main_ = game_.main;
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
    HintGame game;
    const int size = columns[2].size() == 64 ? 8 : 6;
    const std::string clues = size == 8 ? "0,0,0,0,0,0,0,0" : "0,0,0,0,0,0";
    Lay(game.main, {std::to_string(size), clues, clues, "-", columns[2]});
    const Texts told = Tell(game.main, columns[1]);
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
    ReadClock(main);
    main.ClockStart = main.ClockNow;
  }
  /// One click makes grass, two make a tent.
  void Click(int cell, int times) {
    for (int i = 0; i < times; ++i) Grid_Click(main, cell);
  }
  /// A right field, a wrong one, a right one and two wrong ones.
  void MakeThreeFieldsWrong() {
    for (const auto& [cell, times] : {std::pair{2, 1}, {1, 1}, {14, 2}, {3, 2}, {15, 2}}) Click(cell, times);
    desktop.Played.clear();
  }
  /// Whether the board, the hint button and the pause button take clicks.
  std::string Live() {
    std::string live;
    for (const bool one : {main.BoardLive, main.cmdHint.Enabled, main.cmdPause.Enabled})
      live += one ? '1' : '0';
    return live;
  }

  HintGame game;
  Main& main = game.main;
  ScriptedDesktop& desktop = game.desktop;
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

TEST_F(HintFrame, AHintOnShowHoldsTheBoardButNotTheClock) {
  desktop.Now = "23:59:50";
  StartPuzzle(main);
  Timer3_Timer(main);
  cmdHint_Click(main);
  EXPECT_EQ(Marks(main), "0:3");
  EXPECT_EQ(main.Elapsed, 15);
  EXPECT_EQ(Live(), "000");
  Click(1, 1);
  EXPECT_EQ(main.StepCount, 0);
  desktop.Now = "00:00:05";
  Timer3_Timer(main);
  EXPECT_EQ(main.Elapsed, 30);
  main.BlinkPhase = true;
  Timer2_Timer(main);
  EXPECT_EQ(main.Grid[0].Picture, CELL_OPEN);
  lblHint_Click(main);
  EXPECT_EQ(main.Grid[0].Picture, CELL_TREE);
  EXPECT_FALSE(main.Timer2.Enabled);
  Click(1, 1);
  EXPECT_EQ(main.StepCount, 1);
}

TEST_F(HintFrame, UndoRestartAndSolutionLeaveAHintOnShow) {
  Click(3, 1);
  cmdHint_Click(main);
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
