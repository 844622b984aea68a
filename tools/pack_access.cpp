#include "tools/pack_access.h"

#include <filesystem>

#include "game/error.h"
#include "storage/record_file.h"

namespace bivouac {
namespace fs = std::filesystem;

std::string FileName(const std::string& path) {
  return fs::path(path).filename().string();
}

PackContent ReadContent(const std::string& path) {
  // Opening creates what is not there.
  if (!FileExists(path)) throw InputError(path + ": no such file");
  try {
    RecordFile<PackRecord> file(path, Patience::Long);
    return {file.ReadAll(), file.SpareBytes()};
  } catch (const RunTimeError& error) {
    throw InputError(error.what());
  }
}

std::vector<PackRecord> ReadSoundPack(const std::string& path) {
  PackContent content = ReadContent(path);
  if (content.SpareBytes != 0) {
    throw InputError(path + ": " + std::to_string(content.SpareBytes) +
                     " bytes behind the last whole record");
  }
  long number = 0;
  for (const PackRecord& record : content.Records) {
    ++number;
    const int size = SizeOf(record.LevelSize);
    if (size < kMinSize || size > kMaxSize) {
      throw InputError(path + ": record " + std::to_string(number) + " has the size " + std::to_string(size) +
                       ", which is not 6 to 18");
    }
  }
  return std::move(content.Records);
}

void ReplacePack(const std::string& path, const std::vector<PackRecord>& records) {
  try {
    Replacement replacement(path);
    replacement.Append(records);
    replacement.Sync();
    RecordFile<PackRecord> old(path, Patience::Long);
    const Turn turn(old);
    replacement.TakePlace();
  } catch (const RunTimeError& error) {
    throw InputError(error.what());
  }
}

}  // namespace bivouac
