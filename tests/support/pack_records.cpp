#include "tests/support/pack_records.h"

#include "game/layout.h"
#include "storage/record_file.h"

namespace bivouac {

std::vector<PackRecord> ReadPack(const std::string& path) {
  std::vector<PackRecord> records(static_cast<std::size_t>(CountRecords(path, kPackRecordBytes)));
  RecordFile pack(path, kPackRecordBytes);
  long number = 0;
  for (PackRecord& record : records) ReadRecord(pack, ++number, record);
  return records;
}

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
