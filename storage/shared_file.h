// A file of records that several programs use. Whoever changes it holds the platform's lock on it for that
// one turn, and counts within the turn. The kernel frees the lock of a program that dies.
//
// Readers need no lock, and a program that dies in its turn leaves nothing to mend: a record that stands
// changes in its last 8 bytes only, which no page or sector cuts, and a new one gets these last, when its
// place and all the rest of it are there. A new pack record whose end is still 0 was never finished; it is
// counted by nobody, and cut off by the next that is added.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace bivouac {

/// What a file is opened for. Reading changes and creates nothing.
enum class Access { Read, Write, Create };

/// Says words on standard error, the first of a run alone.
void SayOnce(const std::string& words);

/// How long to wait for another program's turn, in all: a program that was halted in its turn costs this
/// once.
struct Patience {
  std::chrono::milliseconds Most{100};  ///< A window waits with it.
  /// Called of a long wait and a file system without locks; the same words may come often.
  std::function<void(const std::string& words)> Tell = SayOnce;
};

/// An open file, for RecordFile and Turn. All failures are RunTimeErrors that are file errors.
class SharedFile {
 public:
  /// Errors: PermissionDenied for a file that may not be written.
  SharedFile(std::string path, Access access, Patience patience);
  SharedFile(const SharedFile&) = delete;
  SharedFile& operator=(const SharedFile&) = delete;
  ~SharedFile();

  /// Returns when everything written has reached the disk, and with it the name of a new file.
  void Sync();
  /// How often a file was opened: once, and again whenever a turn found another in its place.
  int Openings() const { return openings_; }

  /// Which file it is, and in which state.
  struct Stamp {
    std::uintmax_t Device, File, Length;
    std::int64_t Seconds, Nanoseconds;  ///< When it was changed last.
    bool Certain;                       ///< Any later change gives another stamp.
    friend bool operator==(const Stamp&, const Stamp&) = default;
  };
  Stamp TakeStamp() const;

 protected:
  static constexpr int kEndBytes = 8;  ///< Of a record, written last.

  /// Reads up to the end of the file. Returns how many bytes.
  std::size_t ReadAt(std::uintmax_t offset, std::span<std::uint8_t> bytes) const;
  /// Writes records, the end of the last one when all the rest is there; what stands there changes in place.
  void WriteAt(std::uintmax_t offset, std::span<const std::uint8_t> bytes);
  /// Cuts off what lies behind. Requires: a turn.
  void CutTo(std::uintmax_t length);
  std::uintmax_t Length() const { return TakeStamp().Length; }
  const std::string& Path() const { return path_; }

 private:
  friend class Turn;
  void Open();
  void Close();
  void WaitForTurn();

  std::string path_;
  Access access_;
  Patience patience_;
  int descriptor_ = -1;
  bool maybeNew_ = false;                ///< Its name may not have reached the disk.
  std::chrono::milliseconds waited_{0};  ///< In vain for a turn that has not ended yet.
  int turns_ = 0;
  int openings_ = 0;
};

/// A turn of writing: from its beginning to its end no other program changes the file, so that what was
/// counted holds. If the file was replaced meanwhile, the new one is opened. Turns may stand one inside
/// another. Where a file system has no locks, nobody waits. Errors: PermissionDenied if another program's
/// turn does not end.
class Turn {
 public:
  explicit Turn(SharedFile& file);
  Turn(const Turn&) = delete;
  ~Turn();

 private:
  SharedFile& file_;
};

/// A turn at what belongs together in a folder or beside it: the list of players; times, and the numbers of
/// puzzles that they stand under. Waits for others a second and a half at most. Never fails.
class FolderTurn {
 public:
  explicit FolderTurn(const std::string& folder);
  /// False while another program's turn does not end. Where there are no locks, nobody else has a turn.
  bool IsMine() const { return isMine_; }
  FolderTurn(const FolderTurn&) = delete;
  FolderTurn& operator=(const FolderTurn&) = delete;
  ~FolderTurn();

 private:
  int descriptor_;
  bool isMine_ = true;
};

}  // namespace bivouac
