#include "storage/replacement.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "storage/platform_files.h"

namespace bivouac {
namespace {}  // namespace

Replacement::Replacement(const std::string& path) : target_(BehindLinks(path)) {
  std::random_device random;
  do {
    std::array<char, 40> name;
    std::snprintf(name.data(), name.size(), "/.bivouac-%08x%08x", random(), random());
    hidden_ = FolderOf(target_) + name.data();
    descriptor_ = Repeating([&] {
      return open(hidden_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, kNewFileMode);
    });
  } while (descriptor_ < 0 && errno == EEXIST);
  if (descriptor_ < 0) ThrowFileError(errno, path);
  struct stat old {};
  if (stat(target_.c_str(), &old) != 0) return;
  // Where root works on a user's file, it stays the user's; nobody else may give files away.
  static_cast<void>(fchown(descriptor_, old.st_uid, old.st_gid) == 0);
  static_cast<void>(fchmod(descriptor_, old.st_mode & 07777) == 0);
}

Replacement::~Replacement() {
  close(descriptor_);
  if (!hidden_.empty()) unlink(hidden_.c_str());
}

void Replacement::Append(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = Repeating([&] { return write(descriptor_, bytes.data(), bytes.size()); });
    if (written <= 0) ThrowFileError(written < 0 ? errno : ENOSPC, target_);
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
}

void Replacement::Sync() {
  if (Repeating([&] { return fsync(descriptor_); }) != 0 && errno != EINVAL && errno != ENOSYS) {
    ThrowFileError(errno, target_);
  }
}

void Replacement::TakePlace() {
  if (std::rename(hidden_.c_str(), target_.c_str()) != 0) ThrowFileError(errno, target_);
  hidden_.clear();
  SyncFolder(FolderOf(target_), ", when the file was changed: " + target_);
}

void Replacement::TakeFreePlace() {
  // A second name is refused where there is a file; a file system without second names knows such a rename.
  int reason = link(hidden_.c_str(), target_.c_str()) == 0 ? 0 : errno;
  if (reason != 0 && reason != EEXIST) {
#ifdef RENAME_NOREPLACE
    reason =
        renameat2(AT_FDCWD, hidden_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0 ? 0 : errno;
    if (reason == 0) hidden_.clear();
#endif
  }
  if (reason != 0 && reason != EEXIST) ThrowFileError(reason, target_);
  if (!hidden_.empty()) unlink(hidden_.c_str());
  hidden_.clear();
  SyncFolder(FolderOf(target_));
}

void CopyWholeFile(const std::string& from, const std::string& to) {
  if (!FileExists(from)) ThrowFileError(ErrorNumber::FileNotFound, "file not found", from);
  const int source = Repeating([&] { return open(from.c_str(), O_RDONLY | O_CLOEXEC); });
  if (source < 0) ThrowFileError(errno, from);
  struct Closer {
    ~Closer() { close(Descriptor); }
    int Descriptor;
  };
  const Closer closer{source};
  Replacement copy(to);
  std::vector<std::uint8_t> block(1 << 16);
  for (;;) {
    const ssize_t count = Repeating([&] { return read(source, block.data(), block.size()); });
    if (count < 0) ThrowFileError(errno, from);
    if (count == 0) break;
    copy.Append(std::span<const std::uint8_t>(block).first(static_cast<std::size_t>(count)));
  }
  copy.Sync();
  copy.TakeFreePlace();
}

}  // namespace bivouac
