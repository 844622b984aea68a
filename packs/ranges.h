// The ranges of what a record holds.
#pragma once

#include "game/game_state.h"

namespace bivouac {

enum class RecordField { Layout, TentDirs, RowCounts, ColCounts };

/// Calls visit(field, index, value, highest) for every value that is not 0 to `highest`, which is 0 behind
/// the last cell and line of the board: by cell, then by line. Requires: the record's size is 6 to 18.
template <class Visit>
void ForEachOutOfRange(const PackRecord& record, Visit visit) {
  const int size = SizeOf(record.LevelSize);
  const auto look = [&](RecordField field, int index, int value, int highest) {
    if (value < 0 || value > highest) visit(field, index, value, highest);
  };
  for (int cell = 0; cell < kMaxCells; ++cell) {
    const bool isOnBoard = cell < size * size;
    look(RecordField::Layout, cell, record.Layout[cell], isOnBoard ? CELL_TREE : 0);
    look(RecordField::TentDirs, cell, record.TentDirs[cell], isOnBoard ? WEST : 0);
  }
  for (int line = 0; line < kMaxSize; ++line) {
    const int highest = line < size ? size : 0;
    look(RecordField::RowCounts, line, record.RowCounts[line], highest);
    look(RecordField::ColCounts, line, record.ColCounts[line], highest);
  }
}

}  // namespace bivouac
