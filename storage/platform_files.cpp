#include "storage/platform_files.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace bivouac {

namespace fs = std::filesystem;

int WriteAllAt(int descriptor, std::uintmax_t offset, std::span<const std::uint8_t> bytes) {
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

LockAnswer SetLock(int descriptor, bool taken) {
#ifdef F_OFD_SETLK
  struct flock range {};
  range.l_type = taken ? F_WRLCK : F_UNLCK;
  range.l_whence = SEEK_SET;
  if (Repeating([&] { return fcntl(descriptor, F_OFD_SETLK, &range); }) == 0) return LockAnswer::Done;
  if (errno == EAGAIN || errno == EACCES) return LockAnswer::Busy;
  // A folder has the lock of the whole file alone, as all files have on other platforms.
  if (errno != EINVAL && errno != EBADF) return LockAnswer::NotHere;
#endif
  const int operation = taken ? LOCK_EX | LOCK_NB : LOCK_UN;
  if (Repeating([&] { return flock(descriptor, operation); }) == 0) return LockAnswer::Done;
  return errno == EWOULDBLOCK ? LockAnswer::Busy : LockAnswer::NotHere;
}

int SyncDescriptor(int descriptor) {
  if (Repeating([&] { return fdatasync(descriptor); }) == 0) return 0;
  return errno == EINVAL || errno == ENOSYS || errno == EROFS ? 0 : errno;
}

std::string FolderOf(const std::string& path) {
  const fs::path folder = fs::path(path).parent_path();
  return folder.empty() ? "." : folder.string();
}

void SyncFolder(const std::string& folder, const std::string& before) {
  const int descriptor = Repeating([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (descriptor < 0) return;
  const int reason = SyncDescriptor(descriptor);
  close(descriptor);
  if (reason != 0) ThrowFileError(reason, folder + before);
}

std::string BehindLinks(const std::string& path) {
  constexpr int kMostLinks = 40;
  fs::path target = path;
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(target, error); ++i) {
    const fs::path next = fs::read_symlink(target, error);
    if (error) break;
    target = target.parent_path() / next;
  }
  return target.string();
}

bool FileExists(const std::string& path) {
  std::error_code error;
  return fs::exists(path, error);
}

void DeleteWholeFile(const std::string& path) {
  std::error_code error;
  if (fs::is_directory(path, error)) ThrowFileError(EISDIR, path);
  if (unlink(path.c_str()) != 0 && errno != ENOENT) ThrowFileError(errno, path);
}

void CreateFolders(const std::string& path) {
  std::error_code error;
  std::vector<fs::path> made;
  for (fs::path folder = path; !folder.empty() && !fs::exists(folder, error); folder = folder.parent_path())
    made.push_back(folder);
  fs::create_directories(path, error);
  // A stranger who can open a file can hold its lock for ever. A folder as earlier versions made it was meant
  // for nobody else either; any other mode is somebody's will.
  constexpr fs::perms kAsMadeBefore{0755};
  if (!made.empty() || fs::status(path, error).permissions() == kAsMadeBefore)
    fs::permissions(path, fs::perms::owner_all, error);
  for (const fs::path& folder : made) {
    IgnoringFileErrors([&] { SyncFolder(FolderOf(folder.string())); });
  }
}

}  // namespace bivouac
