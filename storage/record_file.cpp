#include "storage/record_file.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "game/text.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void ThrowFileError(ErrorNumber number, const std::string& words, const std::string& path) {
  throw RunTimeError(number, words + ": " + path);
}

/// Throws the file error for what the platform gave as the reason.
[[noreturn]] void ThrowFileError(std::errc reason, const std::string& path) {
  switch (reason) {
    case std::errc::no_such_file_or_directory:
    case std::errc::not_a_directory:
      ThrowFileError(ErrorNumber::PathNotFound, "path not found", path);
    case std::errc::no_space_on_device:
    case std::errc::file_too_large:
      ThrowFileError(ErrorNumber::DiskFull, "disk full", path);
    case std::errc::filename_too_long:
      ThrowFileError(ErrorNumber::BadFileName, "bad file name", path);
    case std::errc::io_error:
      ThrowFileError(ErrorNumber::DeviceInput, "error of the device", path);
    case std::errc::no_such_device:
    case std::errc::no_such_device_or_address:
      ThrowFileError(ErrorNumber::DeviceUnavailable, "device unavailable", path);
    default:
      ThrowFileError(ErrorNumber::FileAccess, "no access to the file", path);
  }
}

/// Calls visit(field) for every integer of a record, in the order of the file.
template <class Record, class Visit>
void ForEachField(Record& record, Visit visit) {
  if constexpr (requires { record.TentDirs; }) {
    for (auto& field : record.TentDirs) visit(field);
    for (auto& field : record.Layout) visit(field);
    for (auto& field : record.RowCounts) visit(field);
    for (auto& field : record.ColCounts) visit(field);
    visit(record.LevelSize);
    visit(record.BestMinutes);
    visit(record.BestSeconds);
    visit(record.BestPlayer);
  } else {
    visit(record.PersonalPuzzle);
    visit(record.PersonalLevelSize);
    visit(record.PersonalMinutes);
    visit(record.PersonalSeconds);
  }
}

template <int Bytes, class Record>
void ReadFields(RecordFile& file, long number, Record& record) {
  std::array<std::uint8_t, Bytes> bytes;
  file.Read(number, bytes);
  auto next = bytes.begin();
  ForEachField(record, [&](std::int16_t& field) {
    const unsigned low = *next++;
    const unsigned high = *next++;
    field = static_cast<std::int16_t>(low | high << 8);
  });
}

template <int Bytes, class Record>
void WriteFields(RecordFile& file, long number, const Record& record) {
  std::array<std::uint8_t, Bytes> bytes;
  auto next = bytes.begin();
  ForEachField(record, [&](const std::int16_t& field) {
    const auto bits = static_cast<std::uint16_t>(field);
    *next++ = static_cast<std::uint8_t>(bits & 0xFF);
    *next++ = static_cast<std::uint8_t>(bits >> 8);
  });
  file.Write(number, bytes);
}

/// Returns 0, or the platform's number for what failed. Content alone is copied: a pack that is read-only
/// where it comes from can be written where it goes.
int CopyContent(const std::string& from, const std::string& to) {
  std::ifstream source(from, std::ios::binary);
  if (!source.is_open()) return errno;
  std::ofstream copy(to, std::ios::binary | std::ios::trunc);
  if (!copy.is_open()) return errno;
  errno = 0;
  std::array<char, 1 << 16> block;
  while (copy && (source.read(block.data(), block.size()), source.gcount() > 0)) {
    copy.write(block.data(), source.gcount());
  }
  copy.close();
  if (!source.bad() && copy) return 0;
  return errno != 0 ? errno : EIO;
}

}  // namespace

RecordFile::RecordFile(const std::string& path, int recordBytes) : path_(path), recordBytes_(recordBytes) {
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) {
    ThrowFileError(ErrorNumber::FileAccess, "a folder stands in the place of the file", path);
  }
  // No buffer: a record goes out in one piece, and of one that failed nothing is left to be written later.
  stream_.rdbuf()->pubsetbuf(nullptr, 0);
  constexpr auto kRead = std::ios::in | std::ios::binary;
  constexpr auto kReadAndWrite = kRead | std::ios::out;

  stream_.open(path, kReadAndWrite);
  if (!stream_.is_open() && !FileExists(path)) {
    // Appending creates the file, and empties none that another program made in between.
    const std::ofstream created(path, std::ios::app | std::ios::binary);
    if (!created.is_open()) ThrowFileError(static_cast<std::errc>(errno), path);
    stream_.open(path, kReadAndWrite);
  }
  writable_ = stream_.is_open();
  if (!writable_) stream_.open(path, kRead);
  if (!stream_.is_open()) ThrowFileError(static_cast<std::errc>(errno), path);
  stream_.clear();
}

std::streamoff RecordFile::OffsetOf(long record) const {
  if (record < 1) ThrowFileError(ErrorNumber::BadRecordNumber, "bad record number", path_);
  return static_cast<std::streamoff>(record - 1) * recordBytes_;
}

void RecordFile::Read(long record, std::span<std::uint8_t> bytes) {
  const std::streamoff offset = OffsetOf(record);
  errno = 0;
  stream_.seekg(offset);
  stream_.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (stream_) return;
  const bool pastEnd = stream_.eof();
  stream_.clear();
  if (pastEnd) ThrowFileError(ErrorNumber::PastEndOfFile, "past the end of the file", path_);
  ThrowFileError(static_cast<std::errc>(errno), path_);
}

void RecordFile::Write(long record, std::span<const std::uint8_t> bytes) {
  const std::streamoff offset = OffsetOf(record);
  if (!writable_) ThrowFileError(ErrorNumber::PermissionDenied, "the file is read-only", path_);
  const std::uintmax_t lengthBefore = FileLength(path_);
  errno = 0;
  stream_.seekp(offset);
  stream_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  stream_.flush();
  if (stream_) return;
  const auto reason = static_cast<std::errc>(errno);
  stream_.clear();
  std::error_code ignored;
  if (FileLength(path_) > lengthBefore) fs::resize_file(path_, lengthBefore, ignored);
  ThrowFileError(reason, path_);
}

bool FileExists(const std::string& path) {
  std::error_code error;
  static_cast<void>(fs::last_write_time(path, error));
  return !error;
}

std::uintmax_t FileLength(const std::string& path) {
  std::error_code error;
  const std::uintmax_t length = fs::file_size(path, error);
  return error ? 0 : length;
}

long CountRecords(const std::string& path, int recordBytes) {
  return RoundHalfEven(static_cast<double>(FileLength(path)) / recordBytes);
}

long WholeRecords(const std::string& path, int recordBytes) {
  return static_cast<long>(FileLength(path)) / recordBytes;
}

void ReadRecord(RecordFile& file, long number, PackRecord& record) {
  ReadFields<kPackRecordBytes>(file, number, record);
}

void WriteRecord(RecordFile& file, long number, const PackRecord& record) {
  WriteFields<kPackRecordBytes>(file, number, record);
}

void ReadRecord(RecordFile& file, long number, PersonalRecord& record) {
  ReadFields<kPersonalRecordBytes>(file, number, record);
}

void WriteRecord(RecordFile& file, long number, const PersonalRecord& record) {
  WriteFields<kPersonalRecordBytes>(file, number, record);
}

void CopyWholeFile(const std::string& from, const std::string& to) {
  if (!FileExists(from)) ThrowFileError(ErrorNumber::FileNotFound, "file not found", from);
  // Under another name until it is whole: a program that ends in between leaves no half of a file.
  const std::string partial = to + ".part";
  int reason = CopyContent(from, partial);
  if (reason == 0) {
    std::error_code error;
    fs::rename(partial, to, error);
    reason = error.value();
  }
  if (reason == 0) return;
  std::error_code ignored;
  fs::remove(partial, ignored);
  ThrowFileError(static_cast<std::errc>(reason), to);
}

void DeleteWholeFile(const std::string& path) {
  std::error_code error;
  if (fs::is_directory(path, error)) {
    ThrowFileError(ErrorNumber::FileAccess, "a folder stands in the place of the file", path);
  }
  fs::remove(path, error);
  if (error) ThrowFileError(static_cast<std::errc>(error.value()), path);
}

}  // namespace bivouac
