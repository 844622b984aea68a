// When two puzzles are the same to the eye.
#pragma once

#include <string>
#include <vector>

#include "game/records.h"

namespace bivouac {

/// A text that two puzzles share exactly if one is the other turned or mirrored: the smallest of the eight
/// views of its trees and clues. Requires: its size is 6 to 18.
std::string ViewedFromAnySide(const PackRecord& record);

struct AlikePair {
  long Number;  ///< Of the later of two records, counted from 1.
  long First;   ///< Of the first record that it is alike to.
};
/// All records that are alike to an earlier one. Records of sizes that do not exist are left out.
std::vector<AlikePair> AlikePuzzles(const std::vector<PackRecord>& records);

}  // namespace bivouac
