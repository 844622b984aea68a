// What can be wrong with a pack.
#pragma once

#include <string>
#include <vector>

#include "game/game_state.h"
#include "packs/pack_reader.h"

namespace bivouac {

struct Fault {
  long Record = 0;    ///< Counted from 1; 0 for the file as a whole.
  std::string Field;  ///< Such as "Layout[14]".
  std::string Words;
};

/// The size that the records of a pack must have; 0 if neither its name nor its first record says so.
int SizeOfPack(const std::string& name, const PackContent& content);

/// Every fault of a pack, in the order of the file. A name such as "BVPack06.bvq" says what size its records
/// must have; with any other name, the first record does. `main` is a workbench: its board is overwritten.
std::vector<Fault> FaultsOf(const std::string& name, const PackContent& content, Main& main);

}  // namespace bivouac
