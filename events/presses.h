// What a player can press, whether with the mouse, by a key, a shortcut or an assistive tool, and what ends
// before a press acts. The window sends every press through here, and so do the tests.
#pragma once

#include <span>

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
/// Presses a field. Dropped while a puzzle is made: a layout that was changed between its proof and its
/// saving must not reach a pack.
void PressField(Main& main, int Index);
/// Presses the text of the hint or the rules. Dropped while a puzzle is made: it would enable the buttons
/// that are barred then, and one puzzle could be opened inside another.
void PressHint(Main& main);
/// Presses CONTINUE, which stands on the shield of a pause.
void PressContinue(Main& main);
/// Checks or unchecks the box of the sounds.
void PressSound(Main& main, bool checked);

}  // namespace bivouac
