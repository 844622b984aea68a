// Records of a pack one by one, for commands that hold no whole pack in memory.
#pragma once

#include <string>

#include "game/records.h"
#include "storage/record_file.h"

namespace bivouac {

/// An open pack. All errors are InputErrors that name the pack, and the record where one is concerned.
class PackReader {
 public:
  /// Errors: there is no such file, it cannot be read, or its length is not a whole number of records.
  explicit PackReader(const std::string& path);

  const std::string& Path() const { return path_; }
  long Count() const { return count_; }
  /// Reads a record that can be drawn: its size, codes and clues are in range. Errors: there is no such
  /// puzzle, or the record is damaged.
  PackRecord Read(long number);

 private:
  std::string path_;
  RecordFile<PackRecord> file_;
  long count_ = 0;
};

}  // namespace bivouac
