// A record as the puzzle of the window.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Lays a record out as a load does, size included: finished board, directions and number of the trees,
/// clues, PuzzleRec.
void LayRecord(Main& main, const PackRecord& record);

}  // namespace bivouac
