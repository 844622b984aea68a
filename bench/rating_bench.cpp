// What the rating of a puzzle takes at each size, as the game does it and in its plain form, over the packs
// that ship.
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

#include "rating/rating.h"
#include "tests/support/lay_record.h"
#include "tests/support/packs.h"
#include "tests/support/picture.h"
#include "tests/support/plain_rater.h"
#include "tests/support/scripted_desktop.h"

namespace bivouac {
namespace {

/// One iteration rates all puzzles of the size. Laying them out is not timed.
template <class Rate>
void RateAll(benchmark::State& state, Rate rate) {
  const std::string digits = std::to_string(state.range(0) + 100).substr(1);
  const std::vector<PackRecord> puzzles = ReadPack("assets/packs/BVPack" + digits + ".bvq");
  ScriptedDesktop desktop;
  std::vector<std::unique_ptr<Game>> games;
  for (const PackRecord& puzzle : puzzles) {
    games.push_back(std::make_unique<Game>(desktop));
    LayRecord(games.back()->main, puzzle);
  }
  for (auto _ : state) {
    for (const auto& game : games) {
      int level = 0;
      rate(game->main, level);
      benchmark::DoNotOptimize(level);
    }
  }
  const auto ratings = static_cast<double>(state.iterations()) * static_cast<double>(puzzles.size());
  state.counters["rating"] =
      benchmark::Counter(ratings, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void Rating(benchmark::State& state) {
  RateAll(state, [](Main& main, int& level) { RatePuzzle(main, level); });
}
BENCHMARK(Rating)->DenseRange(kMinSize, kMaxSize)->Unit(benchmark::kMillisecond);

void RatingPlain(benchmark::State& state) {
  RateAll(state, [](Main& main, int& level) {
    RatingTrace trace;
    RatePlainly(main, level, trace);
  });
}
BENCHMARK(RatingPlain)->Arg(6)->Arg(12)->Arg(18)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bivouac
