#include "game/play.h"

#include "game/board.h"
#include "game/clock.h"
#include "game/layout.h"
#include "game/sound.h"

namespace bivouac {
namespace {

void ShowStepCount(Main& main) {
  main.LabelStap.Caption = std::to_string(main.StepCount);
}

void ChangeCell(Main& main, int cell, int code) {
  main.Board[cell] = code;
  SetPicture(main, cell, code);
  RefreshLineColours(main, cell, LineRule::Undo);
}

void MakeGrass(Main& main, int cell) {
  main.Board[cell] = CELL_GRASS;
  SetPicture(main, cell, CELL_GRASS);
}

void ClearBoardAndBuildSolution(Main& main) {
  for (int cell = 0; cell < main.CellCount; ++cell) main.Solution[cell] = CELL_OPEN;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] != CELL_TREE) {
      SetPicture(main, cell, CELL_OPEN);
      main.Board[cell] = CELL_OPEN;
      continue;
    }
    SetPicture(main, cell, CELL_TREE);
    main.Solution[cell] = CELL_TREE;
    const int direction = main.TentDir[cell];
    if (IsDirection(direction)) main.Solution[cell + StepOf(main.BoardSize, direction)] = CELL_TENT;
  }
}

/// A line that needs no tent is finished from the start.
void SettleZeroClue(Main& main, Label& label, int clue, int first, int step) {
  if (clue > 0) return;
  label.ForeColor = TextColour::Green;
  for (int i = 0; i < main.BoardSize; ++i) {
    const int cell = first + i * step;
    if (main.Board[cell] == CELL_OPEN) MakeGrass(main, cell);
  }
}

}  // namespace

void BeginOpening(Main& main) {
  main.StepCount = 0;
  main.MoveLogTop = 0;
  main.PuzzleOver = false;
  main.BoardLive = true;
  main.Paused = false;
  RefreshButtons(main);
  main.cmdPause.Enabled = false;
  main.cmdSolution.Enabled = false;
  main.cmdHint.Enabled = false;
}

void StartPuzzle(Main& main) {
  Speel(main, Sound::Discard);
  main.StepCount = 0;
  main.MoveLogTop = 0;
  main.RememberedStep = -1;
  RefreshButtons(main);
  ShowStepCount(main);
  const int size = main.BoardSize;
  for (int i = 0; i < size; ++i) {
    main.RowCnt[i].ForeColor = TextColour::WindowText;
    main.ColCnt[i].ForeColor = TextColour::WindowText;
  }

  ClearBoardAndBuildSolution(main);
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] == CELL_OPEN && !TouchesTree(main, cell)) MakeGrass(main, cell);
  }
  for (int r = 0; r < size; ++r) SettleZeroClue(main, main.RowCnt[r], RowClue(main, r), r * size, 1);
  for (int c = 0; c < size; ++c) SettleZeroClue(main, main.ColCnt[c], ColClue(main, c), c, size);

  // Elapsed is left to the first tick.
  ReadClock(main);
  main.ClockStart = main.ClockNow;
  main.Timer3.Enabled = true;
  main.LabelTijd.Caption = "00:00";
}

void cmdUndo_Click(Main& main) {
  if (main.BoardLive) Speel(main, Sound::UndoRedo);
  const int cell = main.MoveLog[main.StepCount];
  const int before = main.Board[cell] - 1;
  ChangeCell(main, cell, before < 0 ? CELL_TENT : before);
  --main.StepCount;
  ShowStepCount(main);
  if (main.BoardLive) RefreshButtons(main);
}

void cmdRedo_Click(Main& main) {
  Speel(main, Sound::UndoRedo);
  ++main.StepCount;
  const int cell = main.MoveLog[main.StepCount];
  const int after = main.Board[cell] + 1;
  ChangeCell(main, cell, after == CELL_TREE ? CELL_OPEN : after);
  ShowStepCount(main);
  RefreshButtons(main);
}

void cmdSolution_Click(Main& main) {
  Speel(main, Sound::Solution);
  for (int cell = 0; cell < main.CellCount; ++cell) {
    const int code = main.Solution[cell];
    SetPicture(main, cell, code == CELL_TREE || code == CELL_TENT ? code : CELL_GRASS);
  }
  main.Timer3.Enabled = false;
  main.PuzzleOver = true;
  RefreshButtons(main);
}

}  // namespace bivouac
