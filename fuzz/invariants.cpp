#include "fuzz/invariants.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "events/presses.h"
#include "game/board.h"
#include "game/layout.h"

namespace bivouac {
namespace {

std::string At(int cell, int is, int wanted) {
  return "field " + std::to_string(cell) + " is " + std::to_string(is) + ", not " + std::to_string(wanted);
}

std::string State(Watched& watched) {
  const Main& main = watched.main;
  const bool known = main.Paused ? !main.PuzzleOver && main.BoardLive : true;
  return known ? "" : "paused without a game, or with a hint on show";
}

/// What the solution shows at a cell.
int SolutionTile(const Main& main, int cell) {
  return main.Solution[cell] == CELL_OPEN ? CELL_GRASS : main.Solution[cell];
}

bool IsMarked(const Main& main, int cell) {
  for (int i = 0; i <= main.BlinkTop; ++i) {
    if (main.BlinkCell[i] == cell) return true;
  }
  return false;
}

std::string Pictures(Watched& watched) {
  const Main& main = watched.main;
  if (IsMakingPuzzle(main) || watched.OpeningBrokeOff) return "";
  const bool solutionMayShow = main.PuzzleOver && !watched.NoPuzzleOfThisSize;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    const int picture = main.Grid[cell].Picture;
    if (picture == main.Board[cell]) continue;
    if (solutionMayShow && picture == SolutionTile(main, cell)) continue;
    if (!main.BoardLive && IsMarked(main, cell)) continue;
    return At(cell, picture, main.Board[cell]);
  }
  return "";
}

std::string Marks(Watched& watched) {
  const Main& main = watched.main;
  if (main.BoardLive) return "";
  for (int i = 0; i <= main.BlinkTop; ++i) {
    const int cell = main.BlinkCell[i];
    if (cell < 0 || cell >= kMaxCells) continue;
    const int picture = main.Grid[cell].Picture;
    bool fits = picture == CELL_OPEN || picture == SolutionTile(main, cell);
    for (int j = 0; j <= main.BlinkTop; ++j) {
      const int tile = main.BlinkTile[j];
      fits = fits || (main.BlinkCell[j] == cell && (picture == std::abs(tile) || picture == tile - 4));
    }
    if (!fits && picture != main.Board[cell]) return At(cell, picture, main.BlinkTile[i]);
  }
  return "";
}

std::string ShieldUp(Watched& watched) {
  return watched.main.Shield.Visible == watched.main.Paused ? "" : "shield and pause differ";
}

std::string BlinkTimer(Watched& watched) {
  const Main& main = watched.main;
  if (main.Timer2.Enabled == main.BoardLive) return "timer and hint differ";
  if (!main.BoardLive && main.lblHint.Caption.empty()) return "a hint without a text";
  return "";
}

std::string ClockTimer(Watched& watched) {
  const Main& main = watched.main;
  const bool runs = !main.PuzzleOver && !main.Paused && !IsMakingPuzzle(main);
  return main.Timer3.Enabled == runs ? "" : main.Timer3.Enabled ? "the clock runs" : "the clock stands";
}

std::string Buttons(Watched& watched) {
  Main& main = watched.main;
  std::array<bool, 13> enabled;
  std::size_t at = 0;
  for (const ButtonRow& row : ButtonTable()) enabled.at(at++) = (main.*row.Value).Enabled;
  RefreshButtons(main);
  if (IsMakingPuzzle(main)) {
    main.cmdPause.Enabled = main.cmdSolution.Enabled = main.cmdHint.Enabled = false;
  }
  std::string wrong;
  at = 0;
  for (const ButtonRow& row : ButtonTable()) {
    if ((main.*row.Value).Enabled != enabled.at(at)) wrong.append(" ").append(std::to_string(at));
    (main.*row.Value).Enabled = enabled.at(at++);
  }
  return wrong.empty() ? "" : "rows of the table of buttons:" + wrong;
}

std::string Steps(Watched& watched) {
  const Main& main = watched.main;
  if (main.StepCount < 0 || main.StepCount > main.MoveLogTop || main.MoveLogTop > main.MoveLog.Upper())
    return "step " + std::to_string(main.StepCount) + " of " + std::to_string(main.MoveLogTop);
  if (watched.OpeningBrokeOff) return "";
  return main.LabelStap.Caption == std::to_string(main.StepCount) ? "" : "shown " + main.LabelStap.Caption;
}

std::string Log(Watched& watched) {
  const Main& main = watched.main;
  if (IsMakingPuzzle(main) || watched.OpeningBrokeOff || watched.NoPuzzleOfThisSize) return "";
  Array<int> board = watched.StartBoard;
  for (int step = 1; step <= main.StepCount; ++step) {
    int& code = board[main.MoveLog[step]];
    if (code == CELL_TREE) return "a step on a tree";
    code = (code + 1) % 3;
  }
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (board[cell] != main.Board[cell]) return At(cell, main.Board[cell], board[cell]);
  }
  return "";
}

TextColour ColourBy(LineRule rule, int tents, int open, int clue) {
  if (tents == clue && (rule == LineRule::Undo || open == 0)) return TextColour::Green;
  return tents > clue ? TextColour::Red : TextColour::WindowText;
}

std::string LineColour(const Main& main, const Label& label, int first, int step) {
  int tents = 0;
  int open = 0;
  for (int i = 0; i < main.BoardSize; ++i) {
    tents += main.Board[first + i * step] == CELL_TENT;
    open += main.Board[first + i * step] == CELL_OPEN;
  }
  const int clue = std::atoi(label.Caption.c_str());
  if (label.ForeColor == ColourBy(LineRule::Click, tents, open, clue)) return "";
  if (label.ForeColor == ColourBy(LineRule::Undo, tents, open, clue)) return "";
  const TextColour atStart = clue <= 0 ? TextColour::Green : TextColour::WindowText;
  if (tents == 0 && label.ForeColor == atStart) return "";
  return "clue " + label.Caption + " with " + std::to_string(tents) + " tents and " + std::to_string(open) +
         " open fields";
}

std::string LineColours(Watched& watched) {
  const Main& main = watched.main;
  if (IsMakingPuzzle(main) || watched.OpeningBrokeOff || watched.NoPuzzleOfThisSize) return "";
  for (int i = 0; i < main.BoardSize; ++i) {
    std::string wrong = LineColour(main, main.RowCnt[i], i * main.BoardSize, 1);
    if (wrong.empty()) wrong = LineColour(main, main.ColCnt[i], i, main.BoardSize);
    if (!wrong.empty()) return "line " + std::to_string(i) + ": " + wrong;
  }
  return "";
}

std::string Layout(Watched& watched) {
  const Main& main = watched.main;
  const bool cluesShow = !IsMakingPuzzle(main);
  for (int i = 0; i < kMaxSize; ++i) {
    const bool wanted = cluesShow && i < main.BoardSize;
    if (!IsMakingPuzzle(main) && (main.RowCnt[i].Visible != wanted || main.ColCnt[i].Visible != wanted))
      return "clue " + std::to_string(i);
  }
  for (int cell = 0; cell < kMaxCells; ++cell) {
    if (main.Grid[cell].Visible != (cell < main.CellCount)) return "field " + std::to_string(cell);
  }
  return "";
}

constexpr auto kInvariants = std::to_array<Invariant>({
    {"The game is always in one of its states: none, playing, paused, hint on show, making a puzzle.", State},
    {"The picture of a field is the tile of Board, unless a hint blinks there, the solution is shown or a "
     "puzzle is being made.",
     Pictures},
    {"A mark alternates between two tiles, and both are told by its value.", Marks},
    {"The shield is up exactly while the game is paused.", ShieldUp},
    {"The blinking timer runs exactly while a hint is on show, also under the solution.", BlinkTimer},
    {"The clock's timer runs exactly while a game does: not under the shield, not without a game.",
     ClockTimer},
    {"The buttons are what RefreshButtons gives for the state; while a puzzle is made three more are barred.",
     Buttons},
    {"Steps, log and label agree.", Steps},
    {"The board is its start and one step of the cycle for each entry of the log.", Log},
    {"A clue's colour is the result of the rule of clicks or of the rule of undo.", LineColours},
    {"Exactly the fields of the board are visible, and their clues but while a puzzle is made.", Layout},
});

}  // namespace

std::span<const Invariant> Invariants() {
  return kInvariants;
}

}  // namespace bivouac
