// What "New" takes at each size, its report box and the writing of the pack aside.
#include <benchmark/benchmark.h>
#include <chrono>

#include "game/layout.h"
#include "generator/generator.h"
#include "tests/support/picture.h"
#include "tests/support/scripted_desktop.h"

namespace bivouac {
namespace {

/// A yield that finds no time gone by: it reads the clock.
class ClockDesktop : public ScriptedDesktop {
 public:
  void Yield() override { benchmark::DoNotOptimize(std::chrono::steady_clock::now()); }
};

template <class AnyDesktop>
void MakePuzzles(benchmark::State& state) {
  AnyDesktop desktop;
  Game game(desktop);
  game.main.BoardSize = static_cast<int>(state.range(0));
  SizeLayout(game.main);
  for (auto _ : state) MakePuzzle(game.main);
  state.counters["puzzles_a_second"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
void New(benchmark::State& state) {
  MakePuzzles<ClockDesktop>(state);
}
void NewWithoutYields(benchmark::State& state) {
  MakePuzzles<ScriptedDesktop>(state);
}
BENCHMARK(New)->DenseRange(kMinSize, kMaxSize)->Unit(benchmark::kMicrosecond);
BENCHMARK(NewWithoutYields)->Arg(6)->Arg(12)->Arg(18)->Unit(benchmark::kMicrosecond);

/// The drawing of one layout, 5000 swaps included.
void Draw(benchmark::State& state) {
  ClockDesktop desktop;
  Game game(desktop);
  game.main.BoardSize = static_cast<int>(state.range(0));
  SizeLayout(game.main);
  Array<int> scratch;
  scratch.Redim(game.main.CellCount - 1);
  for (auto _ : state) DrawLayout(game.main, scratch);
}
BENCHMARK(Draw)->Arg(6)->Arg(12)->Arg(18)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace bivouac
