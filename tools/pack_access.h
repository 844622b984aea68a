// Whole packs on disk: read, added to, replaced. A pack is never left half-written.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "game/records.h"

namespace bivouac {

/// Input that a command cannot work with. The text is one line that says what and where.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The path without its folder.
std::string FileName(const std::string& path);

/// What a file holds, whether it is a sound pack or not.
struct PackContent {
  std::vector<PackRecord> Records;  ///< The whole records.
  long SpareBytes = 0;              ///< Behind the last whole record.
};
/// Errors: InputError if there is no such file or it cannot be read.
PackContent ReadContent(const std::string& path);

/// The records of a pack. Errors: InputError as well if its length is not a whole number of records, or a
/// record's size is not 6 to 18.
std::vector<PackRecord> ReadSoundPack(const std::string& path);

/// Replaces a pack by way of a new file beside it, which takes its place when it is whole. Errors:
/// InputError; the pack is as it was then.
void ReplacePack(const std::string& path, const std::vector<PackRecord>& records);

}  // namespace bivouac
