#include "tests/support/files.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/resource.h>
#include <unistd.h>

namespace bivouac {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

bool SetSizeLimit(unsigned long bytes) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = bytes;
  return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

}  // namespace

TempFolder::TempFolder() {
  path_ = (fs::temp_directory_path() / "bivouac-test-XXXXXX").string();
  if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("cannot make a folder " + path_);
  fs::permissions(path_, fs::perms(0755));
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  fs::permissions(path_, fs::perms(0755), ignored);
  fs::remove_all(path_, ignored);
}

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
}

std::map<std::string, std::string> FilesIn(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.is_regular_file()) files[entry.path().filename().string()] = BytesOf(entry.path().string());
  }
  return files;
}

std::string Integers(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) {
    bytes += static_cast<char>(value & 0xFF);
    bytes += static_cast<char>(value >> 8 & 0xFF);
  }
  return bytes;
}

FileSizeLimit::FileSizeLimit(unsigned long bytes) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  before_ = limit.rlim_cur;
  std::signal(SIGXFSZ, SIG_IGN);
  if (!SetSizeLimit(bytes)) throw std::runtime_error("cannot limit the length of files");
}

FileSizeLimit::~FileSizeLimit() {
  SetSizeLimit(before_);
}

OrdinaryUser::OrdinaryUser() {
  if (geteuid() == 0) static_cast<void>(!seteuid(kNobody));
}

OrdinaryUser::~OrdinaryUser() {
  if (getuid() == 0) static_cast<void>(!seteuid(0));
}

bool OrdinaryUser::Works() const {
  return geteuid() != 0;
}

}  // namespace bivouac
