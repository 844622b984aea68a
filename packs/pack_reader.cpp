#include "packs/pack_reader.h"

#include "game/error.h"
#include "game/game_state.h"
#include "packs/pack_access.h"
#include "storage/platform_files.h"
#include "storage/record_file.h"

namespace bivouac {
namespace {

/// What keeps a record from being drawn; empty if nothing does.
std::string DamageOf(const PackRecord& record) {
  const int size = SizeOf(record.LevelSize);
  if (size < kMinSize || size > kMaxSize)
    return "the size " + std::to_string(size) + ", which is not 6 to 18";
  for (int cell = 0; cell < size * size; ++cell) {
    const int code = record.Layout[cell];
    if (code < CELL_OPEN || code > CELL_TREE)
      return "the code " + std::to_string(code) + " in r" + std::to_string(cell / size + 1) + 'c' +
             std::to_string(cell % size + 1);
  }
  const auto damagedClue = [&](const char* kind, const FixedArray<std::int16_t, kMaxSize>& clues) {
    for (int line = 0; line < size; ++line) {
      if (clues[line] < 0 || clues[line] > size)
        return "the clue " + std::to_string(clues[line]) + " of " + kind + ' ' + std::to_string(line + 1);
    }
    return std::string();
  };
  const std::string rows = damagedClue("row", record.RowCounts);
  return rows.empty() ? damagedClue("column", record.ColCounts) : rows;
}

RecordFile<PackRecord> Open(const std::string& path) {
  if (!FileExists(path)) throw InputError(path + ": no such file");
  try {
    return RecordFile<PackRecord>(path);
  } catch (const RunTimeError& error) {
    throw InputError(error.what());
  }
}

}  // namespace

PackReader::PackReader(const std::string& path) : path_(path), file_(Open(path)) {
  count_ = file_.Counts().Whole;
  if (file_.SpareBytes() != 0) {
    throw InputError(path + ": " + std::to_string(file_.SpareBytes()) +
                     " bytes behind the last whole record");
  }
}

PackRecord PackReader::Read(long number) {
  if (number < 1 || number > count_) {
    throw InputError(path_ + ": there is no puzzle " + std::to_string(number) + ", the pack holds " +
                     std::to_string(count_));
  }
  PackRecord record;
  try {
    file_.Read(number, record);
  } catch (const RunTimeError& error) {
    throw InputError(error.what());
  }
  const std::string damage = DamageOf(record);
  if (!damage.empty())
    throw InputError(path_ + ": record " + std::to_string(number) + " is damaged: it has " + damage);
  return record;
}

}  // namespace bivouac
