#include "hints/hints.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <set>

#include "game/board.h"
#include "game/error.h"
#include "game/moves.h"
#include "game/play.h"
#include "rating/rating.h"
#include "storage/pack_files.h"
#include "tests/support/files.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"
#include "walks/solution_walk.h"
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

/// Reads the facts of a hint as a player does, and judges each by the board and its clues alone.
class FactJudge {
 public:
  explicit FactJudge(const Main& main) : main_(main) {}

  bool IsTrue(const std::string& fact) const {
    const std::size_t colon = fact.find(": ");
    const std::string about = fact.substr(0, colon);
    const std::string told = fact.substr(std::min(fact.size(), colon + 2));
    const Cells named = CellsIn(about);
    const Cells others = CellsIn(told);
    if (about == "cluster") return Stand(others, CELL_TREE, CELL_TENT) && !others.empty();
    if (about.starts_with("row") || about.starts_with("column")) {
      return told.find(" of ") == std::string::npos ? IsSupply(fact) : IsLine(fact);
    }
    if (named.empty()) return false;
    const int first = *named.begin();
    if (about.starts_with("a tent on ")) {
      return IsLoss(CellsIn(about.substr(0, about.find(" takes "))),
                    CellsIn(about.substr(about.find("from"))));
    }
    if (about.starts_with("wing ")) return named.size() == 3 && Stand(named, CELL_TREE, CELL_TREE);
    if (about.starts_with("tree ")) {
      const std::size_t open = told.find("open beside it");
      return main_.Board[first] == CELL_TREE && CellsIn(told.substr(0, open)) == Beside(first, CELL_TENT) &&
             CellsIn(told.substr(open)) == Beside(first, CELL_OPEN);
    }
    if (about.starts_with("tent ")) return main_.Board[first] == CELL_TENT && others == OpenAround(first);
    const std::size_t trees = told == "beside no other tree" ? 1 : 0;
    return told.ends_with("tree beside") == (trees == 0) &&
           std::all_of(named.begin(), named.end(),
                       [&](int cell) { return Beside(cell, CELL_TREE).size() == trees; });
  }

 private:
  using Cells = std::set<int>;

  Cells CellsIn(const std::string& text) const {
    Cells cells;
    for (std::size_t at = 0; (at = text.find('r', at)) != std::string::npos; ++at) {
      int row = 0;
      int col = 0;
      int last = 0;
      if (std::sscanf(text.c_str() + at, "r%dc%d-%d", &row, &col, &last) < 2) continue;
      do cells.insert((row - 1) * main_.BoardSize + col - 1);
      while (++col <= last);
    }
    return cells;
  }
  bool Stand(const Cells& cells, int one, int other) const {
    return std::all_of(cells.begin(), cells.end(),
                       [&](int cell) { return main_.Board[cell] == one || main_.Board[cell] == other; });
  }
  Cells Beside(int cell, int code) const {
    Cells cells;
    ForEachSide(main_.BoardSize, cell, [&](int side, int) {
      if (main_.Board[side] == code) cells.insert(side);
    });
    return cells;
  }
  bool Touch(int cell, int other) const {
    return AnyAround(main_, cell, [&](int near) { return near == other; });
  }
  Cells OpenAround(int cell) const {
    Cells cells;
    for (int other = 0; other < main_.CellCount; ++other) {
      if (main_.Board[other] == CELL_OPEN && Touch(cell, other)) cells.insert(other);
    }
    return cells;
  }
  Cells Line(bool row, int line, int code) const {
    Cells cells;
    for (int cell = 0; cell < main_.CellCount; ++cell) {
      if ((row ? RowOf(main_, cell) : ColOf(main_, cell)) == line && main_.Board[cell] == code)
        cells.insert(cell);
    }
    return cells;
  }
  int ClueOf(bool row, int line) const { return row ? RowClue(main_, line) : ColClue(main_, line); }

  bool IsLine(const std::string& fact) const {
    const bool row = fact.starts_with("row");
    int line = 0;
    int tents = 0;
    int clue = 0;
    std::sscanf(fact.c_str(), "%*s %d: %d of %d", &line, &tents, &clue);
    const Cells open = Line(row, --line, CELL_OPEN);
    if (open != CellsIn(fact) || clue != ClueOf(row, line) ||
        tents != static_cast<int>(Line(row, line, CELL_TENT).size()))
      return false;
    // Every second field of each run.
    int room = 0;
    bool taken = false;
    for (int place = 0; place < main_.BoardSize; ++place) {
      taken =
          !taken && open.count(row ? line * main_.BoardSize + place : place * main_.BoardSize + line) != 0;
      room += taken ? 1 : 0;
    }
    const std::size_t at = fact.find("room for ");
    return at == std::string::npos ? tents == clue : std::stoi(fact.substr(at + 9)) == room;
  }
  bool IsSupply(const std::string& fact) const {
    int first = 0;
    int last = 0;
    int tents = 0;
    int trees = 0;
    if (std::sscanf(fact.c_str(), "%*s %d to %d: %d %*[a-z], %d", &first, &last, &tents, &trees) != 4) {
      if (std::sscanf(fact.c_str(), "%*s %d: %d %*[a-z], %d", &first, &tents, &trees) != 3) return false;
      last = first;
    }
    for (int line = first - 1; line < last; ++line) {
      const bool row = fact.starts_with("row");
      tents -= ClueOf(row, line);
      trees -= static_cast<int>(Line(row, line, CELL_TREE).size());
    }
    return tents == 0 && trees == 0;
  }
  /// A tent would touch a tree's every other open field, or fill the line that they share.
  bool IsLoss(const Cells& fields, const Cells& trees) const {
    const int tent = *fields.begin();
    const auto lost = [&](int other) {
      const auto fills = [&](bool row, int line, int otherLine) {
        return line == otherLine &&
               static_cast<int>(Line(row, line, CELL_TENT).size()) + 1 == ClueOf(row, line);
      };
      return other == tent || Touch(tent, other) || fills(true, RowOf(main_, tent), RowOf(main_, other)) ||
             fills(false, ColOf(main_, tent), ColOf(main_, other));
    };
    return !trees.empty() && std::all_of(trees.begin(), trees.end(), [&](int tree) {
      const Cells open = Beside(tree, CELL_OPEN);
      return main_.Board[tree] == CELL_TREE && Beside(tree, CELL_TENT).empty() &&
             std::all_of(open.begin(), open.end(), lost);
    });
  }

  const Main& main_;
};

TEST(Hints, TheirFactsAreTrueOnEveryWayThroughThePacks) {
  Workbench bench;
  Main& main = bench.main;
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    for (const PackRecord& record : ReadPack("assets/packs/" + PackName(size))) {
      LayOutRecord(main, record);
      StartPuzzle(main);
      SolutionWalk walk(main, SolutionWalk::Telling::StepsWithFacts);
      for (Array<int> before = main.Board; walk.Next(); before = main.Board) {
        std::swap(before, main.Board);
        EXPECT_FALSE(walk.Facts().empty()) << walk.Hint().Rule->Name;
        for (const std::string& fact : walk.Facts())
          EXPECT_TRUE(FactJudge(main).IsTrue(fact)) << size << ' ' << walk.Hint().Rule->Name << ": " << fact;
        std::swap(before, main.Board);
      }
    }
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
