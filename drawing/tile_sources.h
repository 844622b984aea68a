// The sources of the tiles, from assets/tiles.
#pragma once

#include <string_view>

#include "game/array.h"

namespace bivouac {

/// An SVG document for each cell code.
extern const FixedArray<std::string_view, 4> kTileSources;
/// Style sheets for them: of a field that a hint points at, and of a field on paper.
extern const std::string_view kMarkedStyle;
extern const std::string_view kInkStyle;

}  // namespace bivouac
