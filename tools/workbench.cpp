#include "tools/workbench.h"

#include "game/layout.h"

namespace bivouac {

BoxAnswer HeadlessDesktop::Show(const MessageBox& box) {
  if (box.Buttons != BoxButtons::YesNo) return BoxAnswer::Ok;
  if (OnQuestion) OnQuestion();
  return box.Symbol == BoxSymbol::Question ? BoxAnswer::Yes : BoxAnswer::No;
}

Workbench::Workbench() {
  // Sounds have the ids of their numbers.
  main.SoundOn = true;
  int id = 0;
  for (int& sound : main.SoundId) sound = id++;
}

void LayOutSize(Main& main, int size) {
  main.BoardSize = size;
  SizeLayout(main);
}

void LayOutRecord(Main& main, const PackRecord& record) {
  main.global.PuzzleRec = record;
  LayOutSize(main, SizeOf(record.LevelSize));
  main.TreeCount = 0;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.Board[cell] = record.Layout[cell];
    if (main.Board[cell] != CELL_TREE) continue;
    main.TentDir[cell] = record.TentDirs[cell];
    ++main.TreeCount;
  }
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Caption = std::to_string(record.RowCounts[i]);
    main.ColCnt[i].Caption = std::to_string(record.ColCounts[i]);
  }
}

}  // namespace bivouac
