// Files for tests: a folder of their own, whole contents as text, and ways to make writing fail.
#pragma once

#include <map>
#include <string>

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

/// While it lives no file of this process can grow beyond that length: the write breaks off there.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(unsigned long bytes);
  ~FileSizeLimit();
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  unsigned long before_;
};

/// While it lives the process has no more rights on files than anybody, even when root runs the tests.
class OrdinaryUser {
 public:
  OrdinaryUser();
  ~OrdinaryUser();
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  /// False if root could not step down: then no permission keeps it from writing.
  bool Works() const;
};

}  // namespace bivouac
