// How long 18x18 puzzles take here, and what they are, to hold a machine's own code and WebAssembly side by
// side.
#include <chrono>
#include <cstdint>
#include <cstdio>

#include "generator/generator.h"
#include "generator/random.h"
#include "workbench/workbench.h"

int main() {
  constexpr int kPuzzles = 1000;
  constexpr int kSize = 18;
  bivouac::Workbench bench;
  bivouac::LayOutSize(bench.main, kSize);
  std::uint64_t signature = 0;
  const auto begin = std::chrono::steady_clock::now();
  for (std::uint64_t seed = 1; seed <= kPuzzles; ++seed) {
    bench.desktop.Seed(seed);
    bivouac::MakePuzzle(bench.main);
    for (const auto direction : bench.global.PuzzleRec.TentDirs)
      signature = bivouac::Random::Mix(signature + static_cast<std::uint64_t>(direction));
  }
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
  std::printf("%016llx %.3f\n", static_cast<unsigned long long>(signature), took.count() / kPuzzles);
}
