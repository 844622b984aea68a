#include "storage/shared_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "storage/platform_files.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kShortPatience = 100ms;
constexpr std::chrono::milliseconds kLongPatience = 30s;
constexpr auto kBetweenTries = std::chrono::microseconds(200);

enum class Lock { None, Shared, Exclusive };
enum class Answer { Done, Busy, NotHere };

/// The lock of the open file, which dies with it. Where a platform has no such lock, that of the whole file.
Answer TryToLock(int descriptor, Lock lock) {
#ifdef F_OFD_SETLK
  struct flock range {};
  range.l_type = static_cast<short>(lock == Lock::None ? F_UNLCK : lock == Lock::Shared ? F_RDLCK : F_WRLCK);
  range.l_whence = SEEK_SET;
  if (Repeating([&] { return fcntl(descriptor, F_OFD_SETLK, &range); }) == 0) return Answer::Done;
  if (errno == EAGAIN || errno == EACCES) return Answer::Busy;
  if (errno != EINVAL) return Answer::NotHere;
#endif
  const int operation = lock == Lock::None ? LOCK_UN : lock == Lock::Shared ? LOCK_SH : LOCK_EX;
  if (Repeating([&] { return flock(descriptor, operation | LOCK_NB); }) == 0) return Answer::Done;
  return errno == EWOULDBLOCK ? Answer::Busy : Answer::NotHere;
}

std::chrono::milliseconds LengthOf(Patience patience) {
  return patience == Patience::Short ? kShortPatience : kLongPatience;
}

/// Waits for other programs' turns; Busy if one did not end. What was waited in vain since the lock was last
/// free counts.
Answer WaitForLock(int descriptor, Lock lock, Patience patience, std::chrono::milliseconds& waited) {
  const std::chrono::milliseconds most = LengthOf(patience);
  const auto end = std::chrono::steady_clock::now() + most - waited;
  for (;;) {
    const Answer answer = TryToLock(descriptor, lock);
    if (answer == Answer::Busy && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(kBetweenTries);
      continue;
    }
    waited = answer == Answer::Busy ? std::max(waited, most) : 0ms;
    return answer;
  }
}

/// Writes all bytes at an offset. Returns 0, or the platform's number for what failed.
int WriteAll(int descriptor, std::uintmax_t offset, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written =
        Repeating([&] { return pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset)); });
    if (written < 0) return errno;
    if (written == 0) return ENOSPC;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
    offset += static_cast<std::uintmax_t>(written);
  }
  return 0;
}

/// A mark beside a file, only there while records are added. A program can be killed when a part of a record
/// is written: the kernel breaks its write off between two pages, a full disk or a limit at any byte. The
/// next turn finds the mark then, and cuts what is no record. In a folder that takes no new files the mark is
/// an attribute of the file.
struct EndMark {
  using Name = std::array<char, 8>;
  Name Kind = {'B', 'i', 'v', 'o', 'u', 'a', 'c', '\n'};
  std::uint64_t Before;       ///< The length of the file.
  std::uint64_t After;        ///< What it is to become.
  std::uint64_t RecordBytes;  ///< What it grows by.
};

std::string PathOfMark(const std::string& path) {
  const fs::path target = BehindLinks(path);
  return (target.parent_path() / (".bivouac-end-" + target.filename().string())).string();
}

constexpr const char* kMarkAttribute = "user.bivouac-end";

/// Returns whether the mark stands. Where no mark can be made it is done without; where only the room is
/// missing, there is none for a record either. Errors: DiskFull.
bool MarkEnd(const std::string& path, int file, const EndMark& end) {
  const std::string mark = PathOfMark(path);
  const int descriptor =
      Repeating([&] { return open(mark.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode); });
  if (descriptor < 0) return fsetxattr(file, kMarkAttribute, &end, sizeof end, 0) == 0;
  const ssize_t written = Repeating([&] { return write(descriptor, &end, sizeof end); });
  close(descriptor);
  if (written == sizeof end) return true;
  unlink(mark.c_str());
  ThrowFileError(ENOSPC, path);
}

bool IsMarked(const std::string& path) {
  return FileExists(PathOfMark(path)) || getxattr(path.c_str(), kMarkAttribute, nullptr, 0) >= 0;
}

void RemoveMark(const std::string& path, int file) {
  if (fremovexattr(file, kMarkAttribute) != 0) unlink(PathOfMark(path).c_str());
}

/// Reads a mark, in whichever form it stands. Returns how many of its bytes there are, or -1 without one.
ssize_t ReadMark(const std::string& path, int file, EndMark& end) {
  const ssize_t length = fgetxattr(file, kMarkAttribute, &end, sizeof end);
  if (length >= 0) return length;
  const int descriptor = Repeating(
      [&] { return open(PathOfMark(path).c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); });
  if (descriptor < 0) return -1;
  const ssize_t count = read(descriptor, &end, sizeof end);
  close(descriptor);
  return count;
}

}  // namespace

SharedFile::SharedFile(std::string path, Patience patience) : path_(std::move(path)), patience_(patience) {
  Open();
  if (!IsMarked(path_)) return;
  // A mark whose program is at work is no leftover, and nothing to wait for.
  waited_ = LengthOf(patience_);
  IgnoringFileErrors([this] { const Turn cuts(*this); });
  waited_ = 0ms;
}

SharedFile::~SharedFile() {
  Close();
}

void SharedFile::Open() {
  ++openings_;
  const auto attempt = [&](int flags) {
    return Repeating([&] { return open(path_.c_str(), flags | O_CLOEXEC | O_NONBLOCK, kNewFileMode); });
  };
  descriptor_ = attempt(O_RDWR | O_CREAT);
  writable_ = descriptor_ >= 0;
  if (!writable_) {
    const int reason = errno;
    descriptor_ = attempt(O_RDONLY);
    // Of a file that is not there, what kept it from being created tells more.
    if (descriptor_ < 0) ThrowFileError(errno == ENOENT ? reason : errno, path_);
  }
  struct stat status {};
  if (fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) return;
  Close();
  ThrowFileError(S_ISDIR(status.st_mode) ? EISDIR : EACCES, path_);
}

void SharedFile::Close() {
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = -1;
}

/// A reader who waited in vain reads all the same: at worst it sees half of a write.
bool SharedFile::LockToRead() {
  return turns_ == 0 && WaitForLock(descriptor_, Lock::Shared, Patience::Short, waited_) == Answer::Done;
}

std::uintmax_t SharedFile::Length() {
  const bool locked = LockToRead();
  struct stat status {};
  const int reason = fstat(descriptor_, &status) == 0 ? 0 : errno;
  if (locked) TryToLock(descriptor_, Lock::None);
  if (reason != 0) ThrowFileError(reason, path_);
  return static_cast<std::uintmax_t>(status.st_size);
}

void SharedFile::ReadAt(std::uintmax_t offset, std::span<std::uint8_t> bytes) {
  const bool locked = LockToRead();
  int reason = 0;
  while (!bytes.empty() && reason == 0) {
    const ssize_t count =
        Repeating([&] { return pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset)); });
    if (count == 0) break;
    if (count < 0) {
      reason = errno;
    } else {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
      offset += static_cast<std::uintmax_t>(count);
    }
  }
  if (locked) TryToLock(descriptor_, Lock::None);
  if (reason != 0) ThrowFileError(reason, path_);
  if (!bytes.empty()) ThrowFileError(ErrorNumber::PastEndOfFile, "past the end of the file", path_);
}

void SharedFile::WriteAt(std::uintmax_t offset, std::span<const std::uint8_t> bytes, int recordBytes) {
  if (!writable_) ThrowFileError(ErrorNumber::PermissionDenied, "the file is read-only", path_);
  const Turn turn(*this);
  const std::uintmax_t before = Length();
  if (before == 0) maybeNew_ = true;
  const std::uintmax_t after = offset + bytes.size();
  const bool marked =
      after > before &&
      MarkEnd(path_, descriptor_,
              {.Before = before, .After = after, .RecordBytes = static_cast<std::uint64_t>(recordBytes)});
  const int reason = WriteAll(descriptor_, offset, bytes);
  bool whole = reason == 0 || Length() <= before;
  if (!whole) whole = ftruncate(descriptor_, static_cast<off_t>(before)) == 0;
  // What could not be cut, the next turn may.
  if (marked && whole) RemoveMark(path_, descriptor_);
  if (reason != 0) ThrowFileError(reason, path_);
}

void SharedFile::CutWhatAKilledProgramLeft() {
  EndMark end{};
  const EndMark::Name kind = end.Kind;
  const ssize_t count = ReadMark(path_, descriptor_, end);
  if (count < 0) return;
  // The writer of a mark can be killed, too.
  const auto known = std::min<ssize_t>(count, kind.size());
  if (!std::equal(kind.begin(), kind.begin() + known, end.Kind.begin())) return;
  const std::uintmax_t length = Length();
  // A file that has grown by more since, or was replaced, is left alone.
  if (count == sizeof end && end.RecordBytes > 0 && length > end.Before && length < end.After) {
    const std::uintmax_t wholeRecords =
        std::max<std::uintmax_t>(end.Before, length - length % end.RecordBytes);
    if (length > wholeRecords && ftruncate(descriptor_, static_cast<off_t>(wholeRecords)) != 0) return;
  }
  RemoveMark(path_, descriptor_);
}

void SharedFile::Sync() {
  if (const int reason = SyncDescriptor(descriptor_); reason != 0) ThrowFileError(reason, path_);
  if (maybeNew_) SyncFolder(FolderOf(BehindLinks(path_)));
  maybeNew_ = false;
}

Turn::Turn(SharedFile& file) : file_(file) {
  bool locked = false;
  // Of a file that cannot be written nothing changes.
  while (file_.turns_ == 0 && file_.writable_) {
    const Answer answer = WaitForLock(file_.descriptor_, Lock::Exclusive, file_.patience_, file_.waited_);
    if (answer == Answer::Busy) {
      ThrowFileError(ErrorNumber::PermissionDenied, "another program holds the file", file_.path_);
    }
    // Whoever held the lock may have put another file in the place of this one.
    struct stat opened {};
    struct stat named {};
    if (fstat(file_.descriptor_, &opened) == 0 && stat(file_.path_.c_str(), &named) == 0 &&
        opened.st_dev == named.st_dev && opened.st_ino == named.st_ino) {
      locked = answer == Answer::Done;
      break;
    }
    file_.Close();
    file_.Open();
  }
  ++file_.turns_;
  if (locked) file_.CutWhatAKilledProgramLeft();
}

Turn::~Turn() {
  if (--file_.turns_ == 0 && file_.writable_) TryToLock(file_.descriptor_, Lock::None);
}

std::uintmax_t LengthOfFile(const std::string& path) {
  if (FileExists(path) && IsMarked(path)) {
    IgnoringFileErrors([&] { const SharedFile cuts(path, Patience::Short); });
  }
  std::error_code error;
  const std::uintmax_t length = fs::file_size(path, error);
  return error ? 0 : length;
}

}  // namespace bivouac
