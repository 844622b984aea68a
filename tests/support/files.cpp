#include "tests/support/files.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <unistd.h>

#include "packs/pack_access.h"
#include "storage/pack_files.h"
#include "workbench/position.h"

#ifdef __EMSCRIPTEN__
// Files in its memory have no limit of their own: what writes is held to one here.
#include <cerrno>
#include <sys/resource.h>
#include <wasi/api.h>

namespace {
rlim_t most = RLIM_INFINITY;
}

extern "C" int setrlimit(int, const rlimit* limit) {
  most = limit->rlim_cur;
  return 0;
}

extern "C" ssize_t pwrite(int descriptor, const void* bytes, std::size_t count, off_t offset) {
  const auto from = static_cast<rlim_t>(offset);
  const __wasi_ciovec_t part{static_cast<const std::uint8_t*>(bytes),
                             static_cast<std::size_t>(std::min<rlim_t>(count, most - std::min(most, from)))};
  __wasi_size_t written = 0;
  errno = part.buf_len == 0
              ? EFBIG
              : __wasi_fd_pwrite(static_cast<__wasi_fd_t>(descriptor), &part, 1, from, &written);
  return errno == 0 ? static_cast<ssize_t>(written) : -1;
}
#endif

namespace bivouac {

namespace fs = std::filesystem;

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

const std::string& ShippedPack(int size) {
  static std::map<int, std::string> packs;
  std::string& pack = packs[size];
  if (pack.empty()) pack = BytesOf(BIVOUAC_SOURCE_DIR "/assets/packs/" + PackName(size));
  return pack;
}

int IntegerAt(const std::string& bytes, std::size_t at) {
  const auto byte = [&](std::size_t place) { return static_cast<unsigned char>(bytes.at(place)); };
  return static_cast<std::int16_t>(byte(at) | byte(at + 1) << 8);
}

std::vector<PackRecord> ReadPack(const std::string& path) {
  return ContentOf(OpenPack(BIVOUAC_SOURCE_DIR "/" + path)).Records;
}

std::vector<std::vector<std::string>> ReadTable(const std::string& path) {
  std::vector<std::vector<std::string>> table;
  for (const std::string& line : Split(BytesOf(BIVOUAC_SOURCE_DIR "/" + path), '\n'))
    table.push_back(Split(line, '\t'));
  return table;
}

FileSizeLimit::FileSizeLimit(unsigned long bytes) {
  getrlimit(RLIMIT_FSIZE, &before_);
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{bytes, before_.rlim_max};
  if (setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("cannot limit the length of files");
}

FileSizeLimit::~FileSizeLimit() {
  setrlimit(RLIMIT_FSIZE, &before_);
}

}  // namespace bivouac
