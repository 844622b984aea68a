#include "generator/given_puzzle.h"

#include <string>
#include <vector>

#include "game/board.h"
#include "game/error.h"
#include "game/layout.h"
#include "generator/unique_solution.h"
#include "rating/rating.h"
#include "storage/navigation.h"

namespace bivouac {
namespace {

constexpr const char* kNoSolution = "the puzzle has no solution that thought alone finds";

void LayOut(Main& main, const PackRecord& given) {
  main.global.PuzzleRec = given;
  main.BoardSize = SizeOf(given.LevelSize);
  SizeLayout(main);
  LayPuzzleOut(main);
}

/// Gives every tree of a solved board a tent of its own: one tree after the other, those before giving way
/// where they can.
class Pairing {
 public:
  explicit Pairing(const Main& main)
      : main_(main), treeOf_(static_cast<std::size_t>(main.CellCount), kNone) {}

  /// Whether there are as many tents as trees, each with its own.
  bool Finds() {
    int tents = 0;
    for (int cell = 0; cell < main_.CellCount; ++cell) {
      tents += main_.Board[cell] == CELL_TENT;
      std::vector<bool> tried(treeOf_.size(), false);
      if (main_.Board[cell] == CELL_TREE && !GivesTent(cell, tried)) return false;
    }
    return tents == main_.TreeCount;
  }
  /// Requires: Finds.
  void Record(PackRecord& puzzle) const {
    for (int tent = 0; tent < main_.CellCount; ++tent) {
      const int tree = treeOf_[static_cast<std::size_t>(tent)];
      if (tree == kNone) continue;
      ForEachSide(main_.BoardSize, tree, [&](int side, int direction) {
        if (side == tent) puzzle.TentDirs[tree] = static_cast<std::int16_t>(direction);
      });
    }
  }

 private:
  static constexpr int kNone = -1;

  bool GivesTent(int tree, std::vector<bool>& tried) {
    bool given = false;
    ForEachSide(main_.BoardSize, tree, [&](int side, int) {
      const auto place = static_cast<std::size_t>(side);
      if (given || main_.Board[side] != CELL_TENT || tried[place]) return;
      tried[place] = true;
      if (treeOf_[place] != kNone && !GivesTent(treeOf_[place], tried)) return;
      treeOf_[place] = tree;
      given = true;
    });
    return given;
  }

  const Main& main_;
  std::vector<int> treeOf_;  // By cell: the tree whose tent stands there.
};

/// Whether all fields are decided, no tents touch and every line has as many as its clue says.
bool IsFinished(const Main& main) {
  std::vector<int> rows(static_cast<std::size_t>(main.BoardSize), 0), cols = rows;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] == CELL_OPEN) return false;
    if (main.Board[cell] != CELL_TENT) continue;
    ++rows[static_cast<std::size_t>(RowOf(main, cell))];
    ++cols[static_cast<std::size_t>(ColOf(main, cell))];
    if (AnyAround(main, cell, [&](int near) { return main.Board[near] == CELL_TENT; })) return false;
  }
  for (int line = 0; line < main.BoardSize; ++line) {
    if (rows[static_cast<std::size_t>(line)] != RowClue(main, line)) return false;
    if (cols[static_cast<std::size_t>(line)] != ColClue(main, line)) return false;
  }
  return true;
}

}  // namespace

PackRecord CompletePuzzle(Main& main, const PackRecord& given) {
  LayOut(main, given);
  if (main.TreeCount == 0) throw InputError("the puzzle has no tree");
  int level = 0;
  RatePuzzle(main, level);  // Without tents to compare with it goes as far as its rules lead.
  Pairing pairing(main);
  if (!IsFinished(main) || !pairing.Finds()) throw InputError(kNoSolution);
  PackRecord puzzle = given;
  pairing.Record(puzzle);
  for (int cell = 0; cell < main.CellCount; ++cell)
    puzzle.Layout[cell] = static_cast<std::int16_t>(main.Board[cell]);
  LayOut(main, puzzle);
  bool unique = false;
  CheckUniqueSolution(main, unique);
  if (!unique) throw InputError("the puzzle has more than one solution");
  RatePuzzle(main, level);
  if (level < 1) throw InputError(kNoSolution);
  puzzle.LevelSize = LevelSizeOf(level, main.BoardSize);
  return puzzle;
}

}  // namespace bivouac
