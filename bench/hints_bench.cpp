// What a hint costs that searches the whole chain in vain, down to "No more logical hints available...".
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

#include "game/layout.h"
#include "game/play.h"
#include "hints/hints.h"
#include "packs/pack_access.h"
#include "storage/pack_files.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

using Games = std::vector<std::unique_ptr<Workbench>>;

std::vector<PackRecord> Puzzles(benchmark::State& state) {
  return ReadSoundPack(BIVOUAC_SOURCE_DIR "/assets/packs/" + PackName(static_cast<int>(state.range(0))));
}

std::unique_ptr<Workbench> Start(const PackRecord& record) {
  auto game = std::make_unique<Workbench>();
  LayOutRecord(game->main, record);
  game->main.BoardLive = true;
  StartPuzzle(game->main);
  return game;
}

/// A position in which no rule finds anything. In the upper half trees with two open fields each, west and
/// east, too many for their lines; in the lower half trees beside their tents. All else is grass.
void LayExhaustedPosition(Main& main, int size) {
  main.BoardSize = size;
  SizeLayout(main);
  std::vector<int> rowClues(static_cast<std::size_t>(size), 0);
  std::vector<int> colClues(static_cast<std::size_t>(size), 0);
  for (int row = 0; row < size; ++row) {
    for (int col = 0; col < size; ++col) main.Board[row * size + col] = CELL_GRASS;
    if (row % 2 != 0) continue;
    const bool upper = row < size / 2;
    const auto r = static_cast<std::size_t>(row);
    for (int col = 0; col + 2 < size; col += 4) {
      const auto c = static_cast<std::size_t>(col);
      int* cells = &main.Board[row * size + col];
      cells[0] = upper ? CELL_OPEN : CELL_TENT;
      cells[1] = CELL_TREE;
      if (upper) {
        cells[2] = CELL_OPEN;
        rowClues[r] = 1;
      } else {
        ++rowClues[r];
        ++colClues[c];
      }
    }
  }
  for (int col = 0; col < size; ++col) {
    const auto c = static_cast<std::size_t>(col);
    if (main.Board[col] == CELL_OPEN) ++colClues[c];
    main.ColCnt[col].Caption = std::to_string(colClues[c]);
    main.RowCnt[col].Caption = std::to_string(rowClues[c]);
  }
  main.BoardLive = true;
}

int OpenFields(const Main& main) {
  int open = 0;
  for (int cell = 0; cell < main.CellCount; ++cell) open += main.Board[cell] == CELL_OPEN ? 1 : 0;
  return open;
}

/// One iteration is one hint; the positions take turns.
void RunHints(benchmark::State& state, const Games& games) {
  if (games.empty()) state.SkipWithError("no position");
  std::size_t next = 0;
  int open = 0;
  for (const auto& game : games) open += OpenFields(game->main);
  for (auto _ : state) {
    Main& main = games[next]->main;
    HintBasic(main);
    if (main.BlinkTop != -1) state.SkipWithError("a find");
    next = (next + 1) % games.size();
  }
  state.counters["positions"] = static_cast<double>(games.size());
  state.counters["open"] = static_cast<double>(open) / static_cast<double>(games.size());
}

void BM_HintAmongOpenFields(benchmark::State& state) {
  Games games;
  games.push_back(std::make_unique<Workbench>());
  LayExhaustedPosition(games[0]->main, static_cast<int>(state.range(0)));
  RunHints(state, games);
}
BENCHMARK(BM_HintAmongOpenFields)->Arg(6)->Arg(12)->Arg(18)->Unit(benchmark::kMicrosecond);

/// Every tent stands, which makes the largest clusters.
void BM_HintOnAFullBoard(benchmark::State& state) {
  Games games;
  for (const PackRecord& record : Puzzles(state)) {
    auto game = Start(record);
    Main& main = game->main;
    for (int cell = 0; cell < main.CellCount; ++cell) {
      main.Board[cell] =
          main.Solution[cell] == CELL_OPEN ? static_cast<int>(CELL_GRASS) : main.Solution[cell];
    }
    games.push_back(std::move(game));
  }
  RunHints(state, games);
}
BENCHMARK(BM_HintOnAFullBoard)->Arg(6)->Arg(12)->Arg(18)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace bivouac
