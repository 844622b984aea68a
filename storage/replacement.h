// A rewrite is a new file renamed over the old one.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace bivouac {

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

/// Copies a whole file, and makes the copy writable for its owner. A copy that fails leaves nothing behind;
/// if another program was faster, its file stays. Errors: FileNotFound if `from` does not exist, or another
/// file error.
void CopyWholeFile(const std::string& from, const std::string& to);

}  // namespace bivouac
