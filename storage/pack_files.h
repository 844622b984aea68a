// Pack files: where they lie and how many puzzles they hold.
#pragma once

#include <string>

#include "game/game_state.h"

namespace bivouac {

/// "BVPack" + two digits + ".bvq".
std::string PackName(int size);
/// Path of the pack of a size in DataDir.
std::string PackPath(const Global& global, int size);
/// Puzzles in the pack, its length rounded as RecordCounts tells; 0 if it does not exist.
int PackCount(const Global& global, int size);

/// Fills PuzzleCount, deletes left-over ".bvp" files, and shows the total of BoardSize in panel 4.
/// Errors: a file error if one cannot be deleted; IndexOutsideArray for a BoardSize that has no pack.
void CountPacks(Main& main);

/// The box that tells of a pack that could not be read or written.
void ShowFileError(Main& main, const char* text);

}  // namespace bivouac
