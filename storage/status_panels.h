// The texts of the status bar: what is loaded, and its times.
#pragma once

#include <string>

#include "game/game_state.h"

namespace bivouac {

/// Panel 1, BoardSize.
void ShowSize(Main& main);
/// Panel 2, Level.
void ShowLevel(Main& main);
/// Panel 3, PuzzleNo.
void ShowPuzzleNumber(Main& main);
void ShowNoPuzzleNumber(Main& main);
/// Panels 3 and 5 of a new puzzle that stands in no pack.
void ShowUnsavedPuzzle(Main& main);
/// Panel 4, the puzzles of BoardSize as counted. Errors: IndexOutsideArray for a size without a count.
void ShowTotal(Main& main);
/// Panel 5, the best time in PuzzleRec and who holds it. Errors: IndexOutsideArray for a BestPlayer that
/// there is not.
void ShowBestTime(Main& main);
void ShowNoBestTime(Main& main);
/// Panel 6, the time in PersonalRec.
void ShowYourTime(Main& main);
void ShowNoYourTime(Main& main);
/// What panel 6 shows where there is no time.
std::string NoYourTime();

}  // namespace bivouac
