// The proof of one solution on the same layouts in two ways: as the game does it, and by a SAT solver that is
// asked for two solutions.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <vector>

#include "game/board.h"
#include "generator/layout_drawing.h"
#include "generator/unique_solution.h"
#include "workbench/workbench.h"

#ifdef BIVOUAC_CADICAL
#include <cadical.hpp>
#endif

namespace bivouac {
namespace {

constexpr int kLayouts = 1000;

/// Draws the same layouts at every run and proves each of them three times. Only the shortest of the three
/// counts, so that other work of the machine does not. Drawing and laying out are not timed.
template <class Prove>
void ProveAll(benchmark::State& state, Prove prove) {
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
      prove(main);
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

void Proof(benchmark::State& state) {
  ProveAll(state, [](Main& main) {
    bool unique = false;
    CheckUniqueSolution(main, unique);
    benchmark::DoNotOptimize(unique);
  });
}
BENCHMARK(Proof)
    ->DenseRange(kMinSize, kMaxSize)
    ->Iterations(10 * kLayouts)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

#ifdef BIVOUAC_CADICAL

/// A layout as clauses: a variable for each tree and each direction in which its tent could stand.
class Clauses {
 public:
  explicit Clauses(const Main& main) : main_(main), claims_(static_cast<std::size_t>(main.CellCount)) {
    solver_.set("quiet", 1);
    Add({true_});
    for (int cell = 0; cell < main.CellCount; ++cell) {
      if (main.Board[cell] == CELL_TREE) AddTree(cell);
    }
    for (int cell = 0; cell < main.CellCount; ++cell) AddNeighbours(cell);
    for (int i = 0; i < main.BoardSize; ++i) {
      AddLine(i * main.BoardSize, 1, RowClue(main, i));
      AddLine(i, main.BoardSize, ColClue(main, i));
    }
  }

  /// True if there is no second choice of directions.
  bool Unique() {
    constexpr int kSatisfiable = 10;
    if (solver_.solve() != kSatisfiable) return true;
    std::vector<int> chosen;
    for (const std::vector<int>& cell : claims_) {
      for (const int claim : cell) {
        if (solver_.val(claim) > 0) chosen.push_back(-claim);
      }
    }
    Add(chosen);
    return solver_.solve() != kSatisfiable;
  }

 private:
  void Add(const std::vector<int>& literals) {
    for (const int literal : literals) solver_.add(literal);
    solver_.add(0);
  }

  void AddTree(int tree) {
    std::vector<int> options;
    ForEachSide(main_.BoardSize, tree, [&](int side, int) {
      if (main_.Board[side] == CELL_TREE) return;
      options.push_back(++variables_);
      claims_[static_cast<std::size_t>(side)].push_back(variables_);
    });
    Add(options);
    for (const int one : options) {
      for (const int other : options) {
        if (one < other) Add({-one, -other});
      }
    }
  }

  void AddNeighbours(int cell) {
    const std::vector<int>& here = claims_[static_cast<std::size_t>(cell)];
    for (const int one : here) {
      for (const int other : here) {
        if (one < other) Add({-one, -other});
      }
    }
    AnyAround(main_, cell, [&](int near) {
      for (const int one : here) {
        for (const int other : claims_[static_cast<std::size_t>(near)]) {
          if (one < other) Add({-one, -other});
        }
      }
      return false;
    });
  }

  /// Exactly `clue` tents, by counters along the line: counter j says that more than j tents stand so far.
  void AddLine(int first, int step, int clue) {
    std::vector<int> before(static_cast<std::size_t>(clue) + 1, -true_);
    for (int i = 0, cell = first; i < main_.BoardSize; ++i, cell += step) {
      for (const int claim : claims_[static_cast<std::size_t>(cell)]) {
        int less = true_;
        for (int& counter : before) {
          const int old = counter;
          counter = ++variables_;
          Add({-old, counter});
          Add({-claim, -less, counter});
          Add({-counter, old, claim});
          Add({-counter, old, less});
          less = old;
        }
      }
    }
    Add({-before.back()});
    if (clue > 0) Add({before[before.size() - 2]});
  }

  const Main& main_;
  CaDiCaL::Solver solver_;
  std::vector<std::vector<int>> claims_;  // By cell: who could have a tent there.
  int variables_ = 1;
  int true_ = 1;
};

void ProofSatSolver(benchmark::State& state) {
  ProveAll(state, [](Main& main) { benchmark::DoNotOptimize(Clauses(main).Unique()); });
}
BENCHMARK(ProofSatSolver)
    ->DenseRange(kMinSize, kMaxSize)
    ->Iterations(kLayouts)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

#endif

}  // namespace
}  // namespace bivouac
