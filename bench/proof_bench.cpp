// The proof of one solution on the same layouts at every run.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>

#include "generator/layout_drawing.h"
#include "generator/unique_solution.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

constexpr int kLayouts = 10'000;

/// Draws the same layouts at every run and proves each of them three times. Only the shortest of the three
/// counts, so that other work of the machine does not. Drawing and laying out are not timed.
void Proof(benchmark::State& state) {
  Workbench bench;
  Main& main = bench.main;
  LayOutSize(main, static_cast<int>(state.range(0)));
  bench.desktop.Seed(1);
  double total = 0;
  double slowest = 0;
  for (auto _ : state) {
    DrawLayout(main);
    const Array<int> layout = main.Board;
    double shortest = HUGE_VAL;
    for (int i = 0; i < 3; ++i) {
      main.Board = layout;
      const auto start = std::chrono::steady_clock::now();
      bool unique = false;
      CheckUniqueSolution(main, unique);
      benchmark::DoNotOptimize(unique);
      shortest =
          std::min(shortest, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    state.SetIterationTime(shortest);
    total += shortest;
    slowest = std::max(slowest, shortest);
  }
  state.counters["proof"] = total / static_cast<double>(state.iterations());
  state.counters["slowest"] = slowest;
}

BENCHMARK(Proof)
    ->DenseRange(kMinSize, kMaxSize)
    ->Iterations(kLayouts)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace bivouac
