#include "game/board.h"

#include "game/text.h"

namespace bivouac {
namespace {

void ColourClue(Label& label, const LineCount& count, LineRule rule) {
  const int clue = IntegerFromText(label.Caption);
  if (count.Tents == clue && (rule == LineRule::Undo || count.Open == 0)) {
    label.ForeColor = TextColour::Green;
  } else if (count.Tents > clue) {
    label.ForeColor = TextColour::Red;
  } else {
    label.ForeColor = TextColour::WindowText;
  }
}

}  // namespace

int RowClue(const Main& main, int row) {
  return IntegerFromText(main.RowCnt[row].Caption);
}

int ColClue(const Main& main, int col) {
  return IntegerFromText(main.ColCnt[col].Caption);
}

void SetPicture(Main& main, int cell, int tile) {
  if (cell >= 0 && cell < kMaxCells) main.Grid[cell].Picture = tile;
}

bool TouchesTree(const Main& main, int cell) {
  bool touches = false;
  ForEachSide(main.BoardSize, cell,
              [&](int side, int) { touches = touches || main.Board[side] == CELL_TREE; });
  return touches;
}

LineCount CountLine(const Main& main, int first, int step) {
  LineCount count;
  for (int i = 0; i < main.BoardSize; ++i) {
    const int code = main.Board[first + i * step];
    if (code == CELL_TENT) ++count.Tents;
    if (code == CELL_OPEN) ++count.Open;
  }
  return count;
}

void RefreshLineColours(Main& main, int cell, LineRule rule) {
  const int row = RowOf(main, cell);
  const int col = ColOf(main, cell);
  ColourClue(main.RowCnt[row], CountLine(main, row * main.BoardSize, 1), rule);
  ColourClue(main.ColCnt[col], CountLine(main, col, main.BoardSize), rule);
}

void FillAroundTent(Main& main, int tent, FillTarget target) {
  Array<int>& cells = target == FillTarget::Solution ? main.Solution : main.Board;
  AnyAround(main, tent, [&](int cell) {
    if (cells[cell] == CELL_OPEN) {
      cells[cell] = CELL_GRASS;
      if (target == FillTarget::DrawnBoard) SetPicture(main, cell, CELL_GRASS);
    }
    return false;
  });
}

}  // namespace bivouac
