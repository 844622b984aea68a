#include "storage/replacement.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "storage/platform_files.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 1 << 16;
constexpr std::string_view kHiddenName = ".bivouac-";
constexpr std::size_t kHiddenLength = kHiddenName.size() + 16;

std::string NewHiddenName() {
  std::random_device random;
  std::array<char, 17> digits;
  std::snprintf(digits.data(), digits.size(), "%08x%08x", random(), random());
  return std::string(kHiddenName) + digits.data();
}

/// The way to an open file that has no name.
std::string EntryOf(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

}  // namespace

Replacement::Replacement(const std::string& path) : target_(BehindLinks(path)) {
#ifdef O_TMPFILE
  const std::string folder = FolderOf(target_);
  descriptor_ =
      Repeating([&] { return open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kNewFileMode); });
  // Without /proc it could not get a name.
  if (descriptor_ >= 0 && !FileExists(EntryOf(descriptor_))) close(std::exchange(descriptor_, -1));
  if (descriptor_ >= 0) SetLock(descriptor_, true);
#endif
  if (descriptor_ < 0) OpenHidden();
  struct stat old {};
  if (stat(target_.c_str(), &old) != 0) return;
  // Where root works on a user's file, it stays the user's; nobody else may give files away.
  static_cast<void>(fchown(descriptor_, old.st_uid, old.st_gid) == 0);
  static_cast<void>(fchmod(descriptor_, old.st_mode & 07777) == 0);
}

Replacement::~Replacement() {
  RemoveHidden();
  close(descriptor_);
}

/// Whoever holds the lock lives: its name is no left-over.
void Replacement::OpenHidden() {
  RemoveLeftOvers(FolderOf(target_));
  for (;;) {
    hidden_ = FolderOf(target_) + '/' + NewHiddenName();
    descriptor_ = Repeating(
        [&] { return open(hidden_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode); });
    if (descriptor_ < 0 && errno == EEXIST) continue;
    if (descriptor_ < 0) ThrowFileError(errno, target_);
    // Another program may have looked for left-overs just before the lock.
    if (SetLock(descriptor_, true) != LockAnswer::Busy && FileExists(hidden_)) return;
    close(descriptor_);
    RemoveHidden();
  }
}

void Replacement::RemoveHidden() {
  if (!hidden_.empty()) unlink(hidden_.c_str());
  hidden_.clear();
}

bool Replacement::Append(std::span<const std::uint8_t> bytes) {
  buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
  if (buffer_.size() >= kBlock) Flush();
  return reason_ == 0;
}

void Replacement::Flush() {
  if (reason_ == 0) reason_ = WriteAllAt(descriptor_, length_, buffer_);
  length_ += buffer_.size();
  buffer_.clear();
}

void Replacement::Sync() {
  Flush();
  if (reason_ == 0) reason_ = SyncDescriptor(descriptor_);
  if (reason_ != 0) ThrowFileError(reason_, target_);
}

/// Returns 0, or the platform's number for what failed.
int Replacement::LinkTo(const std::string& name) {
  const std::string from = hidden_.empty() ? EntryOf(descriptor_) : hidden_;
  const int flags = hidden_.empty() ? AT_SYMLINK_FOLLOW : 0;
  return linkat(AT_FDCWD, from.c_str(), AT_FDCWD, name.c_str(), flags) == 0 ? 0 : errno;
}

void Replacement::TakePlace() {
  // Only what has a name can be moved over another.
  while (hidden_.empty()) {
    const std::string name = FolderOf(target_) + '/' + NewHiddenName();
    const int reason = LinkTo(name);
    if (reason != 0 && reason != EEXIST) ThrowFileError(reason, target_);
    if (reason == 0) hidden_ = name;
  }
  if (std::rename(hidden_.c_str(), target_.c_str()) != 0) ThrowFileError(errno, target_);
  hidden_.clear();
  SyncFolder(FolderOf(target_), ", when the file was changed: " + target_);
}

bool Replacement::TakeFreePlace() {
  int reason = LinkTo(target_);
#ifdef RENAME_NOREPLACE
  // A file system without second names knows such a move.
  if (reason != 0 && reason != EEXIST && !hidden_.empty()) {
    reason =
        renameat2(AT_FDCWD, hidden_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0 ? 0 : errno;
  }
#endif
  if (reason != 0 && reason != EEXIST) ThrowFileError(reason, target_);
  RemoveHidden();
  if (reason == 0) SyncFolder(FolderOf(target_));
  return reason == 0;
}

void RemoveLeftOvers(const std::string& folder) {
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(kHiddenName) || name.size() != kHiddenLength) continue;
    const int descriptor =
        Repeating([&] { return open(entry.path().c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); });
    if (descriptor < 0) continue;
    if (SetLock(descriptor, true) == LockAnswer::Done) unlink(entry.path().c_str());
    close(descriptor);
  }
}

void CopyWholeFile(const std::string& from, const std::string& to) {
  if (!FileExists(from)) ThrowFileError(ErrorNumber::FileNotFound, "file not found", from);
  std::ifstream source(from, std::ios::binary);
  Replacement copy(to);
  std::vector<std::uint8_t> block(kBlock);
  do {
    source.read(reinterpret_cast<char*>(block.data()), static_cast<std::streamsize>(block.size()));
    copy.Append(std::span<const std::uint8_t>(block).first(static_cast<std::size_t>(source.gcount())));
  } while (source);
  if (!source.eof()) ThrowFileError(EACCES, from);
  copy.Sync();
  copy.TakeFreePlace();
}

}  // namespace bivouac
