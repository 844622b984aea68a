#include "walks/pack_stats.h"

#include <algorithm>

#include "game/error.h"
#include "game/play.h"
#include "packs/pack_access.h"
#include "packs/pack_reader.h"
#include "packs/puzzle_facts.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

template <class Is>
long CountIf(const PackStats& stats, Is is) {
  long count = 0;
  for (const PackStats::Pack& pack : stats.Packs)
    count += std::count_if(pack.Puzzles.begin(), pack.Puzzles.end(), is);
  return count;
}

}  // namespace

PuzzleStats StatsOfPuzzle(Main& main, const PackRecord& record) {
  const PuzzleFacts facts = FactsOf(main, record);
  LayOutRecord(main, record);
  StartPuzzle(main);
  PuzzleStats stats{.Level = facts.Level, .Difficulty = facts.Difficulty, .Tents = main.TreeCount};
  SolutionWalk walk(main);
  while (walk.Next()) {
    const HintRule& rule = *walk.Hint().Rule;
    ++stats.Hints;
    stats.Seconds += rule.Seconds;
    stats.Cases |= std::uint64_t{1} << PlaceOf(walk.Hint());
  }
  stats.Finished = walk.Ended() == SolutionWalk::End::Solved;
  return stats;
}

std::uint64_t CasesOf(const HintRule& rule) {
  std::uint64_t bits = 0;
  for (std::size_t place = 0; place < HintCases().size(); ++place) {
    if (HintCases()[place].Rule == &rule) bits |= std::uint64_t{1} << place;
  }
  return bits;
}

long PackStats::Count(int level) const {
  return CountIf(*this, [&](const PuzzleStats& puzzle) { return puzzle.Level == level; });
}

long PackStats::CountNeeding(int level, std::uint64_t cases) const {
  return CountIf(
      *this, [&](const PuzzleStats& puzzle) { return puzzle.Level == level && (puzzle.Cases & cases) != 0; });
}

PackStats StatsOf(const std::vector<std::string>& packs, const std::function<bool()>& visited) {
  PackStats stats;
  Workbench bench;
  for (const std::string& path : packs) {
    const PackReader reader(path);
    PackStats::Pack& pack = stats.Packs.emplace_back();
    pack.Name = FileName(path);
    for (long number = 1; number <= reader.Count(); ++number) {
      const PackRecord record = reader.Read(number);
      pack.Puzzles.push_back(reader.Starting(number, [&] { return StatsOfPuzzle(bench.main, record); }));
      if (!visited()) return stats;
    }
  }
  return stats;
}

}  // namespace bivouac
