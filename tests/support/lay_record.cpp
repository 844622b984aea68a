#include "tests/support/lay_record.h"

#include <string>

#include "game/layout.h"

namespace bivouac {

void LayRecord(Main& main, const PackRecord& record) {
  main.global.PuzzleRec = record;
  main.BoardSize = SizeOf(record.LevelSize);
  SizeLayout(main);
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
