// Pack files: where they lie, how many puzzles they hold, and the size setting.
#pragma once

#include <string>

#include "game/game_state.h"

namespace bivouac {

/// "BVPack" + two digits + ".bvq".
std::string PackName(int size);
/// Path of the pack of a size in DataDir.
std::string PackPath(const Global& global, int size);
/// Puzzles in the pack; 0 if it does not exist.
long PackCount(const Global& global, int size);

/// Fills PuzzleCount, deletes left-over ".bvp" files, and shows the total of BoardSize in panel 4.
void CountPacks(Main& main);

/// cmdOpen, cmdNext: load a puzzle and start it. cmdOptions: change the size.
void cmdOpen_Click(Main& main);
void cmdNext_Click(Main& main);
/// Errors: IndexOutsideArray for 19 and 20, which the box lets through.
void cmdOptions_Click(Main& main);

}  // namespace bivouac
