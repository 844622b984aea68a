// Each player's own times, and the best time of each puzzle.
#pragma once

#include <string>

#include "game/game_state.h"

namespace bivouac {

/// "PLBest" + two digits + ".bvq" in DataDir.
std::string PersonalPath(const Global& global, int player);

/// Finds the current player's time for the puzzle just read and shows it in panel 6.
void FindPersonal(Main& main);
/// Brings the players' files up to what the packs say. Overwrites PuzzleRec and PersonalRec.
void SyncPersonalBests(Main& main);
/// Keeps the time of a puzzle just solved. Requires: a player is selected.
void RecordTimes(Main& main);
/// Errors: a file error if a file cannot be read or written.
void cmdResetTime_Click(Main& main);

}  // namespace bivouac
