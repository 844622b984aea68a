#include "events/presses.h"

#include <algorithm>
#include <array>
#include <utility>

#include "game/clock.h"
#include "game/layout.h"
#include "game/moves.h"
#include "game/play.h"
#include "game/puzzle_line.h"
#include "game/sound.h"
#include "generator/generator.h"
#include "generator/given_puzzle.h"
#include "hints/hints.h"
#include "storage/best_times.h"
#include "storage/kept_game.h"
#include "storage/navigation.h"
#include "storage/players.h"
#include "storage/saving.h"
#include "storage/start_up.h"
#include "workbench/workbench.h"

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

/// A game that is on runs or pauses.
bool IsGameOn(const Main& main) {
  return !main.PuzzleOver && !IsMakingPuzzle(main) && (main.Paused || main.Timer3.Enabled);
}

/// Whether a kept game can be played as far as it went: its clicks must not end it.
void RequirePlayable(const KeptGame& game) {
  Workbench bench;
  LayOutRecord(bench.main, game.Puzzle);
  StartPuzzle(bench.main);
  for (const int cell : game.Log) {
    Grid_Click(bench.main, cell);
    if (bench.main.PuzzleOver) throw InputError("The kept game is damaged: its steps solve the puzzle.");
  }
}

/// Plays the clicks of a kept game in silence, on its puzzle just started, and sets the clock.
void Replay(Main& main, const KeptGame& game) {
  const bool sound = std::exchange(main.SoundOn, false);
  for (const int cell : game.Log) Grid_Click(main, cell);
  while (main.StepCount > game.Steps) cmdUndo_Click(main);
  main.SoundOn = sound;
  for (int line = 0; line < main.BoardSize; ++line) {
    main.RowCnt[line].ForeColor = game.RowColours[static_cast<std::size_t>(line)];
    main.ColCnt[line].ForeColor = game.ColColours[static_cast<std::size_t>(line)];
  }
  main.Elapsed = 0;
  AddPenalty(main, game.Clock);
  main.LabelTijd.Caption = FormatClock(main.Elapsed);
  if (game.Paused) cmdPause_Click(main);
}

/// Errors: InputError, before anything is played.
void GoOn(Main& main, int number) {
  const KeptGame game = ReadKeptGame(main, number);
  RequirePlayable(game);
  OpenPuzzle(main, number);
  if (main.PuzzleOver || !IsSamePuzzle(main.global.PuzzleRec, game.Puzzle)) return;
  Replay(main, game);
}

/// Adds a puzzle to the pack of its size and opens it, as one that was just made.
void OpenGiven(Main& main, const PackRecord& puzzle) {
  const int size = SizeOf(puzzle.LevelSize);
  if (size != main.BoardSize) ChangeSize(main, size);
  BeginOpening(main);
  main.global.PuzzleRec = puzzle;
  main.Level = LevelOf(puzzle.LevelSize);
  LayPuzzleOut(main);
  Save_New(main);
  main.global.PersonalPos = 0;
  StartPuzzle(main);
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
  if (IsMakingPuzzle(main)) return;
  const bool wasOn = !main.PuzzleOver;
  Grid_Click(main, Index);
  if (wasOn && main.PuzzleOver) DropKeptGame(main);
}

void PressNewOfLevel(Main& main) {
  PressButton(main, ButtonOf(&Main::cmdGenerate), MakePuzzleOfLevel);
}

void PressEndMaking(Main& main) {
  if (IsMakingPuzzle(main)) EndMaking(main);
}

std::optional<std::string> PressKeep(Main& main) {
  if (!IsGameOn(main)) return {};
  if (!main.BoardLive) lblHint_Click(main);
  return KeepGame(main);
}

void PressGoOn(Main& main, int number) {
  PressButton(main, ButtonOf(&Main::cmdOpen), [number](Main& pressed) {
    try {
      GoOn(pressed, number);
    } catch (const InputError& error) {
      pressed.desktop.Show(
          MessageBox{.Title = "Kept Game", .Text = error.what(), .Symbol = BoxSymbol::Warning});
    }
  });
}

void PressPaste(Main& main, const std::string& text) {
  PressButton(main, ButtonOf(&Main::cmdGenerate), [&](Main& pressed) {
    try {
      Workbench bench;
      OpenGiven(pressed, CompletePuzzle(bench.main, ReadPuzzleLine(text)));
    } catch (const InputError& error) {
      pressed.desktop.Show(MessageBox{.Title = "Paste Puzzle",
                                      .Text = std::string("Nothing was pasted: ") + error.what() + ".",
                                      .Symbol = BoxSymbol::Warning});
    }
  });
}

bool IsPuzzleOnShow(const Main& main) {
  const PackRecord& puzzle = main.global.PuzzleRec;
  if (main.PuzzleNo == 0 || IsMakingPuzzle(main) || SizeOf(puzzle.LevelSize) != main.BoardSize) return false;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if ((puzzle.Layout[cell] == CELL_TREE) != (main.Board[cell] == CELL_TREE)) return false;
  }
  return true;
}

std::optional<std::string> PressRemember(Main& main) {
  if (!IsGameOn(main)) return {};
  main.RememberedStep = main.StepCount;
  return "Step " + std::to_string(main.StepCount) + " remembered.";
}

void PressBackToStep(Main& main) {
  const ButtonRow& undo = ButtonOf(&Main::cmdUndo);
  while (main.RememberedStep >= 0 && main.StepCount > main.RememberedStep) {
    const int before = main.StepCount;
    PressButton(main, undo);
    if (main.StepCount >= before) return;
  }
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
