#include "storage/saving.h"

#include <algorithm>

#include "storage/pack_files.h"
#include "storage/platform_files.h"
#include "storage/record_file.h"
#include "storage/status_panels.h"

namespace bivouac {
namespace {

enum class Outcome { Written, Refused, Failed };

/// Lets `write` write to the pack in one turn, or refuse by returning false. What it wrote has reached the
/// disk then; a file error is told in a box.
template <class Write>
Outcome WriteInTurn(Main& main, Access access, Write write) {
  bool written = false;
  const bool done = IgnoringFileErrors([&] {
    RecordFile<PackRecord> pack(PackPath(main.global, main.BoardSize), access);
    {
      const Turn turn(pack);
      written = write(pack);
    }
    if (written) pack.Sync();
  });
  if (done) return written ? Outcome::Written : Outcome::Refused;
  ShowFileError(main, "Error writing puzzle to file!");
  return Outcome::Failed;
}

/// Another program may have kept a better time, or moved the puzzles. Requires: a turn.
void KeepBestTime(RecordFile<PackRecord>& pack, long number, const PackRecord& puzzle) {
  PackRecord present;
  pack.Read(number, present);
  RequireSamePuzzle(present, puzzle);
  if (!Beats(puzzle.BestMinutes * 60 + puzzle.BestSeconds, present.BestMinutes, present.BestSeconds)) return;
  present.BestMinutes = puzzle.BestMinutes;
  present.BestSeconds = puzzle.BestSeconds;
  present.BestPlayer = puzzle.BestPlayer;
  pack.WriteEnd(number, present);
}

void Refuse(Main& main, const char* text) {
  main.desktop.Show(MessageBox{.Title = "Puzzle Save Error", .Text = text, .Symbol = BoxSymbol::Error});
}

}  // namespace

void Save_New(Main& main) {
  int& count = main.PuzzleCount[main.BoardSize - kMinSize];
  main.InPack = false;
  const auto isBehindAll = [&](const RecordCounts& counts) {
    main.PuzzleNo = static_cast<int>(counts.Next);
    return count < main.PuzzleNo;
  };
  auto outcome = Outcome::Refused;
  if (isBehindAll(CountRecords<PackRecord>(PackPath(main.global, main.BoardSize)))) {
    outcome = WriteInTurn(main, Access::Create, [&](RecordFile<PackRecord>& pack) {
      if (!isBehindAll(pack.Counts())) return false;
      pack.Write(main.PuzzleNo, main.global.PuzzleRec);
      return true;
    });
  }
  if (outcome == Outcome::Failed) return;
  if (outcome == Outcome::Written) {
    main.InPack = true;
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
    ShowUnsavedPuzzle(main);
  }
  ShowNoYourTime(main);
}

void Save_Puzzle(Main& main) {
  const PackRecord& puzzle = main.global.PuzzleRec;
  auto outcome = Outcome::Refused;
  if (PackCount(main.global, main.BoardSize) >= main.PuzzleNo) {
    outcome = WriteInTurn(main, Access::Write, [&](RecordFile<PackRecord>& pack) {
      if (pack.Counts().Rounded < main.PuzzleNo) return false;
      main.InPack ? KeepBestTime(pack, main.PuzzleNo, puzzle) : pack.Write(main.PuzzleNo, puzzle);
      return true;
    });
  }
  if (outcome != Outcome::Refused) return;
  Refuse(main,
         "There are less Puzzles in the Puzzle Pack than the current number!!!\n\r"
         "Current Puzzle will not be updated!");
}

bool IsSamePuzzle(const PackRecord& a, const PackRecord& b) {
  const auto alike = [](int cellA, int cellB) { return (cellA == CELL_TREE) == (cellB == CELL_TREE); };
  return a.RowCounts == b.RowCounts && a.ColCounts == b.ColCounts &&
         std::equal(a.Layout.begin(), a.Layout.end(), b.Layout.begin(), alike);
}

void RequireSamePuzzle(const PackRecord& present, const PackRecord& puzzle) {
  if (!IsSamePuzzle(present, puzzle))
    ThrowFileError(ErrorNumber::FileAccess, "another puzzle has this number",
                   PackName(SizeOf(puzzle.LevelSize)));
}

bool Beats(int elapsed, int minutes, int seconds) {
  const int old = minutes * 60 + seconds;
  return old == 0 || (old >= 1 && elapsed < old);
}

}  // namespace bivouac
