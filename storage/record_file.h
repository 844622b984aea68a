// Random-access files of fixed records, counted from 1. The only code that opens such a file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>

#include "game/records.h"

namespace bivouac {

inline constexpr int kPackRecordBytes = 1376;
inline constexpr int kPersonalRecordBytes = 8;

/// An open file of records. Closed by its destructor. All failures are RunTimeErrors that are file errors.
class RecordFile {
 public:
  /// Opens the file for reading and writing, or for reading alone where writing is not allowed. Creates it,
  /// empty, if it does not exist.
  RecordFile(const std::string& path, int recordBytes);
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  /// Reads a record. Errors: PastEndOfFile if it is not wholly in the file, BadRecordNumber below 1.
  void Read(long record, std::span<std::uint8_t> bytes);
  /// Writes a record whole and flushes it; one past the end extends the file. A write that fails leaves every
  /// other record, and the length of the file, as they were.
  void Write(long record, std::span<const std::uint8_t> bytes);

 private:
  std::string path_;
  int recordBytes_;
  bool writable_ = false;
  std::fstream stream_;
};

/// True if the path names something whose date can be asked for.
bool FileExists(const std::string& path);
/// Length in bytes; 0 for a folder or a file that does not exist.
std::uintmax_t FileLength(const std::string& path);
/// Length / recordBytes, rounded to the nearest integer, a half to the even one.
long CountRecords(const std::string& path, int recordBytes);

void ReadRecord(RecordFile& file, long number, PackRecord& record);
void WriteRecord(RecordFile& file, long number, const PackRecord& record);
void ReadRecord(RecordFile& file, long number, PersonalRecord& record);
void WriteRecord(RecordFile& file, long number, const PersonalRecord& record);

}  // namespace bivouac
