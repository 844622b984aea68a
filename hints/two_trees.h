// Stage 3's longest rule: two trees around one open field.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Reports the first open field with exactly two trees beside it, neither with a tent, that decides
/// something. False if there is none. Errors: IndexOutsideArray where a far corner lies beyond the first or
/// last field of the board.
bool TwoTreesAroundField(Main& main);

}  // namespace bivouac
