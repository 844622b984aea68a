#include "hints/frame.h"

#include "game/blinking.h"
#include "game/board.h"
#include "game/clock.h"
#include "game/layout.h"
#include "game/play.h"
#include "hints/hints.h"

namespace bivouac {
namespace {

constexpr std::string_view kTitle = "Hint Report";
constexpr int kPenaltyWrongFields = 10;  // Seconds for being told that there are any.
constexpr int kPenaltyWrongField = 10;   // Seconds for each one shown.

bool SolutionHasTentAt(const Main& main, int cell) {
  bool tent = false;
  ForEachSide(main, cell, [&](int side, int direction) {
    const int back = direction <= EAST ? direction + 2 : direction - 2;
    tent = tent || (main.Board[side] == CELL_TREE && main.TentDir[side] == back);
  });
  return tent;
}

/// Visits the fields that the player has decided against the solution, in rising order.
template <class Visit>
void ForEachWrongField(const Main& main, Visit visit) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    const int code = main.Board[cell];
    if (code != CELL_GRASS && code != CELL_TENT) continue;
    if (SolutionHasTentAt(main, cell) != (code == CELL_TENT)) visit(cell);
  }
}

bool AskYesNo(Main& main, BoxSymbol symbol, std::string_view text) {
  return main.desktop.Show(MessageBox{.Title = std::string(kTitle),
                                      .Text = std::string(text),
                                      .Symbol = symbol,
                                      .Buttons = BoxButtons::YesNo}) == BoxAnswer::Yes;
}

/// Correct moves made after the first wrong one go with it.
void UndoWrongFields(Main& main) {
  do {
    cmdUndo_Click(main);
    main.BlinkTop = -1;
    ForEachWrongField(main, [&](int) { ++main.BlinkTop; });
  } while (main.BlinkTop != -1);
}

void GoOnPlaying(Main& main) {
  main.BoardLive = true;
  RefreshButtons(main);
}

void ReportWrongFields(Main& main) {
  main.BoardLive = false;
  RefreshButtons(main);
  AddPenalty(main, kPenaltyWrongFields);
  Speel(main, Sound::Error);
  if (AskYesNo(
          main, BoxSymbol::Warning,
          "One or more fields are not correct!\nUndo untill all incorrect solved fields are restored?")) {
    UndoWrongFields(main);
    GoOnPlaying(main);
  } else if (AskYesNo(main, BoxSymbol::Question, "Do you want to see the incorrect solved fields?")) {
    AddPenalty(main, (main.BlinkTop + 1) * kPenaltyWrongField);
    main.lblHint.Caption = "The blinking fields ar not correct! Click HERE to continue...";
    main.Timer2.Enabled = true;
  } else {
    GoOnPlaying(main);
  }
}

}  // namespace

void ReportFind(Main& main, const HintRule& rule) {
  main.BoardLive = false;
  RefreshButtons(main);
  AddPenalty(main, rule.Seconds);
  main.lblHint.Caption = rule.Text;
  main.Timer2.Enabled = true;
  Speel(main, rule.Played);
}

bool HasOpenNeighbour(const Main& main, int cell) {
  return AnyAround(main, cell, [&](int neighbour) { return main.Board[neighbour] == CELL_OPEN; });
}

void AddBlinkTriple(Main& main, int firstTree, int secondTree, int field) {
  AddBlink(main, firstTree, CELL_TREE);
  AddBlink(main, secondTree, CELL_TREE);
  AddBlink(main, field, -CELL_GRASS);
}

int StepOf(const Main& main, int direction) {
  switch (direction) {
    case NORTH:
      return -main.BoardSize;
    case EAST:
      return 1;
    case SOUTH:
      return main.BoardSize;
    default:
      return -1;
  }
}

int ClueOf(const Main& main, Axis axis, int line) {
  return axis.direction == Direction::Rows ? RowClue(main, line) : ColClue(main, line);
}

void MarkPositions(Main& main, Axis axis, int line, Positions positions, int tile) {
  for (int i = 0; i < axis.size; ++i) {
    if (Has(positions, i)) AddBlink(main, axis.At(line, i), tile);
  }
}

void cmdHint_Click(Main& main) {
  main.cmdPause.Enabled = false;
  main.BlinkTop = -1;
  ForEachWrongField(main, [&](int cell) { AddBlink(main, cell, main.Board[cell]); });
  if (main.BlinkTop == -1) {
    HintBasic(main);
  } else {
    ReportWrongFields(main);
  }
}

void lblHint_Click(Main& main) {
  if (main.lblHint.Caption == kNoMoreHints) {
    main.lblHint.Caption.clear();
    return;
  }
  if (main.BoardLive) {
    RefreshButtons(main);
    return;
  }
  main.Timer2.Enabled = false;
  main.lblHint.Caption.clear();
  PutBackMarkedTiles(main);
  GoOnPlaying(main);
}

}  // namespace bivouac
