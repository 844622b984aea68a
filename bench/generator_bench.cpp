// What "New" takes at each size, its report box and the writing of the pack aside.
#include <benchmark/benchmark.h>
#include <chrono>

#include "generator/generator.h"
#include "generator/layout_drawing.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

/// A yield that finds no time gone by: it reads the clock.
class ClockDesktop : public HeadlessDesktop {
 public:
  void Yield() override { benchmark::DoNotOptimize(std::chrono::steady_clock::now()); }
};

template <class AnyDesktop>
void MakePuzzles(benchmark::State& state) {
  AnyDesktop desktop;
  Global global;
  Main main(global, desktop);
  LayOutSize(main, static_cast<int>(state.range(0)));
  for (auto _ : state) MakePuzzle(main);
  state.counters["puzzles_a_second"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
void New(benchmark::State& state) {
  MakePuzzles<ClockDesktop>(state);
}
void NewWithoutYields(benchmark::State& state) {
  MakePuzzles<HeadlessDesktop>(state);
}
BENCHMARK(New)->DenseRange(kMinSize, kMaxSize)->Unit(benchmark::kMicrosecond);
BENCHMARK(NewWithoutYields)->Arg(6)->Arg(12)->Arg(18)->Unit(benchmark::kMicrosecond);

/// The drawing of one layout, 5000 swaps included.
void Draw(benchmark::State& state) {
  Workbench bench;
  LayOutSize(bench.main, static_cast<int>(state.range(0)));
  for (auto _ : state) DrawLayout(bench.main);
}
BENCHMARK(Draw)->Arg(6)->Arg(12)->Arg(18)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace bivouac
