#include "hints/hints.h"

#include "game/blinking.h"
#include "game/board.h"
#include "game/clock.h"
#include "game/layout.h"
#include "game/play.h"

namespace bivouac {
namespace {

constexpr std::string_view kTitle = "Hint Report";
constexpr std::string_view kNoMoreHints = "No more logical hints available...";
constexpr int kPenaltyWrongFields = 10;  // Seconds for being told that there are any.
constexpr int kPenaltyWrongField = 10;   // Seconds for each one shown.

bool SolutionHasTentAt(const Main& main, int cell) {
  bool tent = false;
  ForEachSide(main.BoardSize, cell, [&](int side, int direction) {
    tent = tent || (main.Board[side] == CELL_TREE && main.TentDir[side] == OppositeOf(direction));
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

/// Puts a hint on show.
void ShowHint(Main& main, const FoundHint& hint) {
  main.BlinkTop = -1;
  for (const FoundField& field : hint.Found.Fields) {
    if (hint.Shows(field)) AddBlink(main, field.Cell, BlinkTileOf(field.Is));
  }
  main.BoardLive = false;
  RefreshButtons(main);
  AddPenalty(main, hint.Rule->Seconds);
  main.lblHint.Caption = hint.Text();
  main.Timer2.Enabled = true;
  Speel(main, hint.Rule->Played);
}

/// The chain from a stage on.
void RunChain(Main& main, int stage) {
  main.BlinkTop = -1;
  if (const std::optional<FoundHint> hint = FindHint(main, stage)) {
    ShowHint(main, *hint);
  } else {
    RefreshButtons(main);
    main.lblHint.Caption = kNoMoreHints;
  }
}

}  // namespace

bool FoundHint::Shows(const FoundField& field) const {
  switch (Rule->Shown) {
    case Blinking::Decided:
      return IsDecided(field.Is);
    case Blinking::Explaining:
      return !IsDecided(field.Is);
    case Blinking::All:
      break;
  }
  return true;
}

int BlinkTileOf(Role role) {
  switch (role) {
    case Role::Grass:
    case Role::LostToOne:
      return -CELL_GRASS;
    case Role::Tent:
    case Role::MayBeTent:
      return -CELL_TENT;
    case Role::Tree:
      return CELL_TREE;
    case Role::StandingTent:
      return CELL_TENT;
    case Role::WingTree:
      return CELL_TREE + kHighlight;
    case Role::Claimed:
      break;
  }
  return CELL_OPEN + kHighlight;
}

std::optional<FoundHint> FindHint(const Main& main, int stage) {
  const Clues rowClues(main.RowCnt);
  const Clues columnClues(main.ColCnt);
  Lines rows(main.Board, {LineKind::Row, main.BoardSize}, rowClues, rowClues);
  Lines columns(main.Board, {LineKind::Column, main.BoardSize}, columnClues, columnClues);
  rows.ReadBoard();
  columns.ReadBoard();
  std::optional<FoundHint> hint(std::in_place);
  for (const HintRule& rule : HintRules()) {
    if (rule.Stage < stage) continue;
    hint->Rule = &rule;
    if (rule.Look(rule.Along == LineKind::Row ? rows : columns, hint->Found)) return hint;
  }
  return {};
}

void HintBasic(Main& main) {
  RunChain(main, 1);
}
void HintTrees(Main& main) {
  RunChain(main, 2);
}
void HintPairs(Main& main) {
  RunChain(main, 3);
}
void HintPatterns(Main& main) {
  RunChain(main, 4);
}
void HintCounts(Main& main) {
  RunChain(main, 5);
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
