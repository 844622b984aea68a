// What a puzzle is, in numbers and in words.
#pragma once

#include <string>

#include "game/game_state.h"
#include "game/text.h"

namespace bivouac {

struct PuzzleFacts {
  int Size = 0;
  /// As stored; as rated where nothing is stored. Below 1 the rater's rules cannot finish it.
  int Level = 0;
  float Difficulty = 0;
};

/// Rates a record as a load would. Requires: its size is 6 to 18. Leaves on the board what the rating left.
PuzzleFacts FactsOf(Main& main, const PackRecord& record);

/// Size, level and difficulty in words.
std::string FactsText(const PuzzleFacts& facts);

}  // namespace bivouac
