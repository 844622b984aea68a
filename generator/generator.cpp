#include "generator/generator.h"

#include <string>

#include "game/board.h"
#include "game/clock.h"
#include "game/layout.h"
#include "game/play.h"
#include "game/text.h"
#include "generator/layout_drawing.h"
#include "generator/unique_solution.h"
#include "rating/rating.h"
#include "storage/saving.h"
#include "storage/status_panels.h"

namespace bivouac {
namespace {

constexpr int kNotRated = -1;
constexpr int kMostSeconds = 10;  // For a puzzle of a level.

void ClearRecord(Main& main) {
  main.global.PuzzleRec = PackRecord{};
  main.global.PuzzleRec.LevelSize = LevelSizeOf(0, main.BoardSize);
}

/// Directions of trees of rejected layouts stay in the record where the new layout has no tree.
void CopyLayoutToRecord(Main& main) {
  PackRecord& record = main.global.PuzzleRec;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] == CELL_TREE) record.TentDirs[cell] = static_cast<std::int16_t>(main.TentDir[cell]);
    record.Layout[cell] = static_cast<std::int16_t>(main.Board[cell]);
  }
  for (int i = 0; i < main.BoardSize; ++i) {
    record.RowCounts[i] = static_cast<std::int16_t>(RowClue(main, i));
    record.ColCounts[i] = static_cast<std::int16_t>(ColClue(main, i));
  }
}

void ShowWaiting(Main& main) {
  BeginOpening(main);
  for (int cell = 0; cell < main.CellCount; ++cell) SetPicture(main, cell, CELL_OPEN);
  main.GenFirstTick = true;
  main.Timer1.Enabled = true;
  main.LabelStap.Caption = std::to_string(main.StepCount);
}

void Report(Main& main) {
  int level = 0;
  RatePuzzle(main, level);
  main.desktop.Show(MessageBox{.Title = "Generate report",
                               .Text = "The new generated puzzle has level " + std::to_string(level) +
                                       " with difficulty " + SevenDigits(main.Difficulty),
                               .Symbol = BoxSymbol::Information});
}

/// Draws a layout that has a single solution and rates it. False if the rater cannot finish it, and once
/// `ends` says so, which is asked between layouts.
template <class Ends>
bool TryPuzzle(Main& main, Ends ends) {
  PackRecord& record = main.global.PuzzleRec;
  ClearRecord(main);
  for (bool unique = false; !unique;) {
    if (ends()) return false;
    DrawLayout(main);
    CopyLayoutToRecord(main);
    CheckUniqueSolution(main, unique);
  }
  RatePuzzle(main, main.Level);
  if (main.Level == kNotRated) return false;
  record.LevelSize = LevelSizeOf(main.Level, main.BoardSize);
  for (int cell = 0; cell < main.CellCount; ++cell) main.Board[cell] = record.Layout[cell];
  return true;
}

/// Saves, reports and starts what was made.
void BeginMadePuzzle(Main& main) {
  Save_New(main);
  main.global.PersonalPos = 0;
  main.Timer1.Enabled = false;
  Report(main);
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Visible = true;
    main.ColCnt[i].Visible = true;
  }
  StartPuzzle(main);
}

/// No game and an empty board; nothing is left of the layouts that were dropped.
void EndWithoutPuzzle(Main& main) {
  main.Timer1.Enabled = false;
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Caption.clear();
    main.ColCnt[i].Caption.clear();
  }
  SizeLayout(main);
  ShowLevel(main);
  ShowNoPuzzleNumber(main);
  ShowNoBestTime(main);
  ShowNoYourTime(main);
  main.PuzzleOver = true;
  RefreshButtons(main);
}

std::optional<LevelRange> AskLevels(Main& main) {
  const InputBox box{.Title = "New Puzzle",
                     .Prompt = "Enter a level between 1 and 5, or a range such as 3-4",
                     .Default = "3"};
  for (;;) {
    const std::string answer = main.desktop.Show(box);
    if (answer.empty()) return {};
    if (const std::optional<LevelRange> levels = ReadLevels(answer)) return levels;
  }
}

}  // namespace

std::optional<LevelRange> ReadLevels(std::string_view text) {
  const auto isLevel = [](char c) { return c >= '1' && c <= '5'; };
  const bool one = text.size() == 1 && isLevel(text[0]);
  const bool range =
      text.size() == 3 && isLevel(text[0]) && text[1] == '-' && isLevel(text[2]) && text[0] <= text[2];
  if (!one && !range) return {};
  return LevelRange{text.front() - '0', text.back() - '0'};
}

void MakePuzzle(Main& main) {
  while (!TryPuzzle(main, [] { return false; })) continue;
}

void cmdGenerate_Click(Main& main) {
  ShowWaiting(main);
  MakePuzzle(main);
  BeginMadePuzzle(main);
}

void MakePuzzleOfLevel(Main& main) {
  const std::optional<LevelRange> levels = AskLevels(main);
  if (!levels) return;
  const int levelBefore = main.Level;
  ShowWaiting(main);
  main.GenEnds = false;
  ReadClock(main);
  const int begin = main.ClockNow;
  bool late = false;
  const auto ends = [&] {
    ReadClock(main);
    late = late || (main.ClockNow - begin + kDaySeconds) % kDaySeconds >= kMostSeconds;
    return late || main.GenEnds;
  };
  long tried = 0;
  bool found = false;
  while (!found && !ends()) {
    const bool made = TryPuzzle(main, ends);
    tried += made ? 1 : 0;
    found = made && levels->Holds(main.Level);
    if (!found) main.Level = levelBefore;
  }
  if (found) return BeginMadePuzzle(main);
  EndWithoutPuzzle(main);
  if (!main.GenEnds) {
    main.desktop.Show(MessageBox{.Title = "New Puzzle",
                                 .Text = "No puzzle of this level was found in ten seconds, among " +
                                         std::to_string(tried) + " that were made.",
                                 .Symbol = BoxSymbol::Information});
  }
}

void EndMaking(Main& main) {
  main.GenEnds = true;
}

}  // namespace bivouac
