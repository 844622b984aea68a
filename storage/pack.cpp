#include "storage/pack.h"

#include <optional>

#include "game/layout.h"
#include "game/play.h"
#include "game/settings.h"
#include "game/text.h"
#include "rating/rating.h"
#include "storage/best_times.h"
#include "storage/record_file.h"
#include "storage/status_panels.h"

namespace bivouac {
namespace {

constexpr int kLargestAnswer = 20;  // The box for the size lets more through than there is.

std::string NameWithExtension(int size, const char* extension) {
  return "BVPack" + TwoDigits(size) + extension;
}

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
  RecordFile pack(PackPath(main.global, main.BoardSize), kPackRecordBytes);
  ReadRecord(pack, number, main.global.PuzzleRec);
  main.PuzzleNo = number;
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

/// Rates a puzzle that never was, once and for all: the pack keeps it if it can be written.
void RateAndKeep(Main& main) {
  PackRecord& puzzle = main.global.PuzzleRec;
  FillEmptyClues(main);
  RatePuzzle(main, main.Level);
  puzzle.LevelSize = LevelSizeOf(main.Level, main.BoardSize);
  IgnoringFileErrors([&] {
    RecordFile pack(PackPath(main.global, main.BoardSize), kPackRecordBytes);
    WriteRecord(pack, main.PuzzleNo, puzzle);
  });
}

/// A player who is not in the list any more holds no best time.
bool HasBestTime(const Global& global) {
  const PackRecord& puzzle = global.PuzzleRec;
  return (puzzle.BestMinutes > 0 || puzzle.BestSeconds > 0) && puzzle.BestPlayer <= global.PlayerCount;
}

void LoadPuzzle(Main& main, int number) {
  // The box stands for every run-time error of the load, until files other than the puzzle's have been used:
  // from then on an error is nobody's.
  bool boxForErrors = true;
  try {
    ReadPuzzle(main, number);
    main.Level = 0;
    if (FindPersonal(main) == FileUse::Used) boxForErrors = false;
    BeginOpening(main);
    main.LabelStap.Caption = std::to_string(main.StepCount);
    main.Level = LevelOf(main.global.PuzzleRec.LevelSize);
    if (main.Level == 0) {
      RateAndKeep(main);
      boxForErrors = false;
    }
    ShowLevel(main);
    ShowPuzzleNumber(main);
    if (HasBestTime(main.global)) {
      ShowBestTime(main);
    } else {
      ShowNoBestTime(main);
    }
    LayPuzzleOut(main);
    StartPuzzle(main);
  } catch (const RunTimeError&) {
    if (!boxForErrors) throw;
    ShowFileError(main, "Error reading puzzle from file!");
  }
}

}  // namespace

std::string PackName(int size) {
  return NameWithExtension(size, ".bvq");
}

std::string PackPath(const Global& global, int size) {
  return global.DataDir + PackName(size);
}

int PackCount(const Global& global, int size) {
  return static_cast<int>(CountRecords(PackPath(global, size), kPackRecordBytes));
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

void CountPacks(Main& main) {
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    main.PuzzleCount[size - kMinSize] = PackCount(main.global, size);
    const std::string leftOver = main.global.DataDir + NameWithExtension(size, ".bvp");
    if (FileExists(leftOver)) DeleteWholeFile(leftOver);
  }
  ShowTotal(main);
}

void cmdOpen_Click(Main& main) {
  const int count = main.PuzzleCount[main.BoardSize - kMinSize];
  const InputBox box{.Title = "Select Puzzle",
                     .Prompt = "Please choose a puzzle between 1 and " + std::to_string(count),
                     .Default = "1"};
  if (const std::optional<int> number = AskNumber(main, box, 1, count)) LoadPuzzle(main, *number);
}

void cmdNext_Click(Main& main) {
  LoadPuzzle(main, main.PuzzleNo + 1);
}

void cmdOptions_Click(Main& main) {
  const InputBox box{.Title = "Puzzle Size", .Prompt = "Enter a value between 6 and 18", .Default = "12"};
  const std::optional<int> size = AskNumber(main, box, kMinSize, kLargestAnswer);
  if (!size || *size == main.BoardSize) return;
  main.BoardSize = *size;
  KeepSetting(main, "Options", "Size", std::to_string(main.BoardSize));
  ShowSize(main);
  ShowLevel(main);
  PanelOf(main, 3).Text = "Puzzle #: --";
  ShowTotal(main);
  ShowNoBestTime(main);
  // Into the tag, which nobody sees: the panel goes on showing the old time.
  PanelOf(main, 6).Tag = kNoYourTime;
  RefreshButtons(main);
  SizeLayout(main);
  TellOfLostSettings(main);
}

void ShowFileError(Main& main, const char* text) {
  main.desktop.Show(MessageBox{.Title = "File Error", .Text = text, .Symbol = BoxSymbol::Warning});
}

}  // namespace bivouac
