// Records of packs for tests and benchmarks.
#pragma once

#include <string>
#include <vector>

#include "game/game_state.h"

namespace bivouac {

/// All records of a pack.
std::vector<PackRecord> ReadPack(const std::string& path);

/// Makes the record the puzzle of the window as a load does, size included: finished board, directions and
/// number of the trees, clues, PuzzleRec.
void LayRecord(Main& main, const PackRecord& record);

}  // namespace bivouac
