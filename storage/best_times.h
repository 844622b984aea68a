// Each player's own times, and the best time of each puzzle.
#pragma once

#include <string>

#include "game/game_state.h"

namespace bivouac {

/// "PLBest" + two digits + ".bvq" in DataDir.
std::string PersonalPath(const Global& global, int player);

/// Whether a procedure that ignores file errors came to use a file.
enum class FileUse { None, Used };

/// Finds the current player's time for the puzzle just read and shows it in panel 6. Without a file of the
/// player, panel 6 and PersonalPos stay as they were. File errors are ignored.
FileUse FindPersonal(Main& main);
/// Brings the players' files up to what the packs say; every player has a file afterwards. Overwrites
/// PuzzleRec and PersonalRec. File errors are ignored.
void SyncPersonalBests(Main& main);
/// Keeps the time of a puzzle just solved, Elapsed: first the player's own, then the puzzle's best, each if
/// it is better than the one before. Requires: a player is selected. Errors: Overflow beyond 32767 minutes,
/// IndexOutsideArray if there is no such player.
void RecordTimes(Main& main);
/// Asks, then clears every time of BoardSize. Overwrites PuzzleRec and PersonalRec.
/// Errors: a file error if a file cannot be read or written.
void cmdResetTime_Click(Main& main);

}  // namespace bivouac
