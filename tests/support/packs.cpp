#include "tests/support/packs.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace bivouac {
namespace {

constexpr std::size_t kRecordBytes = 1376;

std::ifstream OpenFile(const std::string& path) {
  std::ifstream file(std::string(BIVOUAC_SOURCE_DIR "/") + path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return file;
}

}  // namespace

std::vector<PackRecord> ReadPack(const std::string& path) {
  std::ifstream file = OpenFile(path);
  std::vector<PackRecord> records;
  std::array<char, kRecordBytes> bytes{};
  while (file.read(bytes.data(), kRecordBytes)) {
    std::size_t at = 0;
    const auto next = [&] {
      const auto low = static_cast<std::uint8_t>(bytes[at]);
      const auto high = static_cast<std::uint8_t>(bytes[at + 1]);
      at += 2;
      return static_cast<std::int16_t>(low | high << 8);
    };
    PackRecord record;
    for (auto& item : record.TentDirs) item = next();
    for (auto& item : record.Layout) item = next();
    for (auto& item : record.RowCounts) item = next();
    for (auto& item : record.ColCounts) item = next();
    record.LevelSize = next();
    record.BestMinutes = next();
    record.BestSeconds = next();
    record.BestPlayer = next();
    records.push_back(record);
  }
  return records;
}

std::vector<std::vector<std::string>> ReadTable(const std::string& path) {
  std::ifstream file = OpenFile(path);
  std::vector<std::vector<std::string>> table;
  for (std::string line; std::getline(file, line);) {
    std::vector<std::string> cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, '\t');) cells.push_back(cell);
    table.push_back(std::move(cells));
  }
  return table;
}

}  // namespace bivouac
