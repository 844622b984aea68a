// What the rating of a puzzle takes at each size, over the packs that ship.
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

#include "rating/rating.h"
#include "tests/support/packs.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"
#include "tools/workbench.h"

namespace bivouac {
namespace {

/// One iteration rates all puzzles of the size. Laying them out is not timed.
void Rating(benchmark::State& state) {
  const std::string digits = std::to_string(state.range(0) + 100).substr(1);
  const std::vector<PackRecord> puzzles = ReadPack("assets/packs/BVPack" + digits + ".bvq");
  ScriptedDesktop desktop;
  std::vector<std::unique_ptr<Game>> games;
  for (const PackRecord& puzzle : puzzles) {
    games.push_back(std::make_unique<Game>(desktop));
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
