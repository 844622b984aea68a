// Puzzles a second of bivouac-packs, and how they grow with the jobs.
#include <benchmark/benchmark.h>

#include "packs/puzzle_maker.h"

namespace bivouac {
namespace {

void MakeWithJobs(benchmark::State& state) {
  const MakeRequest request{
      .Size = static_cast<int>(state.range(0)), .Seed = 1, .Jobs = static_cast<int>(state.range(1))};
  // Enough puzzles for the start of the threads not to count.
  const long count = request.Size < 10 ? 20'000 : request.Size < 15 ? 4'000 : 300;
  const std::atomic<bool> stop = false;
  for (auto _ : state) {
    long made = 0;
    MakePuzzles(request, stop, [&](const PackRecord&) { return ++made < count; });
  }
  state.counters["puzzles_a_second"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * static_cast<double>(count), benchmark::Counter::kIsRate);
}
BENCHMARK(MakeWithJobs)
    ->ArgsProduct({{6, 12, 18}, {1, 2}})
    ->ArgNames({"size", "jobs"})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bivouac
