#include "storage/shared_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "storage/platform_files.h"

namespace bivouac {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr auto kBetweenTries = 200us;
constexpr auto kLongWait = 2s;

/// Waits for other programs' turns; Busy if one did not end. What was waited in vain since the lock was last
/// free counts.
LockAnswer WaitForLock(int descriptor, const std::string& path, const Patience& patience,
                       std::chrono::milliseconds& waited) {
  const auto start = steady_clock::now();
  for (;;) {
    const LockAnswer answer = SetLock(descriptor, true);
    const auto gone = steady_clock::now() - start;
    if (answer == LockAnswer::Busy && gone < patience.Most - waited) {
      if (gone >= kLongWait) patience.Tell(path + ": waiting for another program, which holds it");
      std::this_thread::sleep_for(kBetweenTries);
      continue;
    }
    waited = answer == LockAnswer::Busy ? std::max(waited, patience.Most) : 0ms;
    if (answer == LockAnswer::NotHere)
      patience.Tell(path +
                    ": there are no locks on this file system, let nothing else use the file meanwhile");
    return answer;
  }
}

/// Makes a file longer by zeros, with room on the disk for what comes there. Returns 0, or the platform's
/// number for what failed.
int Claim(int descriptor, std::uintmax_t before, std::uintmax_t after) {
#ifdef FALLOC_FL_KEEP_SIZE
  const auto allocate = [&] {
    return fallocate(descriptor, FALLOC_FL_KEEP_SIZE, static_cast<off_t>(before),
                     static_cast<off_t>(after - before));
  };
  if (Repeating(allocate) != 0 && (errno == ENOSPC || errno == EDQUOT || errno == EFBIG)) return errno;
#endif
  return Repeating([&] { return ftruncate(descriptor, static_cast<off_t>(after)); }) == 0 ? 0 : errno;
}

}  // namespace

void SayOnce(const std::string& words) {
  static std::once_flag said;
  std::call_once(said, [&] { std::fprintf(stderr, "Bivouac: %s\n", words.c_str()); });
}

SharedFile::SharedFile(std::string path, Access access, Patience patience)
    : path_(std::move(path)), access_(access), patience_(std::move(patience)) {
  Open();
}

SharedFile::~SharedFile() {
  Close();
}

void SharedFile::Open() {
  ++openings_;
  const int flags = access_ == Access::Read ? O_RDONLY : access_ == Access::Write ? O_RDWR : O_RDWR | O_CREAT;
  // A pipe of that name would hold the program.
  descriptor_ = Repeating([&] { return open(path_.c_str(), flags | O_CLOEXEC | O_NONBLOCK, kNewFileMode); });
  if (descriptor_ < 0) {
    const int reason = errno;
    const bool forbidden = reason == EACCES || reason == EPERM || reason == EROFS;
    if (forbidden && access_ != Access::Read && FileExists(path_))
      ThrowFileError(ErrorNumber::PermissionDenied, "the file is read-only", path_);
    ThrowFileError(reason, path_);
  }
  struct stat status {};
  if (fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) return;
  Close();
  if (S_ISDIR(status.st_mode)) ThrowFileError(EISDIR, path_);
  ThrowFileError(ErrorNumber::FileAccess, "not a regular file", path_);
}

void SharedFile::Close() {
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = -1;
}

SharedFile::Stamp SharedFile::TakeStamp() const {
  struct stat status {};
  if (fstat(descriptor_, &status) != 0) ThrowFileError(errno, path_);
  const timespec changed = status.st_mtim;
  // In floating point: a date may lie beyond what nanoseconds can count.
  const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
  const double age =
      now.count() - static_cast<double>(changed.tv_sec) - static_cast<double>(changed.tv_nsec) * 1e-9;
  // The clock of files goes in steps, of some milliseconds or, on old file systems, of two seconds.
  const double step = changed.tv_nsec == 0 ? 3 : 0.02;
  return {status.st_dev,  status.st_ino,   static_cast<std::uintmax_t>(status.st_size),
          changed.tv_sec, changed.tv_nsec, age > step};
}

std::size_t SharedFile::ReadAt(std::uintmax_t offset, std::span<std::uint8_t> bytes) const {
  std::size_t read = 0;
  while (read < bytes.size()) {
    const ssize_t count = Repeating([&] {
      return pread(descriptor_, bytes.data() + read, bytes.size() - read, static_cast<off_t>(offset + read));
    });
    if (count < 0) ThrowFileError(errno, path_);
    if (count == 0) break;
    read += static_cast<std::size_t>(count);
  }
  return read;
}

void SharedFile::WriteAt(std::uintmax_t offset, std::span<const std::uint8_t> bytes) {
  const Turn turn(*this);
  const std::uintmax_t before = Length();
  const std::uintmax_t after = offset + bytes.size();
  if (before == 0) maybeNew_ = true;
  int reason = after > before ? Claim(descriptor_, before, after) : 0;
  const std::size_t end = bytes.size() - kEndBytes;
  if (reason == 0) reason = WriteAllAt(descriptor_, offset, bytes.first(end));
  if (reason == 0) reason = WriteAllAt(descriptor_, offset + end, bytes.subspan(end));
  if (reason == 0) return;
  CutTo(before);
  ThrowFileError(reason, path_);
}

void SharedFile::CutTo(std::uintmax_t length) {
  // What could not be cut, the next turn may.
  if (Length() > length) static_cast<void>(ftruncate(descriptor_, static_cast<off_t>(length)) == 0);
}

void SharedFile::Sync() {
  if (const int reason = SyncDescriptor(descriptor_); reason != 0) ThrowFileError(reason, path_);
  if (maybeNew_) SyncFolder(FolderOf(BehindLinks(path_)));
  maybeNew_ = false;
}

void SharedFile::WaitForTurn() {
  if (access_ == Access::Read)
    ThrowFileError(ErrorNumber::PermissionDenied, "opened for reading alone", path_);
  for (;;) {
    if (WaitForLock(descriptor_, path_, patience_, waited_) == LockAnswer::Busy)
      ThrowFileError(ErrorNumber::PermissionDenied, "another program holds the file", path_);
    // Whoever held the lock may have put another file in the place of this one.
    struct stat opened {};
    struct stat named {};
    if (fstat(descriptor_, &opened) == 0 && stat(path_.c_str(), &named) == 0 &&
        opened.st_dev == named.st_dev && opened.st_ino == named.st_ino)
      return;
    Close();
    Open();
  }
}

Turn::Turn(SharedFile& file) : file_(file) {
  if (file_.turns_ == 0) file_.WaitForTurn();
  ++file_.turns_;
}

Turn::~Turn() {
  if (--file_.turns_ == 0) SetLock(file_.descriptor_, false);
}

FolderTurn::FolderTurn(const std::string& folder)
    : descriptor_(Repeating([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); })) {
  std::chrono::milliseconds waited{0};
  if (descriptor_ >= 0) isMine_ = WaitForLock(descriptor_, folder, {1500ms}, waited) != LockAnswer::Busy;
}

FolderTurn::~FolderTurn() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace bivouac
