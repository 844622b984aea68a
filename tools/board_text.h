// Boards on a terminal.
#pragma once

#include <set>

#include "game/game_state.h"
#include "tools/terminal.h"

namespace bivouac {

/// Draws the board with its clues. Cells of `marked` stand out.
void DrawBoard(const Main& main, const std::set<int>& marked, Terminal& terminal);

}  // namespace bivouac
