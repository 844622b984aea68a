#include "rating/rating.h"

#include <gtest/gtest.h>
#include <map>

#include "game/layout.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/packs.h"

namespace bivouac {
namespace {

/// A record laid out for its rating, the captions showing its own clues.
void LayRecord(Main& main, const PackRecord& record) {
  main.BoardSize = SizeOf(record.LevelSize);
  SizeLayout(main);
  main.global.PuzzleRec = record;
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Caption = std::to_string(record.RowCounts[i]);
    main.ColCnt[i].Caption = std::to_string(record.ColCounts[i]);
  }
}

/// The names of the passes of a rating, a faulty one last and marked.
std::string NamesOf(const RatingTrace& trace) {
  std::string names;
  const auto add = [&](std::string_view mark, int pass) {
    if (!names.empty()) names += ',';
    names += mark;
    names += PassTable()[static_cast<std::size_t>(pass)].Name;
  };
  for (const int pass : trace.Passes) add("", pass);
  if (trace.FaultyPass >= 0) add("!", trace.FaultyPass);
  return names;
}

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
    LayRecord(main, record);
    int level = 0;
    RatingTrace trace;
    RatePuzzle(main, level, trace);
    EXPECT_EQ(std::to_string(level), row[3]);
    EXPECT_EQ(Exact(main.Difficulty), row[4]);
    EXPECT_EQ(BoardDigits(main), row[5]);
    EXPECT_EQ(NamesOf(trace), row.size() > 6 ? row[6] : "");
  }
}

}  // namespace
}  // namespace bivouac
