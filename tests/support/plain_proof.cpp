#include "tests/support/plain_proof.h"

#include "game/board.h"

namespace bivouac {
namespace {

bool HasSide(const Main& main, int cell, int direction) {
  bool has = false;
  ForEachSide(main.BoardSize, cell, [&](int, int towards) { has = has || towards == direction; });
  return has;
}

void PrepareBoard(Main& main, Array<int>& treeList) {
  int trees = 0;
  for (int i = 0; i < main.CellCount; ++i) {
    if (main.Board[i] == CELL_TREE) {
      treeList[trees++] = i;
    } else {
      main.Board[i] = TouchesTree(main, i) ? CELL_OPEN : CELL_GRASS;
    }
  }
  for (int i = 0; i < main.CellCount; ++i) {
    const bool noClue = RowClue(main, RowOf(main, i)) <= 0 || ColClue(main, ColOf(main, i)) <= 0;
    if (main.Board[i] == CELL_OPEN && noClue) main.Board[i] = CELL_GRASS;
  }
}

void PlaceTent(Main& main, int cell) {
  main.Solution[cell] = CELL_TENT;
  FillAroundTent(main, cell, FillTarget::Solution);
}

/// The clue of a line less its tents on the scratch board.
int Missing(const Main& main, int clue, int first, int step) {
  for (int i = 0; i < main.BoardSize; ++i) clue -= main.Solution[first + i * step] == CELL_TENT;
  return clue;
}

bool PartialAssignmentHolds(const Main& main, const Array<int>& rowClues, const Array<int>& colClues,
                            int row) {
  const int size = main.BoardSize;
  if (row < size - 2 && Missing(main, rowClues[row + 2], (row + 2) * size, 1) != 0) return false;
  for (int i = 0; i < size; ++i) {
    if (Missing(main, rowClues[i], i * size, 1) < 0 || Missing(main, colClues[i], i, size) < 0) return false;
  }
  return true;
}

}  // namespace

void PlainCheckUniqueSolution(Main& main, bool& result) {
  Array<int> treeList, treeChoice, rowClues, colClues;
  for (Array<int>* const perTree : {&treeList, &treeChoice}) perTree->Redim(main.TreeCount - 1);
  for (Array<int>* const perLine : {&rowClues, &colClues}) perLine->Redim(main.BoardSize - 1);
  PrepareBoard(main, treeList);
  for (int i = 0; i < main.BoardSize; ++i) {
    rowClues[i] = RowClue(main, i);
    colClues[i] = ColClue(main, i);
  }
  int solutionsFound = 0;
  int cursor = main.TreeCount - 1;
  for (;;) {
    main.desktop.Yield();
    if (cursor == -1) {
      if (solutionsFound++ == 1) {
        result = false;
        return;
      }
      cursor = 0;
    }
    if (cursor == main.TreeCount) {
      result = true;
      return;
    }

    const int tree = treeList[cursor];
    int& choice = treeChoice[cursor];
    for (int i = 0; i < main.CellCount; ++i) main.Solution[i] = main.Board[i];
    if (choice != 0) main.Solution[tree + StepOf(main.BoardSize, choice)] = CELL_OPEN;
    for (int k = main.TreeCount - 1; k > cursor; --k) {
      if (treeChoice[k] != 0) PlaceTent(main, treeList[k] + StepOf(main.BoardSize, treeChoice[k]));
    }

    if (!PartialAssignmentHolds(main, rowClues, colClues, RowOf(main, tree))) {
      ++cursor;
      continue;
    }
    do {
      choice = (choice + 1) % 5;
    } while (choice != 0 && !(HasSide(main, tree, choice) &&
                              main.Solution[tree + StepOf(main.BoardSize, choice)] == CELL_OPEN));
    if (choice == 0) {
      ++cursor;
    } else {
      PlaceTent(main, tree + StepOf(main.BoardSize, choice));
      --cursor;
    }
  }
}

}  // namespace bivouac
