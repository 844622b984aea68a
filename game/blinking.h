// The blink marks of a hint and the waiting animation of the generator.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Appends a mark. A cell may be marked more than once, and may lie off the board.
/// Tile 0 to 3: a field that stands on the board, in turn with the open tile. 4 and above: in turn with its
/// plain form. Below 0: a field that is open now, shown as the tile of the absolute value.
void AddBlink(Main& main, int cell, int tile);

void Timer2_Timer(Main& main);
/// Gives every marked cell the tile that its mark leaves behind, whatever the board holds.
void PutBackMarkedTiles(Main& main);

/// A cross of grass, tents or trees runs from the corners along the diagonals.
void Timer1_Timer(Main& main);

}  // namespace bivouac
