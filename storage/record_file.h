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
//
// Several programs may use one file. Whoever changes it holds the platform's lock on it for that one turn,
// and counts within the turn; whoever reads waits for such a turn at most. The kernel frees the lock of a
// program that dies. Where a file system has no locks, nobody waits. A rewrite is a new file renamed over the
// old one.
#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "game/records.h"

namespace bivouac {

static_assert(sizeof(PackRecord) == 1376 && sizeof(PersonalRecord) == 8, "16-bit fields without gaps");

/// How many records a file holds, as those count who ask.
struct RecordCounts {
  long Rounded = 0;  ///< Its length in records, rounded to the nearest integer, a half to the even one.
  long Whole = 0;    ///< Records that are wholly in it.
  long Next = 1;     ///< The number of a record added to it: the length plus 1, rounded as a whole. A file of
                     ///< one record and a half counts 2, and yet gets number 2.
};

/// How long to wait for another program's turn, in all: a program that was halted in its turn costs this
/// once.
enum class Patience {
  Short,  ///< A tenth of a second: a window waits with it.
  Long,   ///< Half a minute.
};

/// An open file, for RecordFile and Turn. All failures are RunTimeErrors that are file errors.
class SharedFile {
 public:
  SharedFile(std::string path, Patience patience);
  SharedFile(const SharedFile&) = delete;
  SharedFile& operator=(const SharedFile&) = delete;
  ~SharedFile();

  /// Returns when everything written has reached the disk, and with it the name of a new file.
  void Sync();
  /// How often a file was opened: once, and again whenever a turn found another in its place.
  int Openings() const { return openings_; }

 protected:
  void ReadAt(std::uintmax_t offset, std::span<std::uint8_t> bytes);
  /// Bytes of whole records: what is cut off a write that a killed program left.
  void WriteAt(std::uintmax_t offset, std::span<const std::uint8_t> bytes, int recordBytes);
  std::uintmax_t Length();
  const std::string& Path() const { return path_; }

 private:
  friend class Turn;
  void Open();
  void Close();
  bool LockToRead();
  void CutWhatAKilledProgramLeft();

  std::string path_;
  Patience patience_;
  int descriptor_ = -1;
  bool writable_ = false;
  bool maybeNew_ = false;                ///< Its name may not have reached the disk.
  std::chrono::milliseconds waited_{0};  ///< In vain for a turn that has not ended yet.
  int turns_ = 0;
  int openings_ = 0;
};

/// A turn of writing: from its beginning to its end no other program changes the file, so that what was
/// counted holds. If the file was replaced meanwhile, the new one is opened. Turns may stand one inside
/// another. Errors: PermissionDenied if another program's turn does not end.
class Turn {
 public:
  explicit Turn(SharedFile& file);
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;
  ~Turn();

 private:
  SharedFile& file_;
};

/// An open file of records. Closed by its destructor.
template <class Record>
class RecordFile : public SharedFile {
 public:
  static constexpr int kBytes = sizeof(Record);

  /// Opens the file for reading and writing, or for reading alone where writing is not allowed. Creates it,
  /// empty, if it does not exist.
  explicit RecordFile(std::string path, Patience patience = Patience::Short)
      : SharedFile(std::move(path), patience) {}

  /// Errors: PastEndOfFile if the record is not wholly in the file, BadRecordNumber below 1.
  void Read(long number, Record& record);
  /// All whole records from that one on.
  std::vector<Record> ReadAll(long first = 1);
  /// Writes a record whole, in a turn of its own unless one is held; one past the end extends the file. A
  /// write that fails leaves every other record, and the length of the file, as they were.
  void Write(long number, const Record& record);
  /// The same for records that follow one another, in one stroke: all of them or none.
  void WriteAll(long first, std::span<const Record> records);
  RecordCounts Counts();
  /// Bytes behind the last whole record.
  int SpareBytes() { return static_cast<int>(Length() % kBytes); }

 private:
  std::uintmax_t OffsetOf(long number) const;
};

/// The counts of a file by its length alone; of none if it does not exist or is a folder.
template <class Record>
RecordCounts CountRecords(const std::string& path);

/// A new file that takes the place of an old one when it is whole. It lies beside the old one under a hidden
/// name, and is removed unless it took its place.
class Replacement {
 public:
  /// Requires: `path` is a file or a link to one, or nothing is there yet. A link is followed; mode and owner
  /// are those of the old file.
  explicit Replacement(const std::string& path);
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  ~Replacement();

  void Append(std::span<const std::uint8_t> bytes);
  template <class Record>
  void Append(const std::vector<Record>& records);
  /// Returns when the content has reached the disk.
  void Sync();
  /// Takes the place of the old file, and returns when that has reached the disk.
  /// Requires: synced; the caller holds a turn of the old file.
  void TakePlace();
  /// Becomes the file unless there is one by now, which then stays. Returns when that has reached the disk.
  void TakeFreePlace();

 private:
  std::string target_;
  std::string hidden_;
  int descriptor_ = -1;
};

/// True if the path names something whose date can be asked for.
bool FileExists(const std::string& path);

/// Copies a whole file, and makes the copy writable for its owner. A copy that fails leaves nothing behind;
/// if another program was faster, its file stays. Errors: FileNotFound if `from` does not exist, or another
/// file error.
void CopyWholeFile(const std::string& from, const std::string& to);
/// Errors: a file error if the path names a folder or cannot be removed.
void DeleteWholeFile(const std::string& path);
/// Creates a folder and its parents where missing. Errors are ignored: the first file in it tells.
void CreateFolders(const std::string& path);

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
