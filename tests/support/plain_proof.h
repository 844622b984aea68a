// The proof of one solution in its plain form, which rebuilds its scratch board at every round: the yardstick
// for the fast one.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// As CheckUniqueSolution, but yields at every round.
long PlainCheckUniqueSolution(Main& main, bool& result);

}  // namespace bivouac
