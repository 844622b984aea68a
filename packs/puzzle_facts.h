// What a puzzle is, in numbers and in words.
#pragma once

#include <string>

#include "game/game_state.h"
#include "game/text.h"
#include "rating/rating.h"

namespace bivouac {

struct Rating {
  int Level = 0;
  float Difficulty = 0;
  RatingTrace Trace;
};

/// Rates a record from its trees and clues alone. Requires: its size is 6 to 18. Leaves on the board what the
/// rating left.
Rating Rate(Main& main, const PackRecord& record);

struct PuzzleFacts {
  int Size = 0;
  /// As stored; as rated where nothing is stored. Below 1 the rater's rules cannot finish it.
  int Level = 0;
  float Difficulty = 0;
};

/// Rates a record as a load would, else as Rate.
PuzzleFacts FactsOf(Main& main, const PackRecord& record);

/// Size, level and difficulty in words.
std::string FactsText(const PuzzleFacts& facts);

}  // namespace bivouac
