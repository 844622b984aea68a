// The proof of one solution in its plain form, which rebuilds its scratch board at every round: the judge of
// the fast one's verdicts.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// As CheckUniqueSolution, but yields at every round.
void PlainCheckUniqueSolution(Main& main, bool& result);

}  // namespace bivouac
