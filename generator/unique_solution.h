// The proof that a layout has one solution.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// `result` is false if the trees on Board, with the clues in the captions, can be given their tents in two
/// ways or more, and true if not. Board becomes what a solver knows: trees, and grass where no tree is near
/// or a clue is 0; Solution is left alone. Yields at its start and every tenth of a millisecond.
///
/// The ways are those that a plain search counts which gives the trees their tents one by one, from the last
/// tree in reading order to the first. Every tree but the first needs a cell that is open on Board, no two of
/// these tents equal or touching and no line with more of them than its clue: tents are only ever added, so
/// testing them all at the end comes to the same as testing at every step. A row with a tree two rows above
/// it must hold its clue exactly, because it is looked at when that tree's turn comes and no tree that is
/// left can reach it; no other row is looked at in that way. The first tree comes last and nothing is tested
/// after it, so every side of it that is open and that no other tent touches counts as a way of its own.
/// Which ways there are does not depend on the order in which they are sought, so this search decides trees
/// in any order, and closes a cell or pitches a tent as soon as all ways that are left agree on it.
///
/// Requires: TreeCount is the number of trees on Board. Errors: IndexOutsideArray if it is not, NotANumber if
/// a caption is no clue.
void CheckUniqueSolution(Main& main, bool& result);

}  // namespace bivouac
