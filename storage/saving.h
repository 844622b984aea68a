// Writing PuzzleRec to the pack of the current size.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Appends PuzzleRec as a new puzzle, unless the pack shrank since it was counted.
void Save_New(Main& main);
/// Writes PuzzleRec back as record PuzzleNo, unless the pack has fewer records.
void Save_Puzzle(Main& main);

}  // namespace bivouac
