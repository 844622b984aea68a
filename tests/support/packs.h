// Records of packs in the source tree, read without touching the files.
#pragma once

#include <string>
#include <vector>

#include "game/records.h"

namespace bivouac {

/// All records of a pack, by its path below the source tree.
std::vector<PackRecord> ReadPack(const std::string& path);

/// The lines of a table of worked results, cut at the tabs.
std::vector<std::vector<std::string>> ReadTable(const std::string& path);

}  // namespace bivouac
