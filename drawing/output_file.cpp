#include "drawing/output_file.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include "game/error.h"

namespace bivouac {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kNewFileMode = 0666;  // But for the umask.

std::string EntryOf(int file) {
  return "/proc/self/fd/" + std::to_string(file);
}

}  // namespace

OutputFile::OutputFile(const std::string& path, Overwrite overwrite) : path_(path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (fs::exists(status)) {
    if (!fs::is_regular_file(status)) throw InputError(path + ": not a regular file");
    if (overwrite == Overwrite::No) throw InputError(path + ": the file exists, --force overwrites it");
    target_ = fs::canonical(path, error);
    if (error) throw InputError(path + ": " + error.message());
  } else {
    target_ = path;
  }
  const fs::path folder = target_.has_parent_path() ? target_.parent_path() : fs::path(".");
  int file = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kNewFileMode);
  if (file >= 0 && !fs::exists(EntryOf(file), error)) {  // Without /proc it could not get a name.
    close(file);
    file = -1;
  }
  if (file < 0) {
    const fs::path name = NameBeside();
    file = open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kNewFileMode);
    if (file < 0) Fail(errno);
    partial_ = name;
  }
  stream_ = fdopen(file, "wb");
  if (stream_ == nullptr) {
    const int reason = errno;
    close(file);
    if (!partial_.empty()) fs::remove(partial_, error);
    Fail(reason);
  }
}

// Its own name, so that two runs do not write into one another's.
fs::path OutputFile::NameBeside() const {
  return target_.string() + '.' + std::to_string(getpid()) + ".new";
}

OutputFile::~OutputFile() {
  if (stream_ != nullptr) std::fclose(stream_);
  std::error_code ignored;
  if (!partial_.empty()) fs::remove(partial_, ignored);
}

bool OutputFile::Write(std::string_view bytes) {
  if (error_ == 0 && std::fwrite(bytes.data(), 1, bytes.size(), stream_) != bytes.size()) error_ = errno;
  return error_ == 0;
}

void OutputFile::Keep() {
  const bool synced = std::fflush(stream_) == 0 && fsync(fileno(stream_)) == 0;
  if (!synced && error_ == 0) error_ = errno;
  if (error_ == 0 && partial_.empty()) {
    const fs::path name = NameBeside();
    const std::string entry = EntryOf(fileno(stream_));
    if (linkat(AT_FDCWD, entry.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
      partial_ = name;
    } else {
      error_ = errno;
    }
  }
  const bool closed = std::fclose(stream_) == 0;
  stream_ = nullptr;
  if (!closed && error_ == 0) error_ = errno;
  if (error_ != 0) Fail(error_);
  std::error_code error;
  if (fs::exists(target_)) fs::permissions(partial_, fs::status(target_).permissions(), error);
  fs::rename(partial_, target_, error);
  if (error) Fail(error.value());
  partial_.clear();
}

void OutputFile::Fail(int error) const {
  throw InputError(path_ + ": cannot be written: " + std::generic_category().message(error));
}

}  // namespace bivouac
