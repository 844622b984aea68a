// The proof of one solution on the same layouts in three ways: as the game does it, in its plain form that
// rebuilds a board at every round, and by a SAT solver that is asked for two solutions.
#include <array>
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

#include "game/board.h"
#include "generator/unique_solution.h"
#include "tests/support/packs.h"
#include "tests/support/picture.h"
#include "tests/support/plain_proof.h"
#include "tests/support/scripted_desktop.h"
#include "tools/workbench.h"

#ifdef BIVOUAC_CADICAL
#include <cadical.hpp>
#endif

namespace bivouac {
namespace {

std::vector<PackRecord> Layouts(int size) {
  const std::string digits = std::to_string(size + 100).substr(1);
  return ReadPack("tests/data/layouts/layouts" + digits + ".bvq");
}

void BoardFromRecord(Main& main) {
  for (int cell = 0; cell < main.CellCount; ++cell) main.Board[cell] = main.global.PuzzleRec.Layout[cell];
}

/// One iteration proves all layouts of the size. Laying them out is not timed.
template <class Prove>
void ProveAll(benchmark::State& state, Prove prove) {
  const std::vector<PackRecord> layouts = Layouts(static_cast<int>(state.range(0)));
  ScriptedDesktop desktop;
  std::vector<std::unique_ptr<Game>> games;
  for (const PackRecord& record : layouts) {
    games.push_back(std::make_unique<Game>(desktop));
    LayOutRecord(games.back()->main, record);
  }
  long rounds = 0;
  for (auto _ : state) {
    for (const auto& game : games) {
      BoardFromRecord(game->main);
      rounds += prove(game->main);
    }
  }
  const auto mean = [&](double count) {
    return benchmark::Counter(count, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  };
  const auto proofs = static_cast<double>(state.iterations()) * static_cast<double>(layouts.size());
  state.counters["proof"] = mean(proofs);
  if (rounds > 0) state.counters["round"] = mean(static_cast<double>(rounds));
}

void Proof(benchmark::State& state) {
  ProveAll(state, [](Main& main) {
    bool unique = false;
    return CheckUniqueSolution(main, unique);
  });
}
BENCHMARK(Proof)->DenseRange(kMinSize, kMaxSize)->Unit(benchmark::kMillisecond);

void ProofPlain(benchmark::State& state) {
  ProveAll(state, [](Main& main) {
    bool unique = false;
    return PlainCheckUniqueSolution(main, unique);
  });
}
BENCHMARK(ProofPlain)->DenseRange(kMinSize, kMaxSize)->Unit(benchmark::kMillisecond);

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
    ForEachSide(main_, tree, [&](int side, int) {
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
  ProveAll(state, [](Main& main) {
    benchmark::DoNotOptimize(Clauses(main).Unique());
    return 0L;
  });
}
BENCHMARK(ProofSatSolver)->DenseRange(kMinSize, kMaxSize)->Unit(benchmark::kMillisecond);

#endif

}  // namespace
}  // namespace bivouac
