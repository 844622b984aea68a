#include "rating/rater.h"

namespace bivouac {
namespace {

/// The main of a rating, if its board can be worked on; before anything is read from it.
Main& LaidOut(Main& main) {
  const int size = main.BoardSize;
  const bool laidOut = IsSize(size) && main.CellCount == size * size;
  if (!laidOut || main.Board.Upper() != main.CellCount - 1) ThrowIndexOutsideArray();
  return main;
}

Lines EmptyLines(const Main& main, LineKind kind) {
  const PackRecord& puzzle = main.global.PuzzleRec;
  const bool row = kind == LineKind::Row;
  return {main.Board,
          {kind, main.BoardSize},
          Clues(row ? puzzle.RowCounts : puzzle.ColCounts),
          Clues(row ? main.RowCnt : main.ColCnt)};
}

}  // namespace

Rater::Rater(Main& main_)
    : main(LaidOut(main_)),
      Size(main.BoardSize),
      Rows(EmptyLines(main, LineKind::Row)),
      Columns(EmptyLines(main, LineKind::Column)) {
  const PackRecord& puzzle = main.global.PuzzleRec;
  for (int row = 0, cell = 0; row < Size; ++row) {
    for (int col = 0; col < Size; ++col, ++cell) {
      const int code = puzzle.Layout[cell] == CELL_TREE ? CELL_TREE : CELL_OPEN;
      main.Board[cell] = code;
      Rows.Add(code, row, col);
      Columns.Add(code, col, row);
      Wrong += code != puzzle.Layout[cell];
    }
  }
}

void Rater::Set(int cell, int code) {
  int& content = main.Board[cell];
  const int row = cell / Size;
  const int col = cell % Size;
  Rows.Change(row, col, content, code);
  Columns.Change(col, row, content, code);
  const int finished = main.global.PuzzleRec.Layout[cell];
  Wrong += (code != finished) - (content != finished);
  content = code;
}

bool Rater::Act() {
  bool tents = false;
  for (const FoundField& field : Found.Fields) {
    if (field.Is == Role::Tent) {
      Set(field.Cell, CELL_TENT);
      tents = true;
    } else if (field.Is == Role::Grass && main.Board[field.Cell] == CELL_OPEN) {
      Set(field.Cell, CELL_GRASS);
    }
  }
  return tents;
}

void Rater::SweepTentNeighbours() {
  for (int row = 0; row < Size; ++row) {
    ForEachIn(Rows.Open(row) & Around(Rows, CELL_TENT, row),
              [&](int col) { Set(Rows.CellAt(row, col), CELL_GRASS); });
  }
}

}  // namespace bivouac
