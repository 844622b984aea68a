#include "workbench/workbench.h"

#include "game/layout.h"
#include "storage/navigation.h"

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
  LayPuzzleOut(main);
}

}  // namespace bivouac
