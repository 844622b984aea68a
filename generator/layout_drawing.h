// Layouts drawn at random.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Draws a layout that is full: no cell is left that could become a tree with a tent beside it. Board,
/// TentDir, TreeCount and the hidden captions become it; all tiles become blank. The seed is taken from
/// Desktop::RandomSeed. Yields before every pass over the board, which takes some microseconds. Requires: the
/// board is laid out for BoardSize.
void DrawLayout(Main& main);

}  // namespace bivouac
