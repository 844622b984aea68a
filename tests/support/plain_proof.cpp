#include "tests/support/plain_proof.h"

#include <vector>

#include "game/board.h"

namespace bivouac {
namespace {

struct Clues {
  std::vector<int> Rows;
  std::vector<int> Cols;
};

int Neighbour(const Main& main, int cell, int direction) {
  switch (direction) {
    case NORTH:
      return cell - main.BoardSize;
    case EAST:
      return cell + 1;
    case SOUTH:
      return cell + main.BoardSize;
    default:
      return cell - 1;
  }
}

bool LiesOnBoard(const Main& main, int cell, int direction) {
  const int last = main.BoardSize - 1;
  switch (direction) {
    case NORTH:
      return RowOf(main, cell) > 0;
    case EAST:
      return ColOf(main, cell) < last;
    case SOUTH:
      return RowOf(main, cell) < last;
    default:
      return ColOf(main, cell) > 0;
  }
}

int TentsInRow(const Main& main, int row) {
  int tents = 0;
  for (int i = 0; i < main.BoardSize; ++i) tents += main.Solution[row * main.BoardSize + i] == CELL_TENT;
  return tents;
}

int TentsInCol(const Main& main, int col) {
  int tents = 0;
  for (int i = 0; i < main.BoardSize; ++i) tents += main.Solution[i * main.BoardSize + col] == CELL_TENT;
  return tents;
}

Clues PrepareBoard(Main& main, Array<int>& treeList) {
  int trees = 0;
  for (int i = 0; i < main.CellCount; ++i) {
    if (main.Board[i] == CELL_TREE) {
      treeList[trees++] = i;
      continue;
    }
    main.Board[i] = CELL_OPEN;
    int free = 0;
    for (int direction = NORTH; direction <= WEST; ++direction) {
      if (!LiesOnBoard(main, i, direction) || main.Board[Neighbour(main, i, direction)] != CELL_TREE) ++free;
    }
    if (free == 4) main.Board[i] = CELL_GRASS;
  }
  Clues clues;
  for (int r = 0; r < main.BoardSize; ++r) clues.Rows.push_back(RowClue(main, r));
  for (int c = 0; c < main.BoardSize; ++c) clues.Cols.push_back(ColClue(main, c));
  for (int i = 0; i < main.CellCount; ++i) {
    const auto row = static_cast<std::size_t>(RowOf(main, i));
    const auto col = static_cast<std::size_t>(ColOf(main, i));
    if (main.Board[i] == CELL_OPEN && (clues.Rows[row] <= 0 || clues.Cols[col] <= 0)) {
      main.Board[i] = CELL_GRASS;
    }
  }
  for (int i = 0; i < main.CellCount; ++i) main.Solution[i] = main.Board[i];
  return clues;
}

void PlaceTent(Main& main, int cell) {
  main.Solution[cell] = CELL_TENT;
  FillAroundTent(main, cell, FillTarget::Solution);
}

bool PartialAssignmentHolds(const Main& main, const Clues& clues, int row) {
  if (row < main.BoardSize - 2 && TentsInRow(main, row + 2) != clues.Rows[static_cast<std::size_t>(row) + 2])
    return false;
  for (int r = 0; r < main.BoardSize; ++r) {
    if (TentsInRow(main, r) > clues.Rows[static_cast<std::size_t>(r)]) return false;
  }
  for (int c = 0; c < main.BoardSize; ++c) {
    if (TentsInCol(main, c) > clues.Cols[static_cast<std::size_t>(c)]) return false;
  }
  return true;
}

}  // namespace

void PlainCheckUniqueSolution(Main& main, bool& result) {
  Array<int> treeList;
  Array<int> treeChoice;
  treeList.Redim(main.TreeCount - 1);
  treeChoice.Redim(main.TreeCount - 1);
  const Clues clues = PrepareBoard(main, treeList);
  int solutionsFound = 0;
  int cursor = main.TreeCount - 1;
  for (;;) {
    main.desktop.Yield();
    if (cursor == -1) {
      if (solutionsFound == 1) {
        result = false;
        return;
      }
      solutionsFound = 1;
      cursor = 0;
    }
    if (cursor == main.TreeCount) {
      result = true;
      return;
    }

    for (int i = 0; i < main.CellCount; ++i) main.Solution[i] = main.Board[i];
    const int tree = treeList[cursor];
    if (treeChoice[cursor] != 0) main.Solution[Neighbour(main, tree, treeChoice[cursor])] = CELL_OPEN;
    for (int k = main.TreeCount - 1; k > cursor; --k) {
      if (treeChoice[k] != 0) PlaceTent(main, Neighbour(main, treeList[k], treeChoice[k]));
    }

    if (!PartialAssignmentHolds(main, clues, RowOf(main, tree))) {
      ++cursor;
      continue;
    }
    for (;;) {
      int& choice = treeChoice[cursor];
      choice = (choice + 1) % 5;
      if (choice == 0) {
        ++cursor;
        break;
      }
      if (!LiesOnBoard(main, tree, choice)) continue;
      const int tent = Neighbour(main, tree, choice);
      if (main.Solution[tent] != CELL_OPEN) continue;
      PlaceTent(main, tent);
      --cursor;
      break;
    }
  }
}

}  // namespace bivouac
