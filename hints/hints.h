// Hints: explain the next deduction in a sentence while the fields concerned blink. A hint never changes the
// board.
#pragma once

#include "game/game_state.h"

namespace bivouac {

void cmdHint_Click(Main& main);
/// Ends a hint on show.
void lblHint_Click(Main& main);

/// The stages of the chain. Each reports the first find of its rules or calls the next.
/// Errors: IndexOutsideArray where a rule reads beyond the board.
void HintBasic(Main& main);
void HintTrees(Main& main);
void HintPairs(Main& main);
void HintPatterns(Main& main);
void HintCounts(Main& main);

}  // namespace bivouac
