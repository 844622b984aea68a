#include "tests/support/packs.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tools/pack_access.h"

namespace bivouac {

std::vector<PackRecord> ReadPack(const std::string& path) {
  return ReadContent(BIVOUAC_SOURCE_DIR "/" + path).Records;
}

std::vector<std::vector<std::string>> ReadTable(const std::string& path) {
  std::ifstream file(BIVOUAC_SOURCE_DIR "/" + path);
  if (!file) throw std::runtime_error("cannot read " + path);
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
