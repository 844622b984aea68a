#include "tools/pack_access.h"

#include <filesystem>
#include <system_error>

#include "game/error.h"
#include "storage/record_file.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

/// Removes a file at the end of the scope unless it was renamed away.
struct Partial {
  explicit Partial(fs::path path) : Path(std::move(path)) {
    std::error_code ignored;
    fs::remove(Path, ignored);
  }
  Partial(const Partial&) = delete;
  Partial& operator=(const Partial&) = delete;
  ~Partial() {
    std::error_code ignored;
    fs::remove(Path, ignored);
  }
  const fs::path Path;
};

}  // namespace

std::string FileName(const std::string& path) {
  return fs::path(path).filename().string();
}

PackContent ReadContent(const std::string& path) {
  // Opening creates what is not there.
  if (!FileExists(path)) throw InputError(path + ": no such file");
  try {
    RecordFile file(path, kPackRecordBytes);
    PackContent content;
    content.Records.resize(static_cast<std::size_t>(WholeRecords(path, kPackRecordBytes)));
    long number = 0;
    for (PackRecord& record : content.Records) ReadRecord(file, ++number, record);
    content.SpareBytes = static_cast<long>(FileLength(path)) - number * kPackRecordBytes;
    return content;
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
    const fs::path target = fs::canonical(path);
    const Partial partial(target.string() + ".new");
    {
      RecordFile file(partial.Path.string(), kPackRecordBytes);
      long number = 0;
      for (const PackRecord& record : records) WriteRecord(file, ++number, record);
    }
    fs::permissions(partial.Path, fs::status(target).permissions());
    fs::rename(partial.Path, target);
  } catch (const RunTimeError& error) {
    throw InputError(error.what());
  } catch (const fs::filesystem_error& error) {
    throw InputError(path + ": " + error.code().message());
  }
}

}  // namespace bivouac
