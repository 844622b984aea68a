#include "rating/rating.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>

#include "game/board.h"
#include "game/layout.h"
#include "rating/rater.h"
#include "tests/support/packs.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"
#include "tools/workbench.h"

namespace bivouac {
namespace {

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
    LayOutRecord(main, record);
    int level = 0;
    RatingTrace trace;
    RatePuzzle(main, level, trace);
    EXPECT_EQ(std::to_string(level), row[3]);
    EXPECT_EQ(Exact(main.Difficulty), row[4]);
    EXPECT_EQ(BoardDigits(main), row[5]);
    EXPECT_EQ(PassNames(trace), row.size() > 6 ? row[6] : "");
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

Outcome Rate(Main& main) {
  main.BlinkTop = 7;
  RatingTrace trace;
  int level = 0;
  RatePuzzle(main, level, trace);
  return {level, Exact(main.Difficulty), BoardDigits(main), main.BlinkTop, PassNames(trace)};
}

/// One number over many outcomes (FNV-1a), so that an unmeant change shows.
class Signature {
 public:
  void Add(const Outcome& outcome) {
    std::ostringstream text;
    text << outcome;
    for (const char c : text.str()) value_ = (value_ ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  }
  std::uint64_t Value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

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
Outcome TryPass(Main& main, int pass) {
  const Array<int> position = main.Board;
  Rater rater(main);
  for (int cell = 0; cell < main.CellCount; ++cell) rater.Set(cell, position[cell]);
  return Attempt(main, [&] { return RunPass(rater, PassTable()[static_cast<std::size_t>(pass)]); });
}

int PassNumber(std::string_view name) {
  const auto table = PassTable();
  const auto* row = std::find_if(&*table.begin(), &*table.begin() + table.size(),
                                 [&](const Pass& it) { return it.Name == name; });
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

// The two signatures were taken when a plain transcription of the rules, which rescans the board cell by
// cell, gave the same outcomes on 300,000 such positions, each with every pass, and on 120,000 whole ratings.
TEST_F(RatingTest, EveryPassKeepsItsSignatureOnRandomPositions) {
  RandomBoards boards(20261122);
  Signature signature;
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
      const Outcome outcome = TryPass(main, pass);
      signature.Add(outcome);
      if (outcome.Result == 1) ++finds[PassTable()[static_cast<std::size_t>(pass)].Name];
      if (outcome.Result < 0) ++faults;
    }
  }
  EXPECT_EQ(signature.Value(), 6750795185566465377U);
  // It means something: each pass found what it looks for, and some ended in an error.
  for (const Pass& pass : PassTable()) EXPECT_GT(finds[pass.Name], 20) << pass.Name;
  EXPECT_GT(faults, 100);
}

TEST_F(RatingTest, RatingsOfRandomRecordsKeepTheirSignatureAndAgreeWithASecondOne) {
  RandomBoards boards(7);
  Signature signature;
  for (int round = 0; round < kSizes * 20; ++round) {
    main.BoardSize = kMinSize + round % kSizes;
    SizeLayout(main);
    boards.LayRecord(main);
    const Outcome outcome = Rate(main);
    ASSERT_EQ(outcome, Rate(main)) << "a second rating of size " << main.BoardSize;
    signature.Add(outcome);
  }
  EXPECT_EQ(signature.Value(), 17549518038390619006U);
}

// Hand-made positions. Fields that play no part are grass.

constexpr std::string_view kNothing = "nothing";
constexpr std::string_view kFault = "an index outside the board";

/// Boards are written row after row, a stroke between them, a row's clue behind it unless it is 0. The rows
/// that are left out at the end are grass.
struct PassCase {
  std::string_view Name;
  std::string_view Pass;
  std::string_view Before;
  std::string_view After;  ///< kNothing, or the board; kFault, if that ends the pass and nothing was changed.
};

std::string Picture(std::string_view rows) {
  std::istringstream stream{std::string(rows)};
  std::string text;
  std::size_t size = 0;
  std::size_t count = 0;
  const auto add = [&](const std::string& row) {
    text += row + (row.find(' ') == std::string::npos ? " 0\n" : "\n");
    ++count;
  };
  for (std::string row; std::getline(stream, row, '/');) {
    if (size == 0) size = row.find(' ') == std::string::npos ? row.size() : row.find(' ');
    add(row);
  }
  while (count < size) add(std::string(size, 'g'));
  for (std::size_t i = 0; i < size; ++i) text += "0 ";
  return text;
}

/// The board after a pass, or what happened instead.
std::string After(Main& main, std::string_view pass, std::string_view before) {
  LayBoard(main, before);
  for (int i = 0; i < main.BoardSize; ++i) {
    main.global.PuzzleRec.RowCounts[i] = static_cast<std::int16_t>(RowClue(main, i));
    main.global.PuzzleRec.ColCounts[i] = static_cast<std::int16_t>(ColClue(main, i));
  }
  const std::string untouched = DrawBoard(main);
  const Outcome outcome = TryPass(main, PassNumber(pass));
  const bool changed = DrawBoard(main) != untouched;
  if (outcome.Result == -static_cast<int>(ErrorNumber::IndexOutsideArray) && !changed)
    return std::string(kFault);
  if (outcome.Result < 0) return DrawBoard(main) + "then an error";
  if (outcome.Result == 0) return changed ? "changed, but says no" : std::string(kNothing);
  return DrawBoard(main);
}

std::string Expected(std::string_view after) {
  return after == kNothing || after == kFault ? std::string(after) : Tidy(Picture(after));
}

constexpr auto kPassCases = std::to_array<PassCase>({
    {"a tree that has a tent is no lone option", "PassLoneOption", "tT.ggg", kNothing},
    {"a field that only a served tree touches", "PassServedNeighbour", "tT.ggg", "tTgggg"},
    {"a tent that two trees touch proves nothing", "PassServedNeighbour", "tT.ggg/Tggggg", kNothing},
    {"a field that another tree touches stays", "PassServedNeighbour", "tT.Tgg", kNothing},
    {"runs of three and one hold three tents", "PassRowRuns", "...g.g 3/......", "tgtgtg"},
    {"a pair that must hold one tent blocks both rows beside it", "PassRowRuns", "....../g..ggg 1/g.gggg",
     ".gg.../g..ggg"},
    {"a run that ends at the edge is closed", "PassRowRuns", "ggggT. 1", "ggggTt"},
    {"the corner between two options", "PassCornerField", "gggggg/gg..gg/ggT.gg", "gggggg/gg.ggg/ggT.gg"},
    {"opposite options have no corner", "PassCornerField", "gggggg/gg.ggg/ggTggg/gg.ggg", kNothing},
    {"two claimants that share a field count twice", "PassClaimedRow", "gggggg/.T.T.. 2", "gggggg/.T.T.g"},
    {"a tree in the first column never claims", "PassClaimedRow", "gggggg/T...gg 1", kNothing},
    {"a tree that is open across is pinched all the same", "PassPinchedRow", "gg.ggg/gT.Tgg",
     "gg.ggg/gTgTgg"},
    {"no field of the outer ring is pinched", "PassPinchedCorner", "g.Tggg/gTgggg", kNothing},
    {"two fields that a diagonal pair shares", "PassPinchedCorner", "gggggg/ggTggg/gT.ggg",
     "gggggg/ggTggg/gTgggg"},
    {"three trees share no field", "PassSharedField", ".T.T../..T.../......", kNothing},
    {"in a line, the tree with a far option takes it", "PassSharedField", "gggggg/.T.Tgg", "gggggg/tT.Tgg"},
    {"in a line, with a side option, the corner goes", "PassSharedField", "..gggg/.T.Tgg", "g.gggg/.T.Tgg"},
    {"in a line, both far options leave it open", "PassSharedField", "gggggg/.T.T.g", kNothing},
    {"diagonal, far and far", "PassSharedField", "gggggg/gggggg/.T.ggg/ggTggg/gg.ggg", kNothing},
    {"diagonal, near and far: the other takes its far field", "PassSharedField",
     "gggggg/g.gggg/gT.ggg/ggTggg/gg.ggg", "gggggg/g.gggg/gT.ggg/ggTggg/ggtggg"},
    {"diagonal, far and near", "PassSharedField", "gggggg/gggggg/.T.ggg/ggT.gg",
     "gggggg/gggggg/tT.ggg/ggT.gg"},
    {"diagonal, near and near: both", "PassSharedField", "gggggg/g.gggg/gT.ggg/ggT.gg",
     "gggggg/gtgggg/gTgggg/ggTtgg"},
    {"two and two take the fields above and below T2, whatever stands there", "PassSharedField",
     "gggggg/gggggg/gT.ggg/g.Tggg", "gggggg/gggggg/gTtggg/ggTggg/ggtggg"},
    {"two and two leave no tree standing below", "PassSharedField", "gggggg/gggggg/gT.ggg/g.Tggg/ggTggg",
     "gggggg/gggggg/gTtggg/ggTggg/ggtggg"},
    {"four options of T2 down-left clear fields around T1", "PassSharedField",
     "gggggg/gg.ggg/gg.Tgg/g.T..g/gg.ggg", "gggggg/gggggg/gg.Tgg/g.T.gg/gg.ggg"},
    {"they wrap past the right edge", "PassSharedField", "gggggg/gggggg/gggg.T/ggg.T./.ggg.g",
     "gggggg/gggggg/gggg.T/ggg.T./gggg.g"},
    {"and are an error above the board", "PassSharedField", "gg.Tgg/g.T.gg/gg.ggg", kFault},
    {"the last tent of a row cannot stand between two trees without tents", "PassLastTentRow",
     ".ggggg/gT.T.g 1", ".ggggg/gTgT.g"},
    {"odd places of two runs lie around one gap", "PassSpareRunRow", "......./...g... 3/.......",
     ".g.g.g./...g.../.g.g.g."},
    {"a chain with one tree too many gets its tent", "PassCluster", "TtT.gg", "TtTtgg"},
    {"a tent that closes a ring counts twice", "PassCluster", "tTtggg/TgTggg/tTtggg/ggTggg/gg.ggg",
     "tTtggg/TgTggg/tTtggg/ggTggg"},
    {"north takes a field again that an earlier cluster holds", "PassCluster",
     "gggggg/gTgggg/TtgtTg/gTgTgg/TtT.gg", "gggggg/gTgggg/TtgtTg/gTgTgg/TtTtgg"},
    {"east does not", "PassCluster", "gggggg/gTgggg/Ttgggg/gTgggT/TtT.Tt", kNothing},
    {"the field beyond a served tree, but for an outside tree", "PassCluster", "tT.Tgg", kNothing},
    {"twins clear the row beyond", "PassTwinRow", "..gggg/TTgggg/..gggg/...ggg",
     "..gggg/TTgggg/..gggg/gg.ggg"},
    {"one field tells the two ways apart", "PassTwinRow", "...ggg/TTgggg/..gggg", ".gtggg/TTgggg/..gggg"},
    {"nothing tells them apart", "PassTwinRow", "..gggg/TTgggg/..gggg", "tggggg/TTgggg/gtgggg"},
    {"three twins are no pair", "PassTwinRow", "...ggg/TTTggg/...ggg", kNothing},
    {"W2 asks nothing of the counts", "PassWing", "gggggg/g.T.gg/gTTggg/g.gT.g/ggg..g",
     "gggggg/g.T.gg/gTTggg/g.gT.g/ggg.gg"},
    {"W2 with its tree in the last row leaves one side", "PassWing",
     "gggggg/gggggg/gggggg/g.T.gg/gTTggg/g.gT.g", "gggggg/gggggg/gggggg/g.T.gg/gTTggg/g.gTtg"},
    {"a wing tree in column 0 sees the end of the row before as grass", "PassWing",
     "gggggg/.T..gg/TTgggg/.ggggg", "gggggg/tT.ggg/TTgggg/.ggggg"},
    {"as an open field", "PassWing", "gggggg/.T..g./TTgggg/.ggggg", "gggggg/.T.gg./TTgggg/.ggggg"},
    {"as a tree", "PassWing", "gggggg/.T..gT/TTgggg/.ggggg", kNothing},
    {"as a tent", "PassWing", "gggggg/.T..gt/TTgggg/.ggggg", kNothing},
    {"a wing below the first row looks above the board", "PassWing", "g.T.gg/gTTggg/g.gggg", kFault},
    {"a row that lacks a tent takes it from the row below", "PassTreeSupplyRow", "g.gggg 1/gT.ggg",
     "gtgggg/gTgggg"},
    {"more trees in the next row than tents lack", "PassTreeSupplyRow", "g.gggg 1/gT.Tgg 1", kNothing},
    {"a row with a tree too many gives its tent down", "PassTreeSupplyRow", "gTgggg/g.gggg 1",
     "gTgggg/gtgggg"},
    {"tents that lack at the last row", "PassTreeSupplyRow", "gggggg/gggggg/gggggg/gggggg/gggggg/gggggg 1",
     kFault},
    {"a tree too many at the last row", "PassTreeSupplyRow", "gggggg/gggggg/gggggg/gggggg/gggggg/Tggggg",
     kFault},
    {"trees too many, but not as many as the last row has", "PassTreeSupplyRow",
     "gggggg/gggggg/gggggg/gggggg/Tggggg/ggTTgg", kNothing},
});

TEST_F(RatingTest, PassesDecideHandMadePositions) {
  for (const PassCase& it : kPassCases) {
    EXPECT_EQ(After(main, it.Pass, Picture(it.Before)), Expected(it.After)) << it.Name;
  }
}

TEST_F(RatingTest, APassThatFailsHalfwayLeavesWhatItWrote) {
  // The second of the two tents lies below the board.
  EXPECT_EQ(After(main, "PassSharedField", Picture("gggggg/gggggg/gggggg/gggggg/gT.ggg/g.Tggg")),
            Tidy(Picture("gggggg/gggggg/gggggg/gggggg/gTtggg/g.Tggg")) + "then an error");
}

enum class Flip { None, Columns, Rows, Both };

std::string Flipped(std::string_view picture, Flip flip) {
  std::vector<std::string> rows;
  const std::string tidy = Tidy(picture);
  for (std::size_t at = 0; at < tidy.size(); at = tidy.find('\n', at) + 1) {
    rows.push_back(tidy.substr(at, tidy.find('\n', at) - at));
    if (flip == Flip::Columns || flip == Flip::Both) std::reverse(rows.back().begin(), rows.back().end());
  }
  if (flip == Flip::Rows || flip == Flip::Both) std::reverse(rows.begin(), rows.end());
  std::string text;
  for (const std::string& row : rows) text += row + '\n';
  return text;
}

TEST_F(RatingTest, TwoTreesBesideAWingGetTheirTentsInAllFormations) {
  const std::string_view before = R"(
      gggggggg
      ggg.gggg
      gggT.ggg
      g.T.T.gg
      gg.TTggg
      ggg.gggg
      gggggggg
      gggggggg)";
  const std::string_view after = R"(
      gggggggg
      gggtgggg
      gggTgggg
      gtT.T.gg
      gggTTggg
      ggg.gggg
      gggggggg
      gggggggg)";
  for (const Flip flip : {Flip::None, Flip::Columns, Flip::Rows, Flip::Both}) {
    EXPECT_EQ(After(main, "PassWing", Flipped(before, flip)), Flipped(after, flip));
  }
}

/// The first record of the worked results whose rating runs this pass with success.
PackRecord RecordThatNeeds(std::string_view pass) {
  for (const auto& row : ReadTable("tests/data/rating.tsv")) {
    std::istringstream passes(row.size() > 6 ? row[6] : std::string());
    for (std::string name; row[3] != "-1" && std::getline(passes, name, ',');) {
      if (name != pass) continue;
      return ReadPack("tests/data/rating/" + row[0]).at(static_cast<std::size_t>(std::stoi(row[1]) - 1));
    }
  }
  throw std::logic_error("no record needs the pass");
}

TEST_F(RatingTest, SpareRunsReadTheLabelsEvenIfTheyAreOfAnotherPuzzle) {
  LayOutRecord(main, RecordThatNeeds("PassSpareRunRow"));
  const Outcome own = Rate(main);
  for (int i = 0; i < main.BoardSize; ++i) main.RowCnt[i].Caption.assign(1, '0');
  const Outcome other = Rate(main);
  EXPECT_NE(own.Passes.find("PassSpareRunRow"), std::string::npos);
  EXPECT_EQ(other.Passes.find("PassSpareRunRow"), std::string::npos);
}

TEST_F(RatingTest, ALabelThatIsNoNumberEndsTheRatingUnpaid) {
  LayOutRecord(main, RecordThatNeeds("PassSpareRunRow"));
  main.RowCnt[0].Caption.clear();
  const Outcome outcome = Rate(main);
  EXPECT_EQ(outcome.Result, -1);
  ASSERT_NE(outcome.Passes.find(",!PassSpareRunRow"), std::string::npos) << outcome.Passes;
  // What was paid is what the passes before it cost.
  RatingTrace trace;
  int level = 0;
  RatePuzzle(main, level, trace);
  float paid = 0;
  for (const int pass : trace.Passes) {
    paid += 1.0F / static_cast<float>(2 * main.BoardSize) *
            static_cast<float>(PassTable()[static_cast<std::size_t>(pass)].Tier);
  }
  EXPECT_NEAR(main.Difficulty, paid, 1e-4);
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
