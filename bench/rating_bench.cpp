// What the rating of a puzzle takes at each size, over the packs that ship.
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

#include "packs/pack_access.h"
#include "rating/rating.h"
#include "storage/pack_files.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

/// One iteration rates all puzzles of the size. Laying them out is not timed.
void Rating(benchmark::State& state) {
  const int size = static_cast<int>(state.range(0));
  const std::vector<PackRecord> puzzles = ReadSoundPack(BIVOUAC_SOURCE_DIR "/assets/packs/" + PackName(size));
  std::vector<std::unique_ptr<Workbench>> games;
  for (const PackRecord& puzzle : puzzles) {
    games.push_back(std::make_unique<Workbench>());
    LayOutRecord(games.back()->main, puzzle);
  }
  for (auto _ : state) {
    for (const auto& game : games) {
      int level = 0;
      RatePuzzle(game->main, level);
      benchmark::DoNotOptimize(level);
    }
  }
  const auto ratings = static_cast<double>(state.iterations()) * static_cast<double>(puzzles.size());
  state.counters["rating"] =
      benchmark::Counter(ratings, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK(Rating)->DenseRange(kMinSize, kMaxSize)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bivouac
