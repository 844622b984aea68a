#include "storage/navigation.h"

#include <optional>

#include "game/layout.h"
#include "game/play.h"
#include "game/settings.h"
#include "game/text.h"
#include "rating/rating.h"
#include "storage/best_times.h"
#include "storage/pack_files.h"
#include "storage/platform_files.h"
#include "storage/record_file.h"
#include "storage/saving.h"
#include "storage/status_panels.h"

namespace bivouac {
namespace {

constexpr int kLargestAnswer = 20;  // The box for the size lets more through than there is.

/// Asks until the answer rounds to a number from lowest to highest; nothing for an empty answer.
std::optional<int> AskNumber(Main& main, const InputBox& box, int lowest, int highest) {
  for (;;) {
    const std::string answer = main.desktop.Show(box);
    if (answer.empty()) return {};
    const double value = LeadingNumber(answer);
    if (!(value > lowest - 1.0 && value < highest + 1.0)) continue;
    const int number = static_cast<int>(RoundHalfEven(value));
    if (number >= lowest && number <= highest) return number;
  }
}

void ReadPuzzle(Main& main, int number) {
  RecordFile<PackRecord>(PackPath(main.global, main.BoardSize)).Read(number, main.global.PuzzleRec);
  main.PuzzleNo = number;
  main.InPack = true;
}

/// The rating reads clues off the labels, which still hold those of the puzzle before. Where none was, the
/// record's own stand in.
void FillEmptyClues(Main& main) {
  const PackRecord& puzzle = main.global.PuzzleRec;
  for (int i = 0; i < main.BoardSize; ++i) {
    if (main.RowCnt[i].Caption.empty()) main.RowCnt[i].Caption = std::to_string(puzzle.RowCounts[i]);
    if (main.ColCnt[i].Caption.empty()) main.ColCnt[i].Caption = std::to_string(puzzle.ColCounts[i]);
  }
}

/// Rates a puzzle that never was, once and for all: the pack keeps it if it can be written, and if no other
/// program was faster.
void RateAndKeep(Main& main) {
  PackRecord& puzzle = main.global.PuzzleRec;
  FillEmptyClues(main);
  RatePuzzle(main, main.Level);
  puzzle.LevelSize = LevelSizeOf(main.Level, main.BoardSize);
  IgnoringFileErrors([&] {
    RecordFile<PackRecord> pack(PackPath(main.global, main.BoardSize), Access::Write);
    const Turn turn(pack);
    PackRecord present;
    pack.Read(main.PuzzleNo, present);
    if (!IsSamePuzzle(present, puzzle) || LevelOf(present.LevelSize) != 0) return;
    present.LevelSize = puzzle.LevelSize;
    pack.WriteEnd(main.PuzzleNo, present);
  });
}

/// Shows and starts the puzzle in PuzzleRec.
void BeginPuzzle(Main& main) {
  ShowLevel(main);
  ShowPuzzleNumber(main);
  if (HasBestTime(main.global, main.global.PuzzleRec)) {
    ShowBestTime(main);
  } else {
    ShowNoBestTime(main);
  }
  LayPuzzleOut(main);
  StartPuzzle(main);
}

/// Runs a step; a run-time error of any kind is told in the box. Returns whether there was none.
template <class Step>
bool WithBoxForErrors(Main& main, Step step) {
  try {
    step();
    return true;
  } catch (const RunTimeError&) {
    ShowFileError(main, "Error reading puzzle from file!");
    return false;
  }
}

}  // namespace

bool HasBestTime(const Global& global, const PackRecord& puzzle) {
  return (puzzle.BestMinutes > 0 || puzzle.BestSeconds > 0) && puzzle.BestPlayer <= global.PlayerCount;
}

void OpenPuzzle(Main& main, int number) {
  auto otherFiles = FileUse::None;
  const bool read = WithBoxForErrors(main, [&] {
    ReadPuzzle(main, number);
    main.Level = 0;
    otherFiles = FindPersonal(main);
  });
  if (!read) return;
  BeginOpening(main);
  main.LabelStap.Caption = std::to_string(main.StepCount);
  main.Level = LevelOf(main.global.PuzzleRec.LevelSize);
  if (main.Level == 0) {
    RateAndKeep(main);
    otherFiles = FileUse::Used;
  }
  // The box is for the file that was read: once others have been used, an error is nobody's.
  if (otherFiles == FileUse::Used) {
    BeginPuzzle(main);
  } else {
    WithBoxForErrors(main, [&] { BeginPuzzle(main); });
  }
}

void LayPuzzleOut(Main& main) {
  const PackRecord& puzzle = main.global.PuzzleRec;
  main.TreeCount = 0;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.Board[cell] = puzzle.Layout[cell];
    if (main.Board[cell] != CELL_TREE) continue;
    main.TentDir[cell] = puzzle.TentDirs[cell];
    ++main.TreeCount;
  }
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Caption = std::to_string(puzzle.RowCounts[i]);
    main.ColCnt[i].Caption = std::to_string(puzzle.ColCounts[i]);
  }
}

void cmdOpen_Click(Main& main) {
  const int count = main.PuzzleCount[main.BoardSize - kMinSize];
  const InputBox box{.Title = "Select Puzzle",
                     .Prompt = "Please choose a puzzle between 1 and " + std::to_string(count),
                     .Default = "1"};
  if (const std::optional<int> number = AskNumber(main, box, 1, count)) OpenPuzzle(main, *number);
}

void cmdNext_Click(Main& main) {
  OpenPuzzle(main, main.PuzzleNo + 1);
}

void ChangeSize(Main& main, int size) {
  main.BoardSize = size;
  KeepSetting(main, "Options", "Size", std::to_string(main.BoardSize));
  ShowSize(main);
  ShowLevel(main);
  ShowNoPuzzleNumber(main);
  ShowTotal(main);
  ShowNoBestTime(main);
  // Into the tag, which nobody sees: the panel goes on showing the old time.
  PanelOf(main, 6).Tag = NoYourTime();
  RefreshButtons(main);
  SizeLayout(main);
  TellOfLostSettings(main);
}

void cmdOptions_Click(Main& main) {
  const InputBox box{.Title = "Puzzle Size", .Prompt = "Enter a value between 6 and 18", .Default = "12"};
  const std::optional<int> size = AskNumber(main, box, kMinSize, kLargestAnswer);
  if (size && *size != main.BoardSize) ChangeSize(main, *size);
}

}  // namespace bivouac
