#include "packs/pack_reader.h"

#include <algorithm>

#include "packs/ranges.h"
#include "storage/platform_files.h"

namespace bivouac {
namespace {

void RequireWhole(const std::string& path, long spareBytes) {
  if (spareBytes != 0)
    throw InputError(path + ": " + std::to_string(spareBytes) + " bytes behind the last whole record");
}

void RequireSizes(const std::string& path, const std::vector<PackRecord>& records, int lowest, int highest) {
  long number = 0;
  for (const PackRecord& record : records) {
    ++number;
    const int size = SizeOf(record.LevelSize);
    if (size >= lowest && size <= highest) continue;
    throw InputError(path + ": record " + std::to_string(number) + " has the size " + std::to_string(size) +
                     (lowest == highest ? ", not " + std::to_string(lowest) : ", which is not 6 to 18"));
  }
}

/// What keeps a record from being drawn; empty if nothing does.
std::string DamageOf(const PackRecord& record) {
  const int size = SizeOf(record.LevelSize);
  if (!IsSize(size)) return "the size " + std::to_string(size) + ", which is not 6 to 18";
  std::string damage;
  ForEachOutOfRange(record, [&](RecordField field, int index, int value, int highest) {
    const bool isDrawn = highest > 0 && field != RecordField::TentDirs;
    if (!isDrawn || !damage.empty()) return;
    damage = field == RecordField::Layout
                 ? "the code " + std::to_string(value) + " in r" + std::to_string(index / size + 1) + 'c' +
                       std::to_string(index % size + 1)
                 : "the clue " + std::to_string(value) + " of " +
                       (field == RecordField::RowCounts ? "row " : "column ") + std::to_string(index + 1);
  });
  return damage;
}

}  // namespace

RecordFile<PackRecord> OpenPack(const std::string& path, Access access) {
  if (!FileExists(path)) throw InputError(path + ": no such file");
  return RecordFile<PackRecord>(path, access);
}

PackContent ContentOf(const RecordFile<PackRecord>& pack) {
  PackContent content{pack.ReadAll(), pack.SpareBytes()};
  const auto records = static_cast<long>(pack.TakeStamp().Length / RecordFile<PackRecord>::kBytes);
  content.Unfinished = std::max(0L, records - static_cast<long>(content.Records.size()));
  return content;
}

const std::vector<PackRecord>& SoundRecords(const std::string& path, const PackContent& content) {
  RequireWhole(path, content.SpareBytes);
  RequireSizes(path, content.Records, kMinSize, kMaxSize);
  return content.Records;
}

std::vector<PackRecord> ReadSoundPack(const std::string& path) {
  return SoundRecords(path, ContentOf(OpenPack(path)));
}

void RequireSize(const std::string& path, const std::vector<PackRecord>& records, int size) {
  RequireSizes(path, records, size, size);
}

PackReader::PackReader(const std::string& path)
    : path_(path), file_(OpenPack(path)), count_(file_.Counts().Whole) {
  RequireWhole(path, file_.SpareBytes());
}

PackRecord PackReader::Read(long number) const {
  if (number < 1 || number > count_) {
    throw InputError(path_ + ": there is no puzzle " + std::to_string(number) + ", the pack holds " +
                     std::to_string(count_));
  }
  PackRecord record;
  file_.Read(number, record);
  const std::string damage = DamageOf(record);
  if (!damage.empty())
    throw InputError(path_ + ": record " + std::to_string(number) + " is damaged: it has " + damage);
  return record;
}

}  // namespace bivouac
