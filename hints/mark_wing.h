// How a hint draws a wing: its three trees and the fields they claim.
#pragma once

#include "deduction/wings.h"
#include "game/game_state.h"

namespace bivouac {

/// Appends the marks of a wing. Claimed fields are marked whether or not they are open, or on the board.
void MarkWing(Main& main, const Wing& wing);

}  // namespace bivouac
