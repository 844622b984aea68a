// Positions and hints as pictures.
#pragma once

#include "drawing/board_painter.h"
#include "walks/explanation.h"

namespace bivouac {

/// The board and the clues as they stand.
BoardPicture PositionPicture(const Main& main);

/// The same with the marks of a hint: what explains it, the lines that it looked at and, with frames, the
/// changes.
BoardPicture HintPicture(const Main& main, const FoundHint& hint, const std::vector<FieldChange>& changes);

/// Plays a passage and pictures it: what its steps beyond the first stage start from, and each field with the
/// step that decides it.
BoardPicture PassagePicture(Main& main, const Way& way, Passage passage);

}  // namespace bivouac
