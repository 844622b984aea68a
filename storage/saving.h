// Writing PuzzleRec to the pack of the current size.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Appends PuzzleRec as a new puzzle and makes it the current one, unless the pack shrank since it was
/// counted. A refusal or a file error is told in a box, and leaves pack and count as they were.
void Save_New(Main& main);
/// Writes PuzzleRec back as record PuzzleNo, unless the pack has fewer records. A refusal or a file error is
/// told in a box.
void Save_Puzzle(Main& main);

/// Trees and clues are equal; levels and times may differ.
bool IsSamePuzzle(const PackRecord& a, const PackRecord& b);

}  // namespace bivouac
