// Random-access files of fixed records, counted from 1. The only code that opens such a file.
//
// Both records are 16-bit signed integers, low byte first, without gaps; a file holds nothing but records.
//
//   Pack record, 1376 bytes                  Personal record, 8 bytes
//   offset  integers  field                  offset  field
//        0       324  TentDirs                    0  PersonalPuzzle
//      648       324  Layout                      2  PersonalLevelSize
//     1296        18  RowCounts                   4  PersonalMinutes
//     1332        18  ColCounts                   6  PersonalSeconds
//     1368         1  LevelSize
//     1370         1  BestMinutes
//     1372         1  BestSeconds
//     1374         1  BestPlayer
//
// Example: a player's time of 3:25 for puzzle 300 of size 10 and level 2 (2 * 32 + 10 = 74) is
// 2C 01 4A 00 03 00 19 00; as record 2 it stands in bytes 8 to 15.
#pragma once

#include <cstdint>
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

  /// Reads a record. Requires: as many bytes as a record has. Errors: PastEndOfFile if it is not wholly in
  /// the file, BadRecordNumber below 1.
  void Read(long record, std::span<std::uint8_t> bytes);
  /// Writes a record whole and flushes it; one past the end extends the file. A write that fails leaves every
  /// other record, and the length of the file, as they were.
  void Write(long record, std::span<const std::uint8_t> bytes);

 private:
  std::streamoff OffsetOf(long record) const;

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
/// Records that are wholly in the file.
long WholeRecords(const std::string& path, int recordBytes);

void ReadRecord(RecordFile& file, long number, PackRecord& record);
void WriteRecord(RecordFile& file, long number, const PackRecord& record);
void ReadRecord(RecordFile& file, long number, PersonalRecord& record);
void WriteRecord(RecordFile& file, long number, const PersonalRecord& record);

/// Copies a whole file, and makes the copy writable for its owner. A copy that fails leaves nothing behind.
/// Requires: `to` does not exist. Errors: FileNotFound if `from` does not exist, or another file error.
void CopyWholeFile(const std::string& from, const std::string& to);
/// Errors: a file error if the path names a folder or cannot be removed.
void DeleteWholeFile(const std::string& path);

/// Runs a step and drops a file error that ends it. Returns whether there was none.
template <class Step>
bool IgnoringFileErrors(Step step) {
  try {
    step();
    return true;
  } catch (const RunTimeError& error) {
    if (!error.IsFileError()) throw;
    return false;
  }
}

}  // namespace bivouac
