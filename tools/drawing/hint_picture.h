// Positions and hints as pictures.
#pragma once

#include "tools/drawing/board_painter.h"
#include "tools/solution_walk.h"

namespace bivouac {

/// The board and the clues as they stand.
BoardPicture PositionPicture(const Main& main);

/// The same with the marks of a hint: what explains it and, with frames, the changes.
BoardPicture HintPicture(const Main& main, const FoundHint& hint, const std::vector<FieldChange>& changes);

}  // namespace bivouac
