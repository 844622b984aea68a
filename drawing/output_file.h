// A file that appears when it is whole, or not at all.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace bivouac {

enum class Overwrite { No, Yes };

/// A new file that becomes another when it is whole. Dropped by the destructor unless Keep was called; where
/// the file system has files without a name, a run that is killed leaves nothing either.
class OutputFile {
 public:
  /// Errors: InputError if the file exists and may not be overwritten, is no regular file, or if nothing can
  /// be written beside it.
  OutputFile(const std::string& path, Overwrite overwrite);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  /// Errors are kept until Keep.
  bool Write(std::string_view bytes);
  /// Puts the file in its place. Errors: InputError if a write failed, now or before.
  void Keep();

 private:
  [[noreturn]] void Fail(int error) const;
  std::filesystem::path NameBeside() const;

  std::string path_;
  std::filesystem::path target_;   // Behind links.
  std::filesystem::path partial_;  // Beside the target; empty while there is none of this name.
  std::FILE* stream_ = nullptr;
  int error_ = 0;  // The errno of the first write that failed.
};

}  // namespace bivouac
