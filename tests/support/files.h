// Files for tests: a folder of their own, whole contents as text, packs and tables of the source tree, and a
// way to make writing fail.
#pragma once

#include <map>
#include <string>
#include <sys/resource.h>
#include <vector>

#include "game/records.h"

namespace bivouac {

/// A folder that is removed with all it holds. Readable for every user.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  /// Path of a name in the folder.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

/// Content of a file. Throws std::runtime_error if there is none.
std::string BytesOf(const std::string& path);
void WriteBytes(const std::string& path, const std::string& bytes);
/// All files of a folder by name, with their contents.
std::map<std::string, std::string> FilesIn(const std::string& folder);
/// Bytes of 16-bit integers, low byte first.
std::string Integers(std::initializer_list<int> values);
/// The one that stands there. Requires: two bytes.
int IntegerAt(const std::string& bytes, std::size_t at);

/// The pack of that size that comes with the program.
const std::string& ShippedPack(int size);
/// All records of a pack, by its path below the source tree.
std::vector<PackRecord> ReadPack(const std::string& path);
/// The lines of a table of worked results, by its path below the source tree, cut at the tabs.
std::vector<std::vector<std::string>> ReadTable(const std::string& path);

/// While it lives no file of this process can grow beyond that length: the write breaks off there.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(unsigned long bytes);
  ~FileSizeLimit();
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_;
};

}  // namespace bivouac
