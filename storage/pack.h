// Pack files: where they lie, how many puzzles they hold, and the way from puzzle to puzzle and size to size.
#pragma once

#include <string>

#include "game/game_state.h"

namespace bivouac {

/// "BVPack" + two digits + ".bvq".
std::string PackName(int size);
/// Path of the pack of a size in DataDir.
std::string PackPath(const Global& global, int size);
/// Puzzles in the pack, its length rounded as CountRecords does; 0 if it does not exist.
int PackCount(const Global& global, int size);

/// Lays PuzzleRec out: its finished board, the directions and number of its trees, the captions of its clues.
/// Requires: the board has its size.
void LayPuzzleOut(Main& main);

/// Fills PuzzleCount, deletes left-over ".bvp" files, and shows the total of BoardSize in panel 4.
/// Errors: a file error if one cannot be deleted; IndexOutsideArray for a BoardSize that has no pack.
void CountPacks(Main& main);

/// cmdOpen, cmdNext: load a puzzle and start it. A puzzle that cannot be read leaves PuzzleNo as it was.
/// Errors: a damaged record may end in IndexOutsideArray once another file than the pack has been used.
void cmdOpen_Click(Main& main);
void cmdNext_Click(Main& main);
/// Changes the size. Errors: IndexOutsideArray for 19 and 20, which the box lets through.
void cmdOptions_Click(Main& main);

/// The box that tells of a pack that could not be read or written.
void ShowFileError(Main& main, const char* text);

}  // namespace bivouac
