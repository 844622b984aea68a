#include "events/presses.h"

#include <algorithm>
#include <array>

#include "game/clock.h"
#include "game/layout.h"
#include "game/moves.h"
#include "game/play.h"
#include "game/sound.h"
#include "generator/generator.h"
#include "hints/hints.h"
#include "storage/best_times.h"
#include "storage/navigation.h"
#include "storage/players.h"
#include "storage/start_up.h"

namespace bivouac {
namespace {

// clang-format off
constexpr auto kButtons = std::to_array<ButtonRow>({
    {&Main::cmdOptions,   cmdOptions_Click,   EndsFirst::Hint},
    {&Main::cmdPause,     cmdPause_Click,     EndsFirst::Nothing},
    {&Main::cmdGenerate,  cmdGenerate_Click,  EndsFirst::Hint},
    {&Main::cmdOpen,      cmdOpen_Click,      EndsFirst::Hint},
    {&Main::cmdNext,      cmdNext_Click,      EndsFirst::Hint},
    {&Main::cmdRestart,   StartPuzzle,        EndsFirst::HintAndPause},
    {&Main::cmdSolution,  cmdSolution_Click,  EndsFirst::Pause},  // Shown over a hint, which goes on blinking.
    {&Main::cmdUndo,      cmdUndo_Click,      EndsFirst::Hint},   // Works under the shield.
    {&Main::cmdRedo,      cmdRedo_Click,      EndsFirst::Hint},
    {&Main::cmdHint,      cmdHint_Click,      EndsFirst::Nothing},
    {&Main::cmdPlayers,   cmdPlayers_Click,   EndsFirst::Nothing},
    {&Main::cmdExit,      cmdExit_Click,      EndsFirst::Nothing},
    {&Main::cmdResetTime, cmdResetTime_Click, EndsFirst::Nothing},
});
// clang-format on

bool EndsHint(EndsFirst ends) {
  return ends == EndsFirst::Hint || ends == EndsFirst::HintAndPause;
}

bool EndsPause(EndsFirst ends) {
  return ends == EndsFirst::Pause || ends == EndsFirst::HintAndPause;
}

/// An opening that broke off on a damaged record leaves a board without a clock: no game, so that another
/// puzzle can be opened.
void EndBrokenOpening(Main& main) {
  if (main.PuzzleOver || main.Paused || main.Timer3.Enabled || IsMakingPuzzle(main)) return;
  main.PuzzleOver = true;
  RefreshButtons(main);
}

/// Presses a button that does `click`.
template <class Click>
void PressButton(Main& main, const ButtonRow& row, Click click) {
  if (!(main.*row.Value).Enabled) return;
  if (EndsHint(row.Ends) && !main.BoardLive) lblHint_Click(main);
  if (EndsPause(row.Ends) && main.Paused) Picture1_Click(main);
  if ((main.*row.Value).Enabled) click(main);
  EndBrokenOpening(main);
}

}  // namespace

std::span<const ButtonRow> ButtonTable() {
  return kButtons;
}

const ButtonRow& ButtonOf(Button Main::*value) {
  return *std::find_if(kButtons.begin(), kButtons.end(),
                       [&](const ButtonRow& row) { return row.Value == value; });
}

bool IsMakingPuzzle(const Main& main) {
  return main.Timer1.Enabled;
}

void PressButton(Main& main, const ButtonRow& row) {
  PressButton(main, row, row.Click);
}

void PressOpen(Main& main, int number) {
  PressButton(main, ButtonOf(&Main::cmdOpen), [number](Main& pressed) { OpenPuzzle(pressed, number); });
}

void PressField(Main& main, int Index) {
  if (!IsMakingPuzzle(main)) Grid_Click(main, Index);
}

void PressHint(Main& main) {
  if (!IsMakingPuzzle(main)) lblHint_Click(main);
}

void PressContinue(Main& main) {
  if (main.Paused) Picture1_Click(main);
}

void PressSound(Main& main, bool checked) {
  if (!main.optSound.Enabled) return;
  main.optSound.Checked = checked;
  optSound_Click(main);
}

}  // namespace bivouac
