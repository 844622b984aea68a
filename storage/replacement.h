// A file that appears when it is whole, or not at all: a new one, or one in the place of another.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace bivouac {

/// A new file without a name, until it takes its place; a program that dies leaves nothing of it. Where the
/// file system has no such files it lies beside its place under a hidden name, and is removed by the
/// destructor or, once its program has died, by RemoveLeftOvers.
class Replacement {
 public:
  /// A link is followed; mode and owner are those of the file that is there. Errors: a file error if nothing
  /// can be written beside it.
  explicit Replacement(const std::string& path);
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;
  ~Replacement();

  /// Returns whether all could be written so far. The reason is kept until Sync.
  bool Append(std::span<const std::uint8_t> bytes);
  /// Returns when the content has reached the disk. Errors: a file error if it cannot.
  void Sync();
  /// Takes the place of what is there, and returns when that has reached the disk. Requires: synced; of a
  /// file that several programs use, the caller holds a turn.
  void TakePlace();
  /// The same unless something is there by now, which then stays. Returns whether the place was free.
  bool TakeFreePlace();

 private:
  void OpenHidden();
  void RemoveHidden();
  int LinkTo(const std::string& name);
  void Flush();

  std::string target_;
  std::string hidden_;  // Empty while the file has no name.
  int descriptor_ = -1;
  std::uintmax_t length_ = 0;  // Written so far.
  std::vector<std::uint8_t> buffer_;
  int reason_ = 0;  // Why a write failed.
};

/// Removes what programs that died have left in a folder under hidden names.
void RemoveLeftOvers(const std::string& folder);

/// Copies a whole file, and makes the copy writable for its owner. A copy that fails leaves nothing behind;
/// if another program was faster, its file stays. Errors: FileNotFound if `from` does not exist, or another
/// file error.
void CopyWholeFile(const std::string& from, const std::string& to);

}  // namespace bivouac
