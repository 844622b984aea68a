#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include "packs/alike.h"
#include "packs/faults.h"
#include "packs/pack_access.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "tests/support/files.h"
#include "tests/support/looks.h"
#include "tools/commands.h"
#include "workbench/position.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

const std::string kData = BIVOUAC_SOURCE_DIR "/tests/data/";

/// The packs of a folder in the order of their names.
std::vector<std::string> PacksIn(const std::string& folder) {
  std::vector<std::string> packs;
  for (const auto& [name, bytes] : FilesIn(folder)) packs.push_back(folder + "/" + name);
  return packs;
}

/// Commands on an empty folder, with what they write.
class Tool : public testing::Test {
 protected:
  std::string PathOf(const std::string& name) const { return folder_ / name; }

  ExitStatus Make(const std::string& name, MakeOptions options) {
    options.Pack = PathOf(name);
    return MakePack(options, stop, terminal);
  }
  /// What a command wrote since the last call.
  std::string Output() {
    std::string text = out.str();
    out.str("");
    return text;
  }

  std::atomic<bool> stop = false;
  std::istringstream in;
  std::ostringstream out, err;
  Terminal terminal{.In = in, .Out = out, .Err = err};

 private:
  TempFolder folder_;
};

void ReplacePack(const std::string& path, const std::vector<PackRecord>& records) {
  PackRewrite(path, [&](const std::vector<PackRecord>&) { return records; }).Commit();
}

template <class Run>
std::string InputErrorOf(Run run) {
  try {
    run();
  } catch (const InputError& error) {
    return error.what();
  }
  return "no error";
}

// The worked results of the rating, the proof and the hints: held here, by the program that people run, and
// nowhere else.
TEST_F(Tool, TablesEqualTheWorkedResults) {
  RatePacks({.Packs = PacksIn(kData + "rating"), .Output = Format::Table}, terminal);
  ExpectSameLines(Output(), BytesOf(kData + "rating.tsv"));
  ProvePacks(PacksIn(kData + "layouts"), Format::Table, terminal);
  ExpectSameLines(Output(), BytesOf(kData + "proof.tsv"));

  std::string expected;
  const auto hints = ReadTable("tests/data/hints.tsv");
  EXPECT_EQ(hints.size(), 529U);
  for (const std::vector<std::string>& row : hints) {
    for (std::size_t column = 5; column < row.size(); ++column)
      expected += row[column] + (column == 9 ? "\n" : "\t");
  }
  in.str(BytesOf(kData + "hints.tsv"));
  GiveHintsForInput(terminal);
  ExpectSameLines(Output(), expected);
}

TEST_F(Tool, TheSeedDecidesWhateverTheJobs) {
  MakeOptions options{.Request = {.Size = 7, .Seed = 11, .Jobs = 1}, .Count = 150};
  EXPECT_EQ(Make("one", options), ExitStatus::Done);
  options.Request.Jobs = 5;
  EXPECT_EQ(Make("five", options), ExitStatus::Done);
  EXPECT_TRUE(BytesOf(PathOf("one")) == BytesOf(PathOf("five")));
  EXPECT_EQ(ReadSoundPack(PathOf("one")).size(), 150U);
  options.Request.Seed = 12;
  Make("other", options);
  EXPECT_FALSE(BytesOf(PathOf("one")) == BytesOf(PathOf("other")));

  const std::string before = BytesOf(PathOf("one"));
  options.Count = 3;
  options.LowestLevel = 3;
  options.HighestLevel = 4;
  Make("one", options);
  EXPECT_TRUE(BytesOf(PathOf("one")).substr(0, before.size()) == before);
  const std::vector<PackRecord> records = ReadSoundPack(PathOf("one"));
  ASSERT_EQ(records.size(), 153U);
  for (std::size_t i = 150; i < 153; ++i) {
    EXPECT_TRUE(LevelOf(records[i].LevelSize) == 3 || LevelOf(records[i].LevelSize) == 4);
  }
}

TEST_F(Tool, MakingEndsWithWholeRecordsOrChangesNothing) {
  stop = true;
  EXPECT_EQ(Make("none", {.Count = 5}), ExitStatus::Interrupted);
  EXPECT_FALSE(fs::exists(PathOf("none")));
  stop = false;

  Make("six", {.Request = {.Size = 6, .Seed = 1}, .Count = 2});
  const std::string six = BytesOf(PathOf("six"));
  EXPECT_EQ(InputErrorOf([&] { Make("six", {.Request = {.Size = 7}}); }),
            PathOf("six") + ": record 1 has the size 6, not 7");
  std::ofstream(PathOf("six"), std::ios::app) << "tail";
  EXPECT_EQ(InputErrorOf([&] { Make("six", {.Request = {.Size = 6}}); }),
            PathOf("six") + ": 4 bytes behind the last whole record");
  EXPECT_EQ(InputErrorOf([&] { SortPack(PathOf("six"), terminal); }),
            PathOf("six") + ": 4 bytes behind the last whole record");
  EXPECT_TRUE(BytesOf(PathOf("six")) == six + "tail");
  EXPECT_EQ(InputErrorOf([&] {
              ListPacks({PathOf("six"), PathOf("missing")}, Format::Words, terminal);
            }),
            PathOf("six") + ": 4 bytes behind the last whole record");
  EXPECT_EQ(InputErrorOf([&] { CheckPacks({PathOf("missing")}, terminal); }),
            PathOf("missing") + ": no such file");
  EXPECT_FALSE(fs::exists(PathOf("missing")));
}

// Seeds that meet a board twice within a few puzzles would prove little, so the same seed is used twice.
TEST_F(Tool, DistinctLeavesOutWhatThePackHas) {
  const MakeOptions options{.Request = {.Size = 6, .Seed = 3, .Jobs = 2}, .Count = 10, .Distinct = true};
  Make("pack", options);
  Make("pack", options);
  std::set<std::string> views;
  for (const PackRecord& record : ReadSoundPack(PathOf("pack"))) views.insert(ViewedFromAnySide(record));
  EXPECT_EQ(views.size(), 20U);
}

TEST_F(Tool, MergeLeavesOutWhatIsAlikeAndCheckNamesIt) {
  Make("ten", {.Request = {.Size = 6, .Seed = 3}, .Count = 10});
  Make("twelve", {.Request = {.Size = 6, .Seed = 3}, .Count = 12});
  err.str("");
  MergePacks(PathOf("ten"), {PathOf("twelve"), PathOf("ten")}, terminal);
  EXPECT_TRUE(BytesOf(PathOf("ten")) == BytesOf(PathOf("twelve")));
  EXPECT_EQ(err.str(), "2 puzzles added to " + PathOf("ten") + ", 20 left out that were alike\n");
  Make("seven", {.Request = {.Size = 7}, .Count = 1});
  EXPECT_EQ(InputErrorOf([&] { MergePacks(PathOf("ten"), {PathOf("seven")}, terminal); }),
            PathOf("seven") + ": record 1 has the size 7, not 6");

  std::ofstream(PathOf("ten"), std::ios::app | std::ios::binary) << BytesOf(PathOf("ten")).substr(1376, 1376);
  EXPECT_EQ(CheckPacks({PathOf("ten")}, terminal), ExitStatus::Done);
  EXPECT_EQ(Output(), "ten: record 13 is alike to record 2\n");
}

TEST_F(Tool, SortRefusesToMoveAPuzzleThatHasAPlayersTime) {
  const std::string path = PathOf("BVPack06.bvq");
  Make("BVPack06.bvq", {.Request = {.Size = 6, .Seed = 4}, .Count = 60});
  const std::vector<PackRecord> made = ReadSoundPack(path);
  // An empty time, a time for another size, and one for a puzzle that is not there.
  WriteBytes(PathOf("PLBest02.bvq"), Integers({1, 6, 0, 0, 1, 7, 3, 25, 61, 6, 3, 25}));
  SortPack(path, terminal);
  const std::vector<PackRecord> sorted = ReadSoundPack(path);
  const auto moved = std::mismatch(made.begin(), made.end(), sorted.begin()).first - made.begin() + 1;
  ASSERT_LE(moved, 60);
  ReplacePack(path, made);
  WriteBytes(PathOf("PLBest02.bvq"), Integers({static_cast<int>(moved), 38, 3, 25}));
  EXPECT_EQ(InputErrorOf([&] { SortPack(path, terminal); }),
            path + ": puzzle " + std::to_string(moved) + " would get another number, and PLBest02.bvq " +
                "holds a player's time under this one; sort a copy elsewhere");
  EXPECT_TRUE(ReadSoundPack(path) == made);
}

TEST_F(Tool, ARewriteTakesInWhatOthersChangeMeanwhile) {
  Make("pack", {.Request = {.Size = 6, .Seed = 5}, .Count = 3});
  RecordFile<PackRecord> other(PathOf("pack"));
  PackRewrite rewrite(PathOf("pack"), [](std::vector<PackRecord> records) {
    for (PackRecord& record : records) record.BestMinutes = 7;
    return records;
  });
  PackRecord added;
  other.Read(1, added);
  other.Write(4, added);
  rewrite.Commit();
  // The other still holds the file that stood there before: its next turn finds the new one.
  other.Write(5, added);
  const std::vector<PackRecord> records = ReadSoundPack(PathOf("pack"));
  ASSERT_EQ(records.size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(records[i].BestMinutes, i < 4 ? 7 : 0) << i;
}

TEST_F(Tool, RatingTwoPacksOnAFullDiskChangesNeither) {
  for (const char* pack : {"small", "large"}) {
    Make(pack, {.Request = {.Size = 6, .Seed = 5}, .Count = pack == std::string("small") ? 1 : 5});
    std::vector<PackRecord> records = ReadSoundPack(PathOf(pack));
    for (PackRecord& record : records) record.LevelSize = 6;
    ReplacePack(PathOf(pack), records);
  }
  const std::string before = BytesOf(PathOf("small"));
  {
    const FileSizeLimit limit(3000);
    EXPECT_EQ(InputErrorOf([&] {
                RatePacks({.Packs = {PathOf("small"), PathOf("large")}, .Write = true}, terminal);
              }),
              "disk full: " + PathOf("large"));
  }
  EXPECT_TRUE(BytesOf(PathOf("small")) == before);
  EXPECT_EQ(FilesIn(PathOf("")).size(), 2U);
}

TEST(Alike, PuzzlesAreSeenFromAllEightSides) {
  const PackRecord puzzle = ReadPack("tests/data/rating/trial07.bvq").at(0);
  const PackRecord other = ReadPack("tests/data/rating/trial07.bvq").at(1);
  const auto transposed = [](const PackRecord& from) {
    PackRecord to = from;
    std::swap(to.RowCounts, to.ColCounts);
    for (int cell = 0; cell < 49; ++cell) to.Layout[cell % 7 * 7 + cell / 7] = from.Layout[cell];
    return to;
  };
  const auto mirrorImage = [](const PackRecord& from) {
    PackRecord to = from;
    for (int col = 0; col < 7; ++col) to.ColCounts[6 - col] = from.ColCounts[col];
    for (int cell = 0; cell < 49; ++cell) to.Layout[cell / 7 * 7 + 6 - cell % 7] = from.Layout[cell];
    return to;
  };
  const std::string view = ViewedFromAnySide(puzzle);
  PackRecord turned = puzzle;
  for (int turn = 0; turn < 4; ++turn) {
    EXPECT_EQ(ViewedFromAnySide(turned), view);
    EXPECT_EQ(ViewedFromAnySide(mirrorImage(turned)), view);
    turned = mirrorImage(transposed(turned));  // A quarter turn.
    EXPECT_EQ(turned.Layout == puzzle.Layout, turn == 3);
  }
  EXPECT_NE(ViewedFromAnySide(other), view);
  PackRecord otherClues = puzzle;
  ++otherClues.RowCounts[2];
  EXPECT_NE(ViewedFromAnySide(otherClues), view);
}

TEST_F(Tool, CheckNamesEveryFault) {
  const PackRecord sound = ReadPack("assets/packs/BVPack06.bvq").at(0);
  const auto find = [&](int code) {
    return static_cast<int>(std::find(sound.Layout.begin(), sound.Layout.end(), code) - sound.Layout.begin());
  };
  const int tree = find(CELL_TREE);
  const int tent = find(CELL_TENT);
  const int grass = find(CELL_GRASS);
  const auto at = [](const char* field, int index) {
    return std::string(field) + '[' + std::to_string(index) + ']';
  };

  struct Case {
    std::function<void(PackRecord&)> Hurt;
    std::string Field;
    std::string Words;
  };
  const Case cases[] = {
      {[](PackRecord& record) { record.LevelSize = LevelSizeOf(1, 5); }, "LevelSize",
       "the size is 5, not 6 to 18"},
      {[](PackRecord& record) { record.LevelSize = LevelSizeOf(1, 7); }, "LevelSize", "in a pack of size 6"},
      {[](PackRecord& record) { record.LevelSize = LevelSizeOf(5, 6); }, "LevelSize",
       "the level is 5, the rater gives 1"},
      {[](PackRecord& record) { record.LevelSize = 6; }, "LevelSize", "the level is 0, the rater gives 1"},
      {[&](PackRecord& record) { record.Layout[tree] = 4; }, at("Layout", tree), "the code 4 is not 0 to 3"},
      {[](PackRecord& record) { record.Layout[36] = 1; }, "Layout[36]", "1 behind the last cell"},
      {[&](PackRecord& record) { record.TentDirs[grass] = -1; }, at("TentDirs", grass), "the direction -1"},
      {[](PackRecord& record) { record.TentDirs[323] = 2; }, "TentDirs[323]", "2 behind the last cell"},
      {[](PackRecord& record) { record.RowCounts[6] = 1; }, "RowCounts[6]", "1 behind the last line"},
      {[](PackRecord& record) { record.ColCounts[5] = 7; }, "ColCounts[5]", "7 is not 0 to 6"},
      {[](PackRecord& record) { ++record.ColCounts[0]; }, "ColCounts[0]", "but the line has"},
      {[&](PackRecord& record) { record.TentDirs[tree] = 0; }, at("TentDirs", tree), "no tent stands where"},
      {[&](PackRecord& record) { record.Layout[tent] = CELL_GRASS; }, at("RowCounts", tent / 6),
       "but the line has"},
      {[&](PackRecord& record) { record.Layout[grass] = CELL_TENT; }, at("Layout", grass),
       "a tent without its tree"},
      {[](PackRecord& record) { record.BestSeconds = 60; }, "BestSeconds", "60 is not 0 to 59"},
      {[](PackRecord& record) { record.BestMinutes = -1; }, "BestMinutes", "-1 is below 0"},
      {[](PackRecord& record) { record.BestPlayer = -1; }, "BestPlayer", "-1 is below 0"},
  };
  Workbench bench;
  EXPECT_TRUE(FaultsOf("BVPack06.bvq", {{sound}, 0}, bench.main).empty());
  for (const Case& one : cases) {
    PackRecord hurt = sound;
    one.Hurt(hurt);
    const std::vector<Fault> faults = FaultsOf("mine.bvq", {{sound, hurt}, 0}, bench.main);
    const bool named = std::any_of(faults.begin(), faults.end(), [&](const Fault& fault) {
      return fault.Record == 2 && fault.Field == one.Field &&
             fault.Words.find(one.Words) != std::string::npos;
    });
    EXPECT_TRUE(named) << one.Field << ": " << one.Words;
  }
  EXPECT_EQ(FaultsOf("BVPack07.bvq", {{sound}, 0}, bench.main).at(0).Words,
            "the size is 6 in a pack of size 7");
  EXPECT_EQ(FaultsOf("mine.bvq", {{sound}, 17}, bench.main).at(0).Field, "length");
}

TEST_F(Tool, CheckFindsTouchingTentsAndASecondSolution) {
  // Two trees side by side whose tents could both be above or below them.
  PackRecord record;
  record.LevelSize = LevelSizeOf(1, 6);
  record.Layout[14] = record.Layout[15] = CELL_TREE;
  record.Layout[8] = record.Layout[9] = CELL_TENT;
  record.TentDirs[14] = record.TentDirs[15] = NORTH;
  record.RowCounts[1] = 2;
  record.ColCounts[2] = record.ColCounts[3] = 1;
  Workbench bench;
  std::vector<Fault> faults = FaultsOf("x", {{record}, 0}, bench.main);
  ASSERT_EQ(faults.size(), 1U);
  EXPECT_EQ(faults[0].Field + ": " + faults[0].Words, "Layout[8]: the tent touches the one on cell 9");

  record.Layout[9] = CELL_OPEN;
  record.Layout[21] = CELL_TENT;
  record.TentDirs[15] = SOUTH;
  record.RowCounts[1] = record.RowCounts[3] = 1;
  faults = FaultsOf("x", {{record}, 0}, bench.main);
  ASSERT_EQ(faults.size(), 2U);
  EXPECT_EQ(faults[0].Words, "a second solution, by the measure of the generator's proof");
  EXPECT_EQ(faults[1].Words, "the level is 1, the rater gives -1");
}

TEST_F(Tool, RateStoresLevelsAndSortOrdersByThem) {
  Make("pack", {.Request = {.Size = 6, .Seed = 4}, .Count = 60});
  const std::string path = PathOf("pack");
  const std::vector<PackRecord> made = ReadSoundPack(path);
  std::vector<PackRecord> unrated = made;
  for (PackRecord& record : unrated) record.LevelSize = LevelSizeOf(0, 6);
  ReplacePack(path, unrated);
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  fs::create_symlink(path, PathOf("link"));

  RatePacks({.Packs = {path}}, terminal);
  EXPECT_TRUE(ReadSoundPack(path) == unrated);
  EXPECT_EQ(CheckPacks({path}, terminal), ExitStatus::FaultsFound);
  RatePacks({.Packs = {PathOf("link")}, .Write = true}, terminal);
  EXPECT_TRUE(ReadSoundPack(path) == made);
  EXPECT_EQ(CheckPacks({path}, terminal), ExitStatus::Done);
  EXPECT_TRUE(fs::is_symlink(PathOf("link")));
  EXPECT_EQ(fs::status(path).permissions() & fs::perms::all,
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);

  SortPack(path, terminal);
  const std::vector<PackRecord> sorted = ReadSoundPack(path);
  EXPECT_TRUE(sorted != made && std::is_permutation(sorted.begin(), sorted.end(), made.begin(), made.end()));
  Output();
  RatePacks({.Packs = {path}, .Output = Format::Table}, terminal);
  std::istringstream rows(Output());
  std::pair<int, float> last{0, 0};
  std::string pack, rest;
  int number = 0, size = 0;
  for (std::pair<int, float> rating; rows >> pack >> number >> size >> rating.first >> rating.second;) {
    EXPECT_LE(last, rating) << number;
    last = rating;
    std::getline(rows, rest);
  }
  EXPECT_EQ(number, 60);
}

TEST_F(Tool, AListTellsTheBestTime) {
  const std::string path = PathOf("two");
  Make("two", {.Request = {.Size = 6, .Seed = 5}, .Count = 2});
  std::vector<PackRecord> records = ReadSoundPack(path);
  records[0].BestMinutes = 2;
  records[0].BestSeconds = 5;
  ReplacePack(path, records);
  ListPacks({path}, Format::Table, terminal);
  EXPECT_EQ(Output(), "two\t1\t6\t1\t8\t02:05\ntwo\t2\t6\t1\t9\t-\n");
  ListPacks({path}, Format::Words, terminal);
  EXPECT_TRUE(Output().starts_with("two     1   6x6   level  1   8 trees  best 02:05\ntwo     2 "));
  EXPECT_EQ(InputErrorOf([&] { ShowPuzzle(path, 3, Reveal::Puzzle, terminal); }),
            path + ": there is no puzzle 3, the pack holds 2");
}

TEST_F(Tool, HintsForAPuzzleStartFromItsFirstPositionOrTheOneGiven) {
  const std::string path = PathOf("one");
  Make("one", {.Request = {.Size = 6, .Seed = 5}, .Count = 1});
  GiveHint({.Pack = path, .Number = 1, .Output = Format::Table}, terminal);
  EXPECT_EQ(Output(),
            "FIND\t15\t7\t26:3\tThe blinking tree has only one possible field for a tent! Click HERE to "
            "continue...\n");
  // Rows of six fields: the tents of the solution but one, and one wrong.
  const std::string board = "132321113111232112300003123021111231";
  GiveHint({.Pack = path, .Number = 1, .Board = board, .Output = Format::Table}, terminal);
  EXPECT_EQ(Output(),
            "WRONG\t10\t8\t0:1,33:2\tThe blinking fields ar not correct! Click HERE to continue...\n");

  std::vector<PackRecord> records = ReadSoundPack(path);
  records[0].Layout[2] = CELL_TREE;
  records[0].TentDirs[2] = NORTH;
  ReplacePack(path, records);
  EXPECT_EQ(InputErrorOf([&] { GiveHint({.Pack = path, .Number = 1}, terminal); }),
            path + ": record 1 cannot be started: index outside an array");
}

TEST(PacksThatShip, HaveEveryLevelAndNoFaults) {
  Workbench bench;
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    SCOPED_TRACE(size);
    const std::vector<PackRecord> records = ReadPack("assets/packs/" + PackName(size));
    EXPECT_EQ(records.size(), 100U);
    for (const Fault& fault : FaultsOf(PackName(size), {records, 0}, bench.main)) {
      ADD_FAILURE() << "record " << fault.Record << ' ' << fault.Field << ": " << fault.Words;
    }
    std::array<int, 6> levels{};
    std::set<std::string> views;
    int last = 0;
    for (const PackRecord& record : records) {
      const int level = LevelOf(record.LevelSize);
      EXPECT_GE(level, last);
      last = level;
      ++levels.at(static_cast<std::size_t>(level));
      views.insert(ViewedFromAnySide(record));
    }
    for (std::size_t level = 1; level <= 5; ++level) EXPECT_GE(levels[level], 10) << level;
    EXPECT_EQ(views.size(), records.size());
  }
}

}  // namespace
}  // namespace bivouac
