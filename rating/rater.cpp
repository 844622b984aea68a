#include "rating/rater.h"

#include "game/text.h"

namespace bivouac {

int LineView::Clue(int line) {
  std::optional<int>& clue = clues_[Index(line)];
  if (!clue) clue = IntegerFromText(labels_[line].Caption);
  return *clue;
}

const LineRuns& LineView::Runs(int line) {
  KnownRuns& known = runs_[Index(line)];
  if (known.Open != lines.Open(line)) known = {lines.Open(line), CutRuns(lines.Open(line))};
  return known.Runs;
}

Rater::Rater(Main& main_)
    : main(main_),
      size(main.BoardSize),
      cells(main.CellCount),
      rows({Direction::Rows, size}, main.global.PuzzleRec.RowCounts, main.RowCnt),
      columns({Direction::Columns, size}, main.global.PuzzleRec.ColCounts, main.ColCnt) {
  const bool laidOut = size >= kMinSize && size <= kMaxSize && cells == size * size;
  if (!laidOut || main.Board.Upper() != cells - 1) ThrowIndexOutsideArray();
  const PackRecord& puzzle = main.global.PuzzleRec;
  for (int row = 0, cell = 0; row < size; ++row) {
    for (int col = 0; col < size; ++col, ++cell) {
      const int code = puzzle.Layout[cell] == CELL_TREE ? CELL_TREE : CELL_OPEN;
      main.Board[cell] = code;
      rows.lines.Add(code, row, col);
      columns.lines.Add(code, col, row);
      wrong += code != puzzle.Layout[cell];
    }
  }
}

void Rater::Set(int cell, int code) {
  int& content = main.Board[cell];
  const int row = cell / size;
  const int col = cell % size;
  rows.Change(row, col, content, code);
  columns.Change(col, row, content, code);
  const int finished = main.global.PuzzleRec.Layout[cell];
  wrong += (code != finished) - (content != finished);
  content = code;
}

bool Rater::GrassIfOpen(int cell) {
  if (!IsOpen(cell)) return false;
  Set(cell, CELL_GRASS);
  return true;
}

void Rater::SetAll(const Lines& lines, int line, Positions positions, int code) {
  AnyIn(positions, [&](int position) {
    Set(lines.axis.At(line, position), code);
    return false;
  });
}

}  // namespace bivouac
