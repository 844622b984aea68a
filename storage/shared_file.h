// A file that several programs use. Whoever changes it holds the platform's lock on it for that one turn, and
// counts within the turn; whoever reads waits for such a turn at most. The kernel frees the lock of a program
// that dies. Where a file system has no locks, nobody waits.
#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>

namespace bivouac {

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

/// The length of a file once no half of a record is left of a killed program; 0 if it does not exist or is a
/// folder.
std::uintmax_t LengthOfFile(const std::string& path);

}  // namespace bivouac
