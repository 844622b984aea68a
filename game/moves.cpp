#include "game/moves.h"

#include "game/board.h"
#include "game/clock.h"
#include "game/layout.h"
#include "game/sound.h"
#include "game/text.h"

namespace bivouac {
namespace {

constexpr int kPenaltyTentFound = 15;  // Seconds for a tree whose tent stands already.
constexpr int kPenaltyTentMissing = 30;
constexpr FixedArray<const char*, 5> kDirectionNames{{"", "North", "East", "South", "West"}};

/// The scan stops at the first wrong tent, and counts open fields no further than that.
bool IsSolved(const Main& main) {
  int tents = 0;
  int open = 0;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] == CELL_TENT) {
      if (main.Solution[cell] != CELL_TENT) break;
      ++tents;
    } else if (main.Board[cell] == CELL_OPEN) {
      ++open;
    }
  }
  return tents == main.TreeCount && open == 0;
}

void EndPuzzle(Main& main) {
  Speel(main, Sound::Applause);
  main.Timer3.Enabled = false;
  main.desktop.Show(MessageBox{.Title = "Puzzle Solved!!!",
                               .Text = "Congratulations! Your time is " + main.LabelTijd.Caption});
  if (main.global.CurrentPlayer >= 1 && main.RecordTimes != nullptr) main.RecordTimes(main);
  main.PuzzleOver = true;
  RefreshButtons(main);
}

void Move(Main& main, int cell) {
  Speel(main, Sound::Assign);
  // From an earlier step on, the game goes another way.
  if (main.StepCount < main.RememberedStep) main.RememberedStep = -1;
  main.StepCount = CheckedInteger(main.StepCount + 1);
  main.MoveLogTop = main.StepCount;
  main.LabelStap.Caption = std::to_string(main.StepCount);
  main.MoveLog.RedimPreserve(main.MoveLogTop);
  main.MoveLog[main.MoveLogTop] = cell;
  main.Board[cell] = (main.Board[cell] + 1) % 3;
  SetPicture(main, cell, main.Board[cell]);
  RefreshLineColours(main, cell, LineRule::Click);
  if (IsSolved(main)) {
    EndPuzzle(main);
  } else {
    RefreshButtons(main);
  }
}

void TellTentOf(Main& main, int tree) {
  const MessageBox question{
      .Title = "Hint required?",
      .Text =
          "You clicked on a Tree, which means that you want to know where the Tent resides "
          "of that Tree. Continue?",
      .Symbol = BoxSymbol::Question,
      .Buttons = BoxButtons::YesNo};
  if (main.desktop.Show(question) != BoxAnswer::Yes) return;
  const int direction = main.TentDir[tree];
  if (!IsDirection(direction)) return;
  main.desktop.Show(MessageBox{
      .Title = "Tent Check", .Text = std::string("The Tent for this Tree is ") + kDirectionNames[direction]});
  const int tent = tree + StepOf(main.BoardSize, direction);
  AddPenalty(main, main.Board[tent] == CELL_TENT ? kPenaltyTentFound : kPenaltyTentMissing);
}

}  // namespace

void Grid_Click(Main& main, int Index) {
  if (main.Paused || main.PuzzleOver || !main.BoardLive) return;
  if (main.Board[Index] == CELL_TREE) {
    TellTentOf(main, Index);
  } else {
    Move(main, Index);
  }
}

}  // namespace bivouac
