#include "storage/saving.h"

#include "game/text.h"
#include "storage/pack.h"
#include "storage/record_file.h"
#include "storage/status_panels.h"

namespace bivouac {
namespace {

/// Writes PuzzleRec as record PuzzleNo, with a box if that fails. Returns whether it was written.
bool WritePuzzle(Main& main) {
  const bool written = IgnoringFileErrors([&] {
    RecordFile pack(PackPath(main.global, main.BoardSize), kPackRecordBytes);
    WriteRecord(pack, main.PuzzleNo, main.global.PuzzleRec);
  });
  if (!written) ShowFileError(main, "Error writing puzzle to file!");
  return written;
}

void Refuse(Main& main, const char* text) {
  main.desktop.Show(MessageBox{.Title = "Puzzle Save Error", .Text = text, .Symbol = BoxSymbol::Error});
}

/// The number of a puzzle added to a pack. The whole sum is rounded: a pack of one record and a half gets
/// number 2, though it counts 2 records.
int NextNumber(const std::string& path) {
  return static_cast<int>(RoundHalfEven(static_cast<double>(FileLength(path)) / kPackRecordBytes + 1));
}

}  // namespace

void Save_New(Main& main) {
  main.PuzzleNo = NextNumber(PackPath(main.global, main.BoardSize));
  int& count = main.PuzzleCount[main.BoardSize - kMinSize];
  if (count < main.PuzzleNo) {
    if (!WritePuzzle(main)) return;
    count = main.PuzzleNo;
    ShowLevel(main);
    ShowPuzzleNumber(main);
    ShowTotal(main);
    ShowNoBestTime(main);
  } else {
    // The line feed before the carriage return has always stood so.
    Refuse(main,
           "There were more Puzzles in the current Size Pack at Program Start!!!\n\r"
           "Current New Puzzle will not be added to the Puzzle Pack!");
    PanelOf(main, 3).Text = "Puzzle #: NEW";
    PanelOf(main, 5).Text = "Best Time: NOT AVAILABLE";
  }
  ShowNoYourTime(main);
}

void Save_Puzzle(Main& main) {
  if (PackCount(main.global, main.BoardSize) >= main.PuzzleNo) {
    WritePuzzle(main);
  } else {
    Refuse(main,
           "There are less Puzzles in the Puzzle Pack than the current number!!!\n\r"
           "Current Puzzle will not be updated!");
  }
}

}  // namespace bivouac
