// When two puzzles are the same to the eye.
#pragma once

#include <string>

#include "game/records.h"

namespace bivouac {

/// A text that two puzzles share exactly if one is the other turned or mirrored: the smallest of the eight
/// views of its trees and clues. Requires: its size is 6 to 18.
std::string ViewedFromAnySide(const PackRecord& record);

}  // namespace bivouac
