#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <utility>

#include "packs/alike.h"
#include "packs/faults.h"
#include "packs/pack_access.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "tests/support/files.h"
#include "tests/support/looks.h"
#include "tools/command_line.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

const std::string kData = BIVOUAC_SOURCE_DIR "/tests/data/";

/// The packs of a folder in the order of their names.
std::vector<std::string> PacksIn(const std::string& folder) {
  std::vector<std::string> packs;
  for (const auto& [name, bytes] : FilesIn(folder)) packs.push_back(folder + "/" + name);
  return packs;
}

// The worked results of the rating, the proof and the hints: held here, by the program that people run, and
// nowhere else.
TEST(Tool, TablesEqualTheWorkedResults) {
  std::istringstream in(BytesOf(kData + "hints.tsv"));
  std::ostringstream out;
  Terminal terminal{.In = in, .Out = out, .Err = out};
  const auto table = [&](std::vector<std::string> arguments, const std::vector<std::string>& packs) {
    arguments.emplace_back("--tsv");
    arguments.insert(arguments.end(), packs.begin(), packs.end());
    RunCommand(arguments, terminal);
  };
  table({"rate"}, PacksIn(kData + "rating"));
  ExpectSameLines(std::exchange(out, {}).str(), BytesOf(kData + "rating.tsv"));
  table({"prove"}, PacksIn(kData + "layouts"));
  ExpectSameLines(std::exchange(out, {}).str(), BytesOf(kData + "proof.tsv"));

  std::string expected;
  const auto hints = ReadTable("tests/data/hints.tsv");
  EXPECT_EQ(hints.size(), 529U);
  for (const std::vector<std::string>& row : hints) {
    for (std::size_t column = 5; column < row.size(); ++column)
      expected += row[column] + (column == 9 ? "\n" : "\t");
  }
  table({"hint"}, {"-"});
  ExpectSameLines(std::exchange(out, {}).str(), expected);
}

TEST(PackRewrite, TakesInWhatOthersChangeMeanwhile) {
  const TempFolder folder;
  const std::string path = folder / "pack";
  WriteBytes(path, ShippedPack(6).substr(0, std::size_t{3} * RecordFile<PackRecord>::kBytes));
  RecordFile<PackRecord> other(path, Access::Write);
  PackRewrite rewrite(path, {}, [](const PackContent& content) {
    std::vector<PackRecord> records = content.Records;
    for (PackRecord& record : records) record.BestMinutes = 7;
    return records;
  });
  PackRecord added;
  other.Read(1, added);
  other.Write(4, added);
  rewrite.Commit();
  // The other still holds the file that stood there before: its next turn finds the new one.
  other.Write(5, added);
  const std::vector<PackRecord> records = ReadSoundPack(path);
  ASSERT_EQ(records.size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(records[i].BestMinutes, i < 4 ? 7 : 0) << i;
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
