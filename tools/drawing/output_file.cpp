#include "tools/drawing/output_file.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

#include "tools/pack_access.h"

namespace bivouac {

namespace fs = std::filesystem;

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
  // Its own name, so that two runs do not write into one another's.
  partial_ = target_.string() + '.' + std::to_string(getpid()) + ".new";
  stream_ = std::fopen(partial_.c_str(), "wbx");
  if (stream_ == nullptr) {
    const int reason = errno;
    partial_.clear();
    Fail(reason);
  }
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
