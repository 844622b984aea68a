// The proof that a layout has one solution.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Searches for a second solution of the trees in Board with the clues in the captions. `result` is true if
/// there is none. Overwrites Board and Solution. Returns how often the head of the main loop was passed, the
/// last time included.
long CheckUniqueSolution(Main& main, bool& result);

}  // namespace bivouac
