#include "game/error.h"

#include <cerrno>

namespace bivouac {

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
    case EMFILE:
    case ENFILE:
      ThrowFileError(ErrorNumber::TooManyFiles, "too many files are open", path);
    case ENODEV:
    case ENXIO:
      ThrowFileError(ErrorNumber::DeviceUnavailable, "device unavailable", path);
    case EISDIR:
      ThrowFileError(ErrorNumber::FileAccess, "a folder stands in the place of the file", path);
    default:
      ThrowFileError(ErrorNumber::FileAccess, "no access to the file", path);
  }
}

}  // namespace bivouac
