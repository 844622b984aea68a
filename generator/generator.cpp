#include "generator/generator.h"

#include <string>

#include "game/board.h"
#include "game/play.h"
#include "game/text.h"
#include "generator/layout_drawing.h"
#include "generator/unique_solution.h"
#include "rating/rating.h"
#include "storage/saving.h"

namespace bivouac {
namespace {

constexpr int kNotRated = -1;

void ClearRecord(Main& main) {
  main.global.PuzzleRec = PackRecord{};
  main.global.PuzzleRec.LevelSize = LevelSizeOf(0, main.BoardSize);
}

/// Directions of trees of rejected layouts stay in the record where the new layout has no tree.
void CopyLayoutToRecord(Main& main) {
  PackRecord& record = main.global.PuzzleRec;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] == CELL_TREE) record.TentDirs[cell] = static_cast<std::int16_t>(main.TentDir[cell]);
    record.Layout[cell] = static_cast<std::int16_t>(main.Board[cell]);
  }
  for (int i = 0; i < main.BoardSize; ++i) {
    record.RowCounts[i] = static_cast<std::int16_t>(RowClue(main, i));
    record.ColCounts[i] = static_cast<std::int16_t>(ColClue(main, i));
  }
}

void ShowWaiting(Main& main) {
  BeginOpening(main);
  for (int cell = 0; cell < main.CellCount; ++cell) SetPicture(main, cell, CELL_OPEN);
  main.GenFirstTick = true;
  main.Timer1.Enabled = true;
  main.LabelStap.Caption = std::to_string(main.StepCount);
}

void Report(Main& main) {
  int level = 0;
  RatePuzzle(main, level);
  main.desktop.Show(MessageBox{.Title = "Generate report",
                               .Text = "The new generated puzzle has level " + std::to_string(level) +
                                       " with difficulty " + SevenDigits(main.Difficulty),
                               .Symbol = BoxSymbol::Information});
}

}  // namespace

void MakePuzzle(Main& main) {
  PackRecord& record = main.global.PuzzleRec;
  do {
    ClearRecord(main);
    bool unique = false;
    while (!unique) {
      DrawLayout(main);
      CopyLayoutToRecord(main);
      CheckUniqueSolution(main, unique);
    }
    RatePuzzle(main, main.Level);
  } while (main.Level == kNotRated);
  record.LevelSize = LevelSizeOf(main.Level, main.BoardSize);
  for (int cell = 0; cell < main.CellCount; ++cell) main.Board[cell] = record.Layout[cell];
}

void cmdGenerate_Click(Main& main) {
  ShowWaiting(main);
  MakePuzzle(main);
  Save_New(main);
  main.global.PersonalPos = 0;
  main.Timer1.Enabled = false;
  Report(main);
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Visible = true;
    main.ColCnt[i].Visible = true;
  }
  StartPuzzle(main);
}

}  // namespace bivouac
