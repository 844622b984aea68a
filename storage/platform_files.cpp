#include "storage/platform_files.h"

#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace bivouac {
namespace {

namespace fs = std::filesystem;

}  // namespace

void ThrowFileError(ErrorNumber number, const std::string& words, const std::string& path) {
  throw RunTimeError(number, words + ": " + path);
}

void ThrowFileError(int reason, const std::string& path) {
  switch (reason) {
    case ENOENT:
    case ENOTDIR:
      ThrowFileError(ErrorNumber::PathNotFound, "path not found", path);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      ThrowFileError(ErrorNumber::DiskFull, "disk full", path);
    case ENAMETOOLONG:
      ThrowFileError(ErrorNumber::BadFileName, "bad file name", path);
    case EIO:
      ThrowFileError(ErrorNumber::DeviceInput, "error of the device", path);
    case ENODEV:
    case ENXIO:
      ThrowFileError(ErrorNumber::DeviceUnavailable, "device unavailable", path);
    case EISDIR:
      ThrowFileError(ErrorNumber::FileAccess, "a folder stands in the place of the file", path);
    default:
      ThrowFileError(ErrorNumber::FileAccess, "no access to the file", path);
  }
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
  static_cast<void>(fs::last_write_time(path, error));
  return !error;
}

void DeleteWholeFile(const std::string& path) {
  std::error_code error;
  if (fs::is_directory(path, error)) ThrowFileError(EISDIR, path);
  fs::remove(path, error);
  if (error) ThrowFileError(error.value(), path);
}

void CreateFolders(const std::string& path) {
  std::error_code error;
  std::vector<fs::path> made;
  for (fs::path folder = path; !folder.empty() && !fs::exists(folder, error); folder = folder.parent_path()) {
    made.push_back(folder);
    if (folder == folder.parent_path()) break;
  }
  fs::create_directories(path, error);
  for (const fs::path& folder : made) {
    IgnoringFileErrors([&] { SyncFolder(FolderOf(folder.string())); });
  }
}

}  // namespace bivouac
