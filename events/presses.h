// What a player can press, whether with the mouse, by a key, a shortcut or an assistive tool, and what ends
// before a press acts. The window sends every press through here, and so do the tests.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "game/game_state.h"

namespace bivouac {

/// What a press ends before its button acts, as a click on the hint's text or on CONTINUE would. Without it
/// an undo would reach step 0, the marks of one puzzle the board of the next, and a pause the clock of the
/// next.
enum class EndsFirst { Nothing, Hint, Pause, HintAndPause };

struct ButtonRow {
  Button Main::*Value;
  void (*Click)(Main& main);
  EndsFirst Ends;
};

/// All buttons of the window, from top to bottom and then from the left.
std::span<const ButtonRow> ButtonTable();
/// The row of a button. Requires: a button of the window.
const ButtonRow& ButtonOf(Button Main::*value);

/// True while the generator is at work, which lets events run.
bool IsMakingPuzzle(const Main& main);

/// Presses a button. A disabled one does nothing, and neither does one that what ended first has disabled.
void PressButton(Main& main, const ButtonRow& row);
/// Presses cmdOpen, whose box is answered with that number already. Requires: it is from 1 to the count.
void PressOpen(Main& main, int number);
/// Presses cmdGenerate for a puzzle of a level, which is asked for.
void PressNewOfLevel(Main& main);
/// Ends the making of a puzzle of a level.
void PressEndMaking(Main& main);
/// Keeps the game that is on, in a pause too; a hint on show ends first. Returns the sentence that tells of
/// it, nothing where no game is on or a box has told why it cannot be kept.
std::optional<std::string> PressKeep(Main& main);
/// Presses cmdOpen to go on with the current player's kept game of that puzzle, with clock, steps and undo as
/// they were. A box tells of a game that is damaged, or whose puzzle has changed; nothing is played then.
void PressGoOn(Main& main, int number);
/// Remembers the step that a game is at. Returns the sentence that tells of it, nothing where no game is on.
std::optional<std::string> PressRemember(Main& main);
/// Undoes back to the step remembered, if it is part of the game still.
void PressBackToStep(Main& main);
/// Takes a puzzle as a line of text, where no game is on: it is proved and rated, added to its size's pack as
/// a new one, and opened. A box tells what is wrong with another text.
void PressPaste(Main& main, const std::string& text);
/// Whether the puzzle in PuzzleRec is on show, whether it is played or over: then the board is a position of
/// it.
bool IsPuzzleOnShow(const Main& main);
/// Presses a field. Dropped while a puzzle is made: a layout that was changed between its proof and its
/// saving must not reach a pack. A game that it solves is kept no longer.
void PressField(Main& main, int Index);
/// Presses the text of the hint or the rules. Dropped while a puzzle is made: it would enable the buttons
/// that are barred then, and one puzzle could be opened inside another.
void PressHint(Main& main);
/// Presses CONTINUE, which stands on the shield of a pause.
void PressContinue(Main& main);
/// Checks or unchecks the box of the sounds.
void PressSound(Main& main, bool checked);

}  // namespace bivouac
