#include "game/layout.h"

#include "game/board.h"

namespace bivouac {
namespace {

constexpr int kBoardCorner = 360;  // Left and top of the first cell.
constexpr int kLabelSide = 255;    // Height of every clue label, width of those of the rows.
constexpr int kColumnLabelTop = 120;
constexpr int kRowLabelLeft = 105;
constexpr int kOverlap = 15;  // A cell is larger than the pitch by this, so that no gaps show.

/// Distance from cell to cell.
int PitchOf(int size) {
  if (size <= 6) return 1080;
  if (size == 7) return 840;
  if (size <= 9) return 720;
  if (size == 10) return 600;
  if (size <= 13) return 480;
  return 360;
}

}  // namespace

void SizeLayout(Main& main) {
  const int size = main.BoardSize;
  main.CellCount = size * size;
  main.Board.Redim(main.CellCount - 1);
  main.TentDir.Redim(main.CellCount - 1);
  main.Solution.Redim(main.CellCount - 1);
  for (ImageCell& cell : main.Grid) cell.Visible = false;
  for (Label& label : main.RowCnt) label.Visible = false;
  for (Label& label : main.ColCnt) label.Visible = false;

  const int pitch = PitchOf(size);
  const int cellSide = pitch + kOverlap;
  for (int i = 0; i < size; ++i) {
    const int offset = kBoardCorner + i * pitch;
    main.ColCnt[i].At = {offset, kColumnLabelTop, cellSide, kLabelSide};
    main.RowCnt[i].At = {kRowLabelLeft, offset + (pitch - kLabelSide) / 2, kLabelSide, kLabelSide};
    for (int j = 0; j < size; ++j) {
      main.Grid[i * size + j].At = {kBoardCorner + j * pitch, offset, cellSide, cellSide};
    }
  }
  for (int cell = 0; cell < main.CellCount; ++cell) {
    SetPicture(main, cell, CELL_OPEN);
    main.Grid[cell].Visible = true;
  }
  for (int i = 0; i < size; ++i) {
    main.RowCnt[i].Visible = true;
    main.ColCnt[i].Visible = true;
  }
}

void RefreshButtons(Main& main) {
  const bool over = main.PuzzleOver;
  main.cmdOptions.Enabled = over;
  main.cmdGenerate.Enabled = over;
  main.cmdPlayers.Enabled = over;
  main.cmdResetTime.Enabled = over;
  main.cmdSolution.Enabled = !over;
  if (over) {
    const int puzzles = main.PuzzleCount[main.BoardSize - kMinSize];
    main.cmdPause.Enabled = false;
    main.cmdRestart.Enabled = false;
    main.cmdUndo.Enabled = false;
    main.cmdRedo.Enabled = false;
    main.cmdHint.Enabled = false;
    main.cmdOpen.Enabled = puzzles > 0;
    main.cmdNext.Enabled = main.PuzzleNo != 0 && main.PuzzleNo != puzzles;
  } else {
    main.cmdOpen.Enabled = false;
    main.cmdNext.Enabled = false;
    main.cmdRestart.Enabled = main.StepCount != 0;
    main.cmdUndo.Enabled = main.StepCount != 0;
    main.cmdRedo.Enabled = main.StepCount < main.MoveLogTop;
    main.cmdPause.Enabled = !main.Paused && main.BoardLive;
    main.cmdHint.Enabled = !main.Paused && main.BoardLive;
  }
}

}  // namespace bivouac
