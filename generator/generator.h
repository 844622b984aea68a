// New puzzles: layouts drawn at random, proved to have one solution, rated, and appended to the pack.
#pragma once

#include "game/game_state.h"

namespace bivouac {

void cmdGenerate_Click(Main& main);

}  // namespace bivouac
