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
#include <span>
#include <string>
#include <vector>

#include "game/records.h"
#include "storage/shared_file.h"

namespace bivouac {

static_assert(sizeof(PackRecord) == 1376 && sizeof(PersonalRecord) == 8, "16-bit fields without gaps");

/// How many records a file holds, as those count who ask. Puzzles at the end of a pack that were never
/// finished are none.
struct RecordCounts {
  long Rounded = 0;  ///< Its length in records, rounded to the nearest integer, a half to the even one.
  long Whole = 0;    ///< Records that are wholly in it.
  long Next = 1;     ///< The number of a record added to it: the length plus 1, rounded as a whole. A file of
                     ///< one record and a half counts 2, and yet gets number 2.
};

/// An open file of records. Closed by its destructor.
template <class Record>
class RecordFile : public SharedFile {
 public:
  static constexpr int kBytes = sizeof(Record);

  explicit RecordFile(std::string path, Access access = Access::Read, Patience patience = {})
      : SharedFile(std::move(path), access, std::move(patience)) {}

  /// Errors: PastEndOfFile if the record is not wholly in the file, BadRecordNumber below 1.
  void Read(long number, Record& record) const;
  /// All whole records from that one on.
  std::vector<Record> ReadAll(long first = 1) const;
  /// Writes a record whole, in a turn of its own unless one is held; one past the end extends the file. A
  /// write that fails leaves every other record, and the length of the file, as they were.
  void Write(long number, const Record& record) { WriteAll(number, std::span(&record, 1)); }
  /// The same for records that follow one another. A program that dies leaves the first of them, each whole.
  void WriteAll(long first, std::span<const Record> records);
  /// Writes what may change in a record that stands there, its last 8 bytes: of a puzzle its level and best
  /// time. Nobody ever sees a part of it.
  void WriteEnd(long number, const Record& record);
  /// Removes a file that holds nothing. Whoever waits for a turn finds out that the name is free.
  void RemoveIfEmpty();
  RecordCounts Counts() const;
  /// Bytes behind the last whole record.
  int SpareBytes() const { return static_cast<int>(Length() % kBytes); }

 private:
  void ReadInto(long first, std::span<Record> records) const;
  std::uintmax_t OffsetOf(long number) const;
  std::uintmax_t FinishedLength() const;
};

/// The bytes of records as they stand in a file.
template <class Record>
std::vector<std::uint8_t> BytesOf(std::span<const Record> records);

/// The counts of a file; of none if it cannot be read.
template <class Record>
RecordCounts CountRecords(const std::string& path);

}  // namespace bivouac
