#include "hints/hints.h"

#include <array>
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
#include "hints/two_trees.h"
#include "tests/support/lay_record.h"
#include "tests/support/packs.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"

namespace bivouac {
namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
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

std::string SoundsOf(const ScriptedDesktop& desktop) {
  std::string text;
  for (const int sound : desktop.Played) {
    if (!text.empty()) text += ',';
    text += std::to_string(sound);
  }
  return text;
}

std::string OrDash(const std::string& text) {
  return text.empty() ? "-" : text;
}

struct WorkedResult {
  int Size;
  std::vector<std::string> RowClues;
  std::vector<std::string> ColClues;
  std::string Directions;
  std::string Board;
  std::string Outcome;
  std::string Seconds;
  std::string Played;
  std::string Marks;
  std::string Text;
};

void Lay(Main& main, const WorkedResult& line) {
  main.BoardSize = line.Size;
  SizeLayout(main);
  for (int i = 0; i < line.Size; ++i) {
    main.RowCnt[i].Caption = line.RowClues.at(static_cast<std::size_t>(i));
    main.ColCnt[i].Caption = line.ColClues.at(static_cast<std::size_t>(i));
  }
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.Board[cell] = line.Board.at(static_cast<std::size_t>(cell)) - '0';
    if (line.Directions != "-") main.TentDir[cell] = line.Directions.at(static_cast<std::size_t>(cell)) - '0';
  }
  main.BoardLive = true;
}

/// What the hint did, in the columns of the table from the outcome on.
std::string Play(HintGame& game, const WorkedResult& line) {
  Main& main = game.main;
  game.desktop.Answers = {BoxAnswer::No, BoxAnswer::Yes};
  try {
    if (line.Directions == "-") {
      HintBasic(main);
    } else {
      cmdHint_Click(main);
    }
  } catch (const RunTimeError& error) {
    return error.Number() == ErrorNumber::IndexOutsideArray ? "FAULT" : error.what();
  }
  const bool wrong = !game.desktop.Boxes.empty();
  const int shown = wrong ? 10 * (main.BlinkTop + 1) : 0;
  const bool find = main.BlinkTop != -1;
  EXPECT_EQ(main.BoardLive, !find);
  EXPECT_EQ(main.Timer2.Enabled, find);
  return std::string(wrong  ? "WRONG"
                     : find ? "FIND"
                            : "NONE") +
         '\t' + std::to_string(main.Elapsed - shown) + '\t' + OrDash(SoundsOf(game.desktop)) + '\t' +
         OrDash(Marks(main)) + '\t' + main.lblHint.Caption;
}

TEST(Hints, WorkedResults) {
  int number = 0;
  for (const std::vector<std::string>& columns : ReadTable("tests/data/hints.tsv")) {
    ++number;
    ASSERT_EQ(columns.size(), 10u) << "line " << number;
    const WorkedResult line{std::stoi(columns[0]),
                            Split(columns[1], ','),
                            Split(columns[2], ','),
                            columns[3],
                            columns[4],
                            columns[5],
                            columns[6],
                            columns[7],
                            columns[8],
                            columns[9]};
    HintGame game;
    Lay(game.main, line);
    std::string expected = line.Outcome;
    if (expected != "FAULT")
      expected += '\t' + line.Seconds + '\t' + line.Played + '\t' + line.Marks + '\t' + line.Text;
    EXPECT_EQ(Play(game, line), expected) << "line " << number;
    EXPECT_EQ(BoardDigits(game.main), line.Board) << "line " << number;
  }
  EXPECT_EQ(number, 529);
}

/// A whole puzzle played by hints alone.
class Walk {
 public:
  explicit Walk(const PackRecord& record) {
    LayRecord(game_.main, record);
    game_.main.PuzzleOver = false;
    game_.main.BoardLive = true;
    StartPuzzle(game_.main);
    Timer3_Timer(game_.main);
  }

  void Play() {
    while (!main_.PuzzleOver && !fault_ && !testing::Test::HasFatalFailure()) Step();
  }

  int Hints() const { return hints_; }

 private:
  void Step() {
    const std::string board = BoardDigits(main_);
    const int steps = main_.StepCount;
    const int top = main_.MoveLogTop;
    const int elapsed = main_.Elapsed;
    try {
      cmdHint_Click(main_);
    } catch (const RunTimeError& error) {
      ASSERT_EQ(error.Number(), ErrorNumber::IndexOutsideArray);
      fault_ = true;
    }
    ASSERT_EQ(BoardDigits(main_), board);
    ASSERT_EQ(main_.StepCount, steps);
    ASSERT_EQ(main_.MoveLogTop, top);
    if (fault_) return;
    if (main_.BlinkTop == -1) {
      ASSERT_EQ(main_.lblHint.Caption, "No more logical hints available...");
      ASSERT_EQ(main_.Elapsed, elapsed);
      lblHint_Click(main_);
      Reveal();
      return;
    }
    ++hints_;
    ASSERT_TRUE((std::set{5, 10, 15, 20, 25, 30, 40}.contains(main_.Elapsed - elapsed)));
    const int priced = main_.Elapsed;
    Timer3_Timer(main_);
    ASSERT_EQ(main_.Elapsed, priced);

    Timer2_Timer(main_);
    const std::string text = main_.lblHint.Caption;
    ASSERT_NO_FATAL_FAILURE(CollectFields(text));
    lblHint_Click(main_);
    // The claims of a wing, tile 4, are shown open whatever they are.
    for (int cell = 0; cell < main_.CellCount; ++cell) {
      const int picture = claims_.contains(cell) ? CELL_OPEN : main_.Board[cell];
      ASSERT_EQ(main_.Grid[cell].Picture, picture) << text;
      SetPicture(main_, cell, main_.Board[cell]);
    }
    for (const auto& [cell, code] : fields_) Decide(cell, code);
    if (fields_.empty()) Reveal();
  }

  /// The fields that the hint decides. Marks that only propose are left out; so is the shared field of two
  /// trees where the text bars one of them only, if it is wrong.
  void CollectFields(const std::string& text) {
    fields_.clear();
    claims_.clear();
    const auto says = [&](std::string_view part) { return text.find(part) != text.npos; };
    const bool tentsPropose = says("of tents in the row") || says("of tents in the column") ||
                              says("make it impossible for the blinking fields") ||
                              says("any other possibility for the other blinking tree");
    for (int i = 0; i <= main_.BlinkTop; ++i) {
      const int cell = main_.BlinkCell[i];
      const int tile = main_.BlinkTile[i];
      if (tile == 4) claims_.insert(cell);
      if (says("surrounding the blinking tent")) {
        AnyAround(main_, cell, [&](int side) { return Add(side, CELL_GRASS), false; });
      } else if (says("only one possible field")) {
        ForEachSide(main_, cell, [&](int side, int) { Add(side, CELL_TENT); });
      } else if (tile < 0) {
        const bool tent = main_.Solution[cell] == CELL_TENT;
        if (tile == -CELL_TENT && tentsPropose) continue;
        if (tent != (tile == -CELL_TENT)) {
          ASSERT_TRUE(i == 2 && says("One of the blinking trees")) << cell << ": " << text;
          continue;
        }
        Add(cell, -tile);
      }
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
    for (int cell = 0; cell < main_.CellCount; ++cell) {
      if (main_.Board[cell] != CELL_OPEN) continue;
      Decide(cell, main_.Solution[cell] == CELL_TENT ? CELL_TENT : CELL_GRASS);
      return;
    }
    FAIL() << "a full board that is not solved";
  }

  HintGame game_;
  Main& main_ = game_.main;
  std::map<int, int> fields_;
  std::set<int> claims_;
  int hints_ = 0;
  bool fault_ = false;
};

TEST(Hints, WholePuzzlesPlayedByHintsAlone) {
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    const std::string pack = "assets/packs/BVPack" + TwoDigits(size) + ".bvq";
    int hints = 0;
    for (const PackRecord& record : ReadPack(pack)) {
      Walk walk(record);
      walk.Play();
      if (HasFatalFailure()) return;
      hints += walk.Hints();
    }
    EXPECT_GT(hints, 0) << pack;
  }
}

// Small positions. Cells are written as two digits, row and column; a transformation turns a position about.
struct Spot {
  int Row;
  int Col;
};
using Turn = Spot (*)(Spot spot, int size);

Spot AsItIs(Spot spot, int) {
  return spot;
}
Spot Mirrored(Spot spot, int size) {
  return {spot.Row, size - 1 - spot.Col};
}
/// North goes east, west goes north.
Spot TurnedRight(Spot spot, int size) {
  return {spot.Col, size - 1 - spot.Row};
}

int CellOf(const std::string& digits, int size, Turn turn) {
  const Spot spot = turn({digits.at(0) - '0', digits.at(1) - '0'}, size);
  return spot.Row * size + spot.Col;
}

/// Grass, but for these trees and open fields. No line asks for a tent.
void LayCells(Main& main, int size, const char* trees, const char* open, Turn turn) {
  main.BoardSize = size;
  SizeLayout(main);
  for (int cell = 0; cell < main.CellCount; ++cell) main.Board[cell] = CELL_GRASS;
  for (const std::string& digits : Split(trees, ' ')) main.Board[CellOf(digits, size, turn)] = CELL_TREE;
  for (const std::string& digits : Split(open, ' ')) main.Board[CellOf(digits, size, turn)] = CELL_OPEN;
  for (int i = 0; i < size; ++i) main.RowCnt[i].Caption = main.ColCnt[i].Caption = "0";
  main.BoardLive = true;
}

/// "23:-1,21:-2" with the cells as flat indexes.
std::string FlatMarks(const std::string& marks, int size, Turn turn) {
  std::string text;
  for (const std::string& mark : Split(marks, ',')) {
    if (!text.empty()) text += ',';
    text += std::to_string(CellOf(mark, size, turn)) + mark.substr(2);
  }
  return text;
}

const std::string kOne =
    "One of the blinking trees can't place his tent on the blinking field between them without causing the "
    "other tree loosing the possibility to place his tent.";
const std::string kBoth =
    "Both blinking trees can't place their tent on the blinking field between them without causing the other "
    "tree loosing the possibility to place his tent.";
const std::string kNeither =
    "None of the blinking trees can place their tent on the blinking field between them without causing the "
    "other tree loosing the possibility to place his tent, therefore that field between those trees must be "
    "grass!";
const std::string kAll =
    "All possibilities for both blinking trees to place their tents, results in grass for the blinking open "
    "field";
const std::string kBetween =
    " As a result of that, the other two fields where the tent of that tree can be placed, the blinking "
    "field between those two other options must be grass!";
const std::string kEvery = " You can place a tent on every field with a blinking tent.";
const std::string kKnown = " As a result of that, we can know the position of the tents for both trees.";
const std::string kOnlyOption =
    " Since the field with the blinking tent is the only other option for that tree to place his tent, that "
    "field must be a tent!";
const std::string kTents = " Tents can be placed on the fields with a blinking tent!";
const std::string kContinue = " Click HERE to continue...";

struct TwoTreesCase {
  const char* Open;
  std::string Marks;  // After the two trees; empty if nothing is found.
  std::string Text;
};

void ExpectTwoTrees(const TwoTreesCase& position, const char* trees, Turn turn) {
  constexpr int kSize = 6;
  HintGame game;
  LayCells(game.main, kSize, trees, position.Open, turn);
  const bool found = TwoTreesAroundField(game.main);
  ASSERT_EQ(found, !position.Marks.empty() || !position.Text.empty()) << position.Open;
  if (!found) {
    EXPECT_EQ(game.main.BlinkTop, -1) << position.Open;
    return;
  }
  std::string marks = std::string(trees, 2) + ":3," + std::string(trees + 3, 2) + ":3";
  if (!position.Marks.empty()) marks += ',' + position.Marks;
  EXPECT_EQ(Marks(game.main), FlatMarks(marks, kSize, turn)) << position.Open;
  EXPECT_EQ(game.main.lblHint.Caption, position.Text + kContinue) << position.Open;
  EXPECT_EQ(game.main.Elapsed, 30);
  EXPECT_EQ(SoundsOf(game.desktop), "7");
}

// The trees stand at 22 and 33. Between them lie 23 and 32; 11 and 44 are the far corners.
TEST(Hints, TwoTreesThatTouchCornerToCornerLeaningEitherWay) {
  const std::vector<TwoTreesCase> cases = {
      // Two fields each.
      {"23 21 34", "23:-1,21:-2", kOne + kEvery},
      {"23 12 34", "23:-1,12:-2,34:-2", kBoth + kEvery},
      {"23 12 43", "23:-1,43:-2", kOne + kEvery},
      {"32 12 43", "32:-1,12:-2", kOne + kEvery},
      {"32 21 43", "32:-1,21:-2,43:-2", kBoth + kEvery},
      {"32 21 34", "32:-1,34:-2", kOne + kEvery},
      {"23 32", "23:-1,43:-2", kOne + kEvery},
      {"23 21 43", "", ""},
      {"32 12 34", "", ""},
      // Two and three.
      {"23 12 34 43 44", "23:-1,44:-1", kOne + kBetween},
      {"32 21 34 43 44", "32:-1,44:-1", kOne + kBetween},
      {"23 12 34 43", "", ""},
      {"23 21 34 43 44", "", ""},
      {"32 12 34 43 44", "", ""},
      {"23 32 34", "23:-1,32:-2,34:-2", kOne + kKnown + kEvery},
      {"23 32 43", "32:-1,23:-2,43:-2", kOne + kKnown + kEvery},
      // Two and four.
      {"23 32 34 43 44", "44:-1", kAll + "!"},
      {"23 32 34 43", "", ""},
      // Three and two.
      {"23 34 21 12 11", "23:-1,11:-1", kOne + kBetween},
      {"32 43 21 12 11", "32:-1,11:-1", kOne + kBetween},
      {"23 34 21 12", "", ""},
      {"23 43 21 12 11", "", ""},
      {"32 34 21 12 11", "", ""},
      {"23 32 21", "32:-1,21:-2,23:-2", kOne + kKnown + kEvery},
      {"23 32 12", "23:-1,12:-2,32:-2", kOne + kKnown + kEvery},
      // Three each.
      {"23 32 12 43 13 42", "13:-1,42:-1", kAll + "(s)!"},
      {"23 32 12 43 42", "42:-1", kAll + "(s)!"},
      {"23 32 12 43", "", ""},
      {"23 32 21 34 31 24", "31:-1,24:-1", kAll + "(s)!"},
      {"23 32 21 34 24", "24:-1", kAll + "(s)!"},
      {"23 32 21 34", "", ""},
      {"23 32 12 34", "23:-1", kAll + "(s)!"},
      {"23 32 21 43", "32:-1", kAll + "(s)!"},
      {"23 21 12 34 43 13 42", "", ""},
      // Four and two; four and more.
      {"23 32 21 12 11", "11:-1", kAll + "!"},
      {"23 32 21 12", "", ""},
      {"23 32 21 12 34 11 44", "", ""},
      {"23 32 21 34 43 11 44", "", ""},
  };
  for (const TwoTreesCase& position : cases) {
    ExpectTwoTrees(position, "22 33", AsItIs);
    ExpectTwoTrees(position, "22 33", Mirrored);
  }
}

// The trees stand at 22 and 24 with the field 23 between them.
TEST(Hints, TwoTreesInOneRowOrColumn) {
  const std::vector<TwoTreesCase> cases = {
      {"23", "23:-1", kNeither},
      {"23 12 34", "23:-1,12:-2,34:-2", kNeither + kTents},
      {"23 12 32 14", "23:-1,14:-2", kNeither + kTents},
      {"23 32 14 34", "23:-1,32:-2", kNeither + kTents},
      {"23 12 32 14 34", "23:-1", kNeither},
      {"23 21 14", "23:-1,21:-2", kOne + kOnlyOption},
      {"23 21 12 14 11", "23:-1,11:-1", kOne + kBetween},
      {"23 21 32 14 31", "23:-1,31:-1", kOne + kBetween},
      {"23 21 12 14", "", ""},
      {"23 12 25", "23:-1,25:-2", kOne + kOnlyOption},
      {"23 12 25 14 15", "23:-1,15:-1", kOne + kBetween},
      {"23 12 25 34 35", "23:-1,35:-1", kOne + kBetween},
      {"23 12 25 34 15", "", ""},
      {"23 21 25", "", ""},
      {"23 12 32 21 11 31 14", "", ""},
  };
  for (const TwoTreesCase& position : cases) {
    ExpectTwoTrees(position, "22 24", AsItIs);
    ExpectTwoTrees(position, "22 24", TurnedRight);
  }
}

const std::string kWing =
    "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. ";
const std::string kForcesGrass =
    kWing +
    "Therefore any other possibility for the other blinking tree to place his tent forces the blinking "
    "open field to be grass. Click HERE to continue!";
const std::string kOneLeft =
    kWing +
    "This leaves only one possibility for the other blinking tree to place his tent. Click HERE to continue!";

// What the worked results leave out: edges of the board, and rows that do not mirror their neighbours. The
// first three trees are the wing, its centre first.
TEST(Hints, WingsAtTheEdgeAndOutOfTheMirror) {
  struct Case {
    const char* Name;
    const char* Trees;
    const char* Open;
    std::string Marks;  // The last ones; "fault" for a read beyond the board.
    std::string Text;
  };
  const std::vector<Case> cases = {
      {"W1, formation 1, last column", "46 36 45 27", "26 35 37 44 17", "27:3,17:-2", kOneLeft},
      {"W1, formation 1, first row", "23 13 22 04", "03 12 14 21 05", "04:3,05:-2", kOneLeft},
      {"W1, formation 2, first column", "41 31 42 20", "21 30 32 43 10", "20:3,10:-2", kOneLeft},
      {"W1, too few fields at A", "46 36 45 27", "35 37 44 17", "", ""},
      {"W1, the corner is closed, which is no fallback", "43 33 42 24", "23 32 34 41 14 25", "", ""},
      {"W2, formation 1, last row", "63 53 62 74", "52 54 61 75", "74:3,75:-2", kOneLeft},
      {"W2, formation 1, last column", "36 26 35 47", "25 16 34 57", "47:3,57:-2", kOneLeft},
      {"W2, formation 2, first column", "31 21 32 40", "22 11 33 50", "40:3,50:-2", kOneLeft},
      {"W2, formation 4, first row: tests the south edge", "13 14 23 02", "04 24 22 01", "fault", ""},
      {"W2, formation 4, first column", "31 32 41 20", "42 33 40 10", "20:3,10:-2", kOneLeft},
      {"W3, formation 3, last column: tests the west edge", "36 35 46 57", "45 34 47 56 67 60 70",
       "57:3,67:-2,60:-2,70:-1", kForcesGrass},
      {"W3, formation 4, last row", "53 54 63 72", "62 64 73 55 71", "72:3,71:-2", kOneLeft},
      {"W4, formation 4: never", "33 34 43 45 54", "24 35 44 42 53", "", ""},
      {"W5, formation 3", "33 32 43 52", "42 44 53 31 62 51 61", "52:3,62:-2,51:-2,61:-1", kForcesGrass},
      {"W5, formation 3, A counts a field of the row above", "31 30 41 50", "40 42 51 27 60", "50:3,60:-2",
       kOneLeft},
      {"W5, formation 4, last column", "36 37 46 57", "45 47 56 27 67", "57:3,67:-2", kOneLeft},
      {"W5, formation 4, all claims", "33 34 43 54", "24 35 44 42 53 64 55 65",
       "33:7,34:7,43:7,35:4,44:4,53:4,23:4,24:4,32:4,42:4,54:3,64:-2,55:-2,65:-1", kForcesGrass},
      {"W6, formation 1, first row", "23 13 22 02", "03 12 14 21 01", "02:3,01:-2", kOneLeft},
      {"W6, formation 2, first row", "23 13 24 04", "03 12 14 25 05", "04:3,05:-2", kOneLeft},
      {"W6, formation 3, first column: no test of it", "32 31 42 40", "21 30 41 43 50 37 47",
       "40:3,50:-2,37:-2,47:-1", kForcesGrass},
      {"W6, formation 2, mark beside the tree of W2", "33 23 34 14 42", "13 22 24 35 04 15 05",
       "14:3,04:-2,41:-2,05:-1", kForcesGrass},
      {"W6, formation 2, mark beside the tree of W1", "33 23 34 14 12", "13 22 24 35 04 15 05",
       "14:3,04:-2,11:-2,05:-1", kForcesGrass},
  };
  constexpr int kSize = 8;
  for (const Case& position : cases) {
    HintGame game;
    LayCells(game.main, kSize, position.Trees, position.Open, AsItIs);
    if (position.Marks == "fault") {
      EXPECT_THROW(HintPatterns(game.main), RunTimeError) << position.Name;
      continue;
    }
    HintPatterns(game.main);
    const std::string& text = game.main.lblHint.Caption;
    if (position.Marks.empty()) {
      EXPECT_EQ(text.find("Wing"), text.npos) << position.Name;
      continue;
    }
    EXPECT_EQ(text, position.Text) << position.Name;
    const std::string expected = FlatMarks(position.Marks, kSize, AsItIs);
    const std::string marks = Marks(game.main);
    EXPECT_EQ(marks.substr(marks.size() - std::min(marks.size(), expected.size())), expected)
        << position.Name << ": " << marks;
    EXPECT_EQ(game.main.Elapsed, 40);
    EXPECT_EQ(SoundsOf(game.desktop), "8");
  }
}

// A hint around which the game goes on. Two trees, both with their tents to the east.
constexpr char kSmallGame[] = R"(
    >...gg
    gggggg
    g>..gg
    gggggg
    gggggg
    gggggg)";

class HintFrame : public testing::Test {
 protected:
  HintFrame() {
    LayBoard(main, kSmallGame);
    ReadClock(main);
    main.ClockStart = main.ClockNow;
  }
  /// One click makes grass, two make a tent.
  void Click(int cell, int times) {
    for (int i = 0; i < times; ++i) Grid_Click(main, cell);
  }
  void MakeThreeFieldsWrong() {
    Click(2, 1);
    Click(1, 1);   // Wrong: grass on a tent of the solution.
    Click(14, 2);  // Correct.
    Click(3, 2);   // Wrong.
    Click(15, 2);  // Wrong.
    desktop.Played.clear();
  }

  HintGame game;
  Main& main = game.main;
  ScriptedDesktop& desktop = game.desktop;
};

TEST_F(HintFrame, WrongFieldsAreUndoneWithTheCorrectMovesAfterThem) {
  MakeThreeFieldsWrong();
  desktop.Answers = {BoxAnswer::Yes};
  desktop.WhileOpen = [&](const MessageBox&) {
    EXPECT_FALSE(main.BoardLive || main.cmdHint.Enabled || main.cmdPause.Enabled);
    EXPECT_EQ(main.Elapsed, 10);
    EXPECT_EQ(SoundsOf(desktop), "8");
  };
  cmdHint_Click(main);
  ASSERT_EQ(desktop.Boxes.size(), 1u);
  EXPECT_EQ(desktop.Boxes[0].Title, "Hint Report");
  EXPECT_EQ(desktop.Boxes[0].Text,
            "One or more fields are not correct!\nUndo untill all incorrect solved fields are restored?");
  EXPECT_EQ(desktop.Boxes[0].Symbol, BoxSymbol::Warning);
  EXPECT_EQ(desktop.Boxes[0].Buttons, BoxButtons::YesNo);
  EXPECT_EQ(main.StepCount, 1);
  EXPECT_EQ(main.MoveLogTop, 8);
  EXPECT_EQ(main.Board[2], CELL_GRASS);
  EXPECT_EQ(main.Board[1], CELL_OPEN);
  EXPECT_EQ(main.Board[14], CELL_OPEN);
  EXPECT_EQ(main.Elapsed, 10);
  EXPECT_EQ(SoundsOf(desktop), "8");
  EXPECT_TRUE(main.BoardLive && main.cmdHint.Enabled && main.cmdPause.Enabled && main.cmdRedo.Enabled);
  EXPECT_FALSE(main.Timer2.Enabled);
}

TEST_F(HintFrame, WrongFieldsAreShownOrNotAsThePlayerLikes) {
  MakeThreeFieldsWrong();
  const std::string board = BoardDigits(main);
  desktop.Answers = {BoxAnswer::No, BoxAnswer::No};
  cmdHint_Click(main);
  EXPECT_EQ(main.Elapsed, 10);
  EXPECT_TRUE(main.BoardLive && main.cmdHint.Enabled && main.cmdPause.Enabled);
  EXPECT_FALSE(main.Timer2.Enabled);

  desktop.Boxes.clear();
  desktop.Answers = {BoxAnswer::No, BoxAnswer::Yes};
  cmdHint_Click(main);
  ASSERT_EQ(desktop.Boxes.size(), 2u);
  EXPECT_EQ(desktop.Boxes[1].Title, "Hint Report");
  EXPECT_EQ(desktop.Boxes[1].Text, "Do you want to see the incorrect solved fields?");
  EXPECT_EQ(desktop.Boxes[1].Symbol, BoxSymbol::Question);
  EXPECT_EQ(main.Elapsed, 10 + 10 + 30);
  EXPECT_EQ(Marks(main), "1:1,3:2,15:2");
  EXPECT_EQ(main.lblHint.Caption, "The blinking fields ar not correct! Click HERE to continue...");
  EXPECT_TRUE(main.Timer2.Enabled);
  EXPECT_FALSE(main.BoardLive || main.cmdHint.Enabled || main.cmdPause.Enabled);
  EXPECT_EQ(BoardDigits(main), board);
  lblHint_Click(main);
  EXPECT_EQ(main.lblHint.Caption, "");
  EXPECT_TRUE(main.BoardLive && main.cmdHint.Enabled && main.cmdPause.Enabled);
  EXPECT_EQ(main.StepCount, 8);
}

TEST_F(HintFrame, WrongFieldsThatNoMoveMadeEndInAnError) {
  main.Board[1] = CELL_GRASS;
  desktop.Answers = {BoxAnswer::Yes};
  EXPECT_THROW(cmdHint_Click(main), RunTimeError);
}

TEST_F(HintFrame, ASearchThatLeavesAnArrayEndsInAnErrorWithThePauseShut) {
  for (int cell = 0; cell < main.CellCount; ++cell) main.Board[cell] = CELL_GRASS;
  main.RowCnt[0].Caption = "7";
  EXPECT_THROW(cmdHint_Click(main), RunTimeError);
  EXPECT_FALSE(main.cmdPause.Enabled);
  EXPECT_TRUE(main.BoardLive);
}

TEST_F(HintFrame, AHintOnShowHoldsTheBoardButNotTheClock) {
  desktop.Now = "23:59:50";
  StartPuzzle(main);
  Timer3_Timer(main);
  cmdHint_Click(main);
  ASSERT_EQ(main.lblHint.Caption,
            "The blinking tree has only one possible field for a tent! Click HERE to continue...");
  EXPECT_EQ(Marks(main), "0:3");
  EXPECT_EQ(main.Elapsed, 15);
  EXPECT_FALSE(main.cmdHint.Enabled || main.cmdPause.Enabled);
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
  EXPECT_EQ(main.BlinkTop, 0);
  Click(1, 1);
  EXPECT_EQ(main.StepCount, 1);
}

TEST_F(HintFrame, UndoRestartAndSolutionLeaveAHintOnShow) {
  Click(3, 1);
  desktop.Played.clear();
  cmdHint_Click(main);
  ASSERT_FALSE(main.BoardLive);
  const std::string sounds = SoundsOf(desktop);
  cmdUndo_Click(main);
  EXPECT_EQ(SoundsOf(desktop), sounds);
  EXPECT_TRUE(main.cmdUndo.Enabled);  // Not refreshed: at step 0 another undo ends in an error.
  EXPECT_THROW(cmdUndo_Click(main), RunTimeError);
  StartPuzzle(main);
  EXPECT_TRUE(main.Timer2.Enabled);
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
  EXPECT_EQ(SoundsOf(desktop), "");
  EXPECT_TRUE(main.BoardLive && main.cmdHint.Enabled && main.cmdPause.Enabled);
  EXPECT_FALSE(main.Timer2.Enabled);
  main.cmdHint.Enabled = false;
  lblHint_Click(main);
  EXPECT_EQ(main.lblHint.Caption, "");
  EXPECT_FALSE(main.cmdHint.Enabled);  // Nothing else happens.

  main.lblHint.Caption = RulesText();
  lblHint_Click(main);
  EXPECT_EQ(main.lblHint.Caption, RulesText());
  EXPECT_TRUE(main.cmdHint.Enabled);
}

}  // namespace
}  // namespace bivouac
