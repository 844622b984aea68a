// The start of play, moves backward and forward, and the solution.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// The state Playing before a puzzle is there: what the opening of one begins with. Pause, Solution and Hint
/// stay barred until StartPuzzle.
void BeginOpening(Main& main);

/// Turns a loaded puzzle into a game in progress, also as the handler of cmdRestart. Needs the trees in
/// Board, their TentDir and the captions of the clues. Leaves PuzzleOver, Paused and BoardLive alone.
void StartPuzzle(Main& main);

/// Errors: IndexOutsideArray at step 0, which can happen while a hint is on show.
void cmdUndo_Click(Main& main);
/// Requires: StepCount below MoveLogTop.
void cmdRedo_Click(Main& main);
/// Shows the solution and ends the game. Only pictures change.
void cmdSolution_Click(Main& main);

}  // namespace bivouac
