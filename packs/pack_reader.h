// Packs as they are read: whole, or one by one for who holds no whole pack in memory. Errors here are file
// errors, or InputErrors that name the pack, and the record where one is concerned.
#pragma once

#include <string>
#include <vector>

#include "game/error.h"
#include "game/records.h"
#include "storage/record_file.h"

namespace bivouac {

/// Opens a pack that is there. Errors: InputError if there is no such file.
RecordFile<PackRecord> OpenPack(const std::string& path, Access access = Access::Read);

/// What a file holds, whether it is a sound pack or not.
struct PackContent {
  std::vector<PackRecord> Records;  ///< The whole records.
  long SpareBytes = 0;              ///< Behind the last whole record.
  long Unfinished = 0;              ///< Records behind these whose writer never came to their end.
  friend bool operator==(const PackContent&, const PackContent&) = default;
};
PackContent ContentOf(const RecordFile<PackRecord>& pack);
/// The records of a content that is sound. Errors: its length is not a whole number of records, or a record's
/// size is not 6 to 18.
const std::vector<PackRecord>& SoundRecords(const std::string& path, const PackContent& content);
/// The records of a pack that is sound.
std::vector<PackRecord> ReadSoundPack(const std::string& path);
/// Errors: a record of the pack has another size.
void RequireSize(const std::string& path, const std::vector<PackRecord>& records, int size);

/// An open pack.
class PackReader {
 public:
  /// Errors: its length is not a whole number of records.
  explicit PackReader(const std::string& path);

  const std::string& Path() const { return path_; }
  long Count() const { return count_; }
  /// Reads a record that can be drawn: its size, codes and clues are in range. Errors: there is no such
  /// puzzle, or the record is damaged.
  PackRecord Read(long number) const;
  /// Runs a step that starts a record of the pack. Errors: InputError for a run-time error of the step.
  template <class Step>
  auto Starting(long number, Step step) const {
    try {
      return step();
    } catch (const RunTimeError& error) {
      throw InputError(path_ + ": record " + std::to_string(number) + " cannot be started: " + error.what());
    }
  }

 private:
  std::string path_;
  RecordFile<PackRecord> file_;
  long count_ = 0;
};

}  // namespace bivouac
