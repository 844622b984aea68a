#include "fuzz/invariants.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "events/presses.h"
#include "game/board.h"
#include "game/layout.h"
#include "game/text.h"
#include "packs/faults.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

struct Invariant {
  std::string_view Sentence;
  /// Returns what is wrong, empty if nothing is.
  std::string (*Check)(Watched& watched);
};

std::string At(int cell, int is, int wanted) {
  return "field " + std::to_string(cell) + " is " + std::to_string(is) + ", not " + std::to_string(wanted);
}

/// From the press of New to the start of play.
bool IsBetweenPuzzles(const Watched& watched) {
  return IsMakingPuzzle(watched.main) || watched.Now == Amid::Report;
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
  if (IsBetweenPuzzles(watched) || watched.OpeningBrokeOff) return "";
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
  if (watched.Now == Amid::WrongFields) return main.Timer2.Enabled ? "the questions blink" : "";
  if (main.Timer2.Enabled == main.BoardLive) return "timer and hint differ";
  if (!main.BoardLive && main.lblHint.Caption.empty()) return "a hint without a text";
  return "";
}

std::string ClockTimer(Watched& watched) {
  const Main& main = watched.main;
  const bool runs =
      !main.PuzzleOver && !main.Paused && !IsBetweenPuzzles(watched) && watched.Now != Amid::Solved;
  return main.Timer3.Enabled == runs ? "" : main.Timer3.Enabled ? "the clock runs" : "the clock stands";
}

std::string Buttons(Watched& watched) {
  Main& main = watched.main;
  if (watched.Now == Amid::Solved) return "";
  std::array<bool, 13> enabled;
  std::size_t at = 0;
  for (const ButtonRow& row : ButtonTable()) enabled.at(at++) = (main.*row.Value).Enabled;
  RefreshButtons(main);
  if (IsBetweenPuzzles(watched)) {
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
  if (IsBetweenPuzzles(watched) || watched.OpeningBrokeOff || watched.NoPuzzleOfThisSize) return "";
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
  if (IsBetweenPuzzles(watched) || watched.OpeningBrokeOff || watched.NoPuzzleOfThisSize) return "";
  for (int i = 0; i < main.BoardSize; ++i) {
    std::string wrong = LineColour(main, main.RowCnt[i], i * main.BoardSize, 1);
    if (wrong.empty()) wrong = LineColour(main, main.ColCnt[i], i, main.BoardSize);
    if (!wrong.empty()) return "line " + std::to_string(i) + ": " + wrong;
  }
  return "";
}

std::string Layout(Watched& watched) {
  const Main& main = watched.main;
  for (int i = 0; i < kMaxSize && !IsBetweenPuzzles(watched); ++i) {
    const bool wanted = i < main.BoardSize;
    if (main.RowCnt[i].Visible != wanted || main.ColCnt[i].Visible != wanted)
      return "clue " + std::to_string(i);
  }
  for (int cell = 0; cell < kMaxCells; ++cell) {
    if (main.Grid[cell].Visible != (cell < main.CellCount)) return "field " + std::to_string(cell);
  }
  return "";
}

std::string Title(Watched& watched) {
  if (watched.Now == Amid::Players) return "";
  const Global& global = watched.main.global;
  const std::string title = global.CurrentPlayer == 0
                                ? "Bivouac - Free Play (no player selected)"
                                : "Bivouac - " + NameOf(global, global.CurrentPlayer) + " is playing";
  return watched.main.Caption == title ? "" : watched.main.Caption;
}

constexpr const char* kNotKept = "Puzzle #: NEW";
constexpr const char* kNoBestTime = "Best Time: --:-- (No Best Time Yet)";

std::string MinutesAndSeconds(int minutes, int seconds) {
  return TwoDigits(minutes) + ":" + TwoDigits(seconds);
}

/// While a game is on nobody else can come to play: only then the state tells the name.
bool BestTimeFits(const Main& main, const std::string& text) {
  const PackRecord& puzzle = main.global.PuzzleRec;
  const std::string time = "Best Time: " + MinutesAndSeconds(puzzle.BestMinutes, puzzle.BestSeconds) + " by ";
  if (main.PuzzleOver && (text == kNoBestTime || text.starts_with(time))) return true;
  if (main.StatusBar1[2].Text == kNotKept) return text == "Best Time: NOT AVAILABLE";
  const bool known =
      (puzzle.BestMinutes > 0 || puzzle.BestSeconds > 0) && puzzle.BestPlayer <= main.global.PlayerCount;
  return text == (known ? time + NameOf(main.global, puzzle.BestPlayer) : kNoBestTime);
}

bool YourTimeFits(const Main& main, const std::string& text) {
  if (text == "Your Time: --:--") return true;
  const PersonalRecord& own = main.global.PersonalRec;
  const bool mayBeKnown = main.PuzzleOver || main.global.CurrentPlayer > 0;
  return mayBeKnown && text == "Your Time: " + MinutesAndSeconds(own.PersonalMinutes, own.PersonalSeconds);
}

std::string Panels(Watched& watched) {
  const Main& main = watched.main;
  const auto& bar = main.StatusBar1;
  const std::string size = std::to_string(main.BoardSize);
  if (bar[0].Text != "Size: " + size + "x" + size) return bar[0].Text;
  if (bar[3].Text != "Total Puzzles: " + std::to_string(main.PuzzleCount[main.BoardSize - kMinSize]))
    return bar[3].Text;
  if (IsBetweenPuzzles(watched) || watched.OpeningBrokeOff || watched.Now == Amid::Solved) return "";
  // A puzzle that the pack could not take leaves the level before it on show.
  const bool notKept = bar[2].Text == kNotKept;
  if (!notKept && bar[1].Text != "Level: " + std::to_string(main.Level)) return bar[1].Text;
  const std::string number = watched.NoPuzzleOfThisSize ? "--" : std::to_string(main.PuzzleNo);
  if (bar[2].Text != "Puzzle #: " + number && (watched.NoPuzzleOfThisSize || !notKept)) return bar[2].Text;
  if (watched.NoPuzzleOfThisSize ? bar[4].Text != kNoBestTime : !BestTimeFits(main, bar[4].Text))
    return bar[4].Text;
  return YourTimeFits(main, bar[5].Text) ? "" : bar[5].Text;
}

std::string Players(Watched& watched) {
  const FormNamen& form = watched.form;
  const Global& global = watched.main.global;
  const auto& names = form.NaamLijst.Items;
  if (static_cast<int>(names.size()) != std::max(0, global.PlayerCount)) return "length of the list";
  for (int player = 1; player <= global.PlayerCount; ++player) {
    if (TrimRight(names[static_cast<std::size_t>(player) - 1]) != NameOf(global, player))
      return "player " + std::to_string(player);
  }
  const bool edits = form.NaamInvoerveld.Enabled;
  const bool selected = form.NaamLijst.ListIndex >= 0;
  const bool barred = form.KnopNieuweSpeler.Enabled == edits || form.KnopAnnuleren.Enabled == edits ||
                      form.NaamLijst.Enabled == edits || !form.CommandFree.Enabled;
  if (barred) return edits ? "editing" : "not editing";
  const bool usable = !edits && selected;
  return form.KnopOK.Enabled == usable && form.KnopWijzigen.Enabled == usable ? "" : "OK or Edit";
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
    {"The title says who plays.", Title},
    {"The status bar says the size, the total, and level, number and times of the puzzle.", Panels},
    {"The dialog lists the players; while a name is edited all but Free Play is barred, and an entry must be "
     "selected to be taken or edited.",
     Players},
});

}  // namespace

Amid AmidOf(const Main& main, std::string_view title, Amid outer) {
  if (IsMakingPuzzle(main)) return outer;
  if (title == "Puzzle Solved!!!" || title == "Personal Best Time!!!" || title == "New Best Time!!!" ||
      title == "Puzzle Save Error")
    return Amid::Solved;
  if (title == "Hint Report") return Amid::WrongFields;
  if (title == "Generate report") return Amid::Report;
  if (title == "File Error") return Amid::FileError;
  return outer;
}

std::string Broken(Watched& watched) {
  if (watched.Now == Amid::FileError) return "";
  for (const Invariant& invariant : kInvariants) {
    const std::string wrong = invariant.Check(watched);
    if (!wrong.empty()) return std::string(invariant.Sentence) + " -- " + wrong;
  }
  return "";
}

std::string WrongInMadePuzzle(const Main& main) {
  if (main.StatusBar1[2].Text == kNotKept) return "";
  PackRecord puzzle;
  RecordFile<PackRecord>(PackPath(main.global, main.BoardSize)).Read(main.PuzzleNo, puzzle);
  Workbench bench;
  const std::vector<Fault> faults = FaultsOf(PackName(main.BoardSize), {{puzzle}, 0}, bench.main);
  return faults.empty() ? "" : faults.front().Field + ": " + faults.front().Words;
}

}  // namespace bivouac
