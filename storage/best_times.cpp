#include "storage/best_times.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <set>
#include <utility>
#include <vector>

#include "game/settings.h"
#include "game/text.h"
#include "storage/pack_files.h"
#include "storage/platform_files.h"
#include "storage/record_file.h"
#include "storage/saving.h"
#include "storage/status_panels.h"

namespace bivouac {
namespace {

/// The number of a puzzle has 16 bits in a player's file: beyond them no own times are kept.
constexpr int kLastPersonalPuzzle = std::numeric_limits<std::int16_t>::max();

/// What tells the records of a player's file apart: size and number of the puzzle.
using PersonalKey = std::pair<int, int>;

PersonalKey KeyOf(const PersonalRecord& record) {
  return {SizeOf(record.PersonalLevelSize), record.PersonalPuzzle};
}

using PackFile = RecordFile<PackRecord>;
using PersonalFile = RecordFile<PersonalRecord>;

/// Writes a record behind the last. What is left of a last record that was cut short is blanked first, so
/// that no half of a time is ever found. Requires: a turn.
void AppendPersonal(PersonalFile& file, const PersonalRecord& record) {
  const RecordCounts counts = file.Counts();
  if (counts.Rounded > counts.Whole) file.Write(counts.Rounded, PersonalRecord{});
  file.Write(counts.Rounded + 1, record);
}

/// Writes a record at its place, where no other program has put a better time of the puzzle, or another
/// puzzle, by now. Requires: a turn.
void WritePersonal(PersonalFile& file, int place, const PersonalRecord& own) {
  PersonalRecord present;
  if (place != 0 && place <= file.Counts().Whole) file.Read(place, present);
  const bool isFree = present == PersonalRecord{};
  if (place == 0 || (!isFree && KeyOf(present) != KeyOf(own))) return AppendPersonal(file, own);
  if (Beats(own.PersonalMinutes * 60 + own.PersonalSeconds, present.PersonalMinutes, present.PersonalSeconds))
    file.Write(place, own);
}

/// A time stands under the number of its puzzle. Errors: a file error if another puzzle has it by now, or may
/// have it soon.
void RequireSameNumber(const Main& main, const FolderTurn& turn) {
  if (!turn.IsMine())
    ThrowFileError(ErrorNumber::PermissionDenied, "another program holds the folder", main.global.DataDir);
  PackRecord present;
  const bool isThere = main.InPack && IgnoringFileErrors([&] {
                         PackFile(PackPath(main.global, main.BoardSize)).Read(main.PuzzleNo, present);
                       });
  if (isThere) RequireSamePuzzle(present, main.global.PuzzleRec);
}

void SavePersonal(Main& main) {
  const Global& global = main.global;
  const bool kept = IgnoringFileErrors([&] {
    PersonalFile file(PersonalPath(global, global.CurrentPlayer), Access::Create);
    {
      // Nobody sorts the pack meanwhile.
      const FolderTurn unmoved(global.DataDir);
      RequireSameNumber(main, unmoved);
      const Turn turn(file);
      WritePersonal(file, global.PersonalPos, global.PersonalRec);
    }
    file.Sync();
  });
  if (!kept && main.LostTimes == Loss::None) main.LostTimes = Loss::Untold;
}

/// Puts Elapsed into the fields of a record. Errors: Overflow for minutes beyond 16 bits.
void TakeElapsed(const Main& main, std::int16_t& minutes, std::int16_t& seconds) {
  minutes = static_cast<std::int16_t>(CheckedInteger(main.Elapsed / 60));
  seconds = static_cast<std::int16_t>(main.Elapsed % 60);
}

/// Elapsed as the current player's time for the current puzzle, in PersonalRec and on disk.
void KeepPersonal(Main& main) {
  PersonalRecord& own = main.global.PersonalRec;
  TakeElapsed(main, own.PersonalMinutes, own.PersonalSeconds);
  if (main.PuzzleNo > kLastPersonalPuzzle) return;
  own.PersonalLevelSize = LevelSizeOf(main.Level, main.BoardSize);
  own.PersonalPuzzle = static_cast<std::int16_t>(main.PuzzleNo);
  SavePersonal(main);
}

void Congratulate(Main& main, const char* title, const char* text) {
  main.desktop.Show(MessageBox{.Title = title, .Text = text, .Symbol = BoxSymbol::Information});
}

struct PackBest {
  int Player;
  PersonalRecord Record;  ///< As it would stand in that player's file.
};

/// The best times of all packs, sizes and numbers rising. Unreadable records are left out.
std::vector<PackBest> ReadPackBests(Main& main) {
  std::vector<PackBest> bests;
  PackRecord& puzzle = main.global.PuzzleRec;
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    IgnoringFileErrors([&] {
      PackFile pack(PackPath(main.global, size));
      const long last = std::min<long>(pack.Counts().Whole, kLastPersonalPuzzle);
      for (long number = 1; number <= last; ++number) {
        if (!IgnoringFileErrors([&] { pack.Read(number, puzzle); })) continue;
        bests.push_back({puzzle.BestPlayer,
                         {static_cast<std::int16_t>(number), LevelSizeOf(main.Level, size),
                          puzzle.BestMinutes, puzzle.BestSeconds}});
      }
    });
  }
  return bests;
}

/// Sets the best time of every puzzle of BoardSize to none.
void ClearPackTimes(Main& main) {
  const std::string path = PackPath(main.global, main.BoardSize);
  if (!FileExists(path)) return;
  PackFile pack(path, Access::Write);
  PackRecord& puzzle = main.global.PuzzleRec;
  const long last = pack.Counts().Whole;
  for (long number = 1; number <= last; ++number) {
    const Turn turn(pack);
    pack.Read(number, puzzle);
    puzzle.BestMinutes = 0;
    puzzle.BestSeconds = 0;
    puzzle.BestPlayer = 0;
    pack.WriteEnd(number, puzzle);
  }
  pack.Sync();
}

/// Sets a player's times for BoardSize to none. The records stay, to be used again.
void ClearPersonalTimes(Main& main, int player) {
  const std::string path = PersonalPath(main.global, player);
  if (CountRecords<PersonalRecord>(path).Whole < 1) return;
  PersonalFile file(path, Access::Write);
  {
    const Turn turn(file);
    std::vector<PersonalRecord> times = file.ReadAll();
    for (PersonalRecord& own : times) {
      if (SizeOf(own.PersonalLevelSize) == main.BoardSize) own.PersonalMinutes = own.PersonalSeconds = 0;
    }
    file.WriteAll(1, times);
  }
  file.Sync();
}

}  // namespace

std::string PersonalPath(const Global& global, int player) {
  return global.DataDir + "PLBest" + TwoDigits(player) + ".bvq";
}

FileUse FindPersonal(Main& main) {
  Global& global = main.global;
  if (global.CurrentPlayer < 1) {
    global.PersonalPos = 0;
    ShowNoYourTime(main);
    return FileUse::None;
  }
  const std::string path = PersonalPath(global, global.CurrentPlayer);
  if (!FileExists(path)) return FileUse::None;
  global.PersonalPos = 0;
  IgnoringFileErrors([&] {
    int number = 0;
    for (const PersonalRecord& own : PersonalFile(path).ReadAll()) {
      ++number;
      if (global.PersonalPos != 0 || KeyOf(own) != PersonalKey{main.BoardSize, main.PuzzleNo}) continue;
      global.PersonalRec = own;
      global.PersonalPos = number;
    }
  });
  if (global.PersonalPos != 0) {
    ShowYourTime(main);
  } else {
    ShowNoYourTime(main);
  }
  return FileUse::Used;
}

void SyncPersonalBests(Main& main) {
  Global& global = main.global;
  // Nobody sorts a pack meanwhile; where somebody does, the next start knows the numbers.
  const FolderTurn unmoved(global.DataDir);
  const std::vector<PackBest> bests = unmoved.IsMine() ? ReadPackBests(main) : std::vector<PackBest>();
  for (int player = 1; player <= global.PlayerCount; ++player) {
    IgnoringFileErrors([&] {
      PersonalFile file(PersonalPath(global, player), Access::Create);
      const Turn turn(file);
      std::set<PersonalKey> known;
      for (const PersonalRecord& own : file.ReadAll()) known.insert(KeyOf(own));
      bool added = false;
      for (const PackBest& best : bests) {
        if (best.Player != player || known.contains(KeyOf(best.Record))) continue;
        IgnoringFileErrors([&] { AppendPersonal(file, best.Record); });
        added = true;
      }
      if (added) file.Sync();
    });
  }
}

void RecordTimes(Main& main) {
  Global& global = main.global;
  const PersonalRecord& own = global.PersonalRec;
  const bool firstTime = global.PersonalPos < 1;
  if (firstTime || Beats(main.Elapsed, own.PersonalMinutes, own.PersonalSeconds)) {
    KeepPersonal(main);
    if (!firstTime) {
      Congratulate(main, "Personal Best Time!!!", "New Personal Time for this puzzle. Congratulations!");
    }
    ShowYourTime(main);
  }

  PackRecord& puzzle = global.PuzzleRec;
  if (Beats(main.Elapsed, puzzle.BestMinutes, puzzle.BestSeconds)) {
    TakeElapsed(main, puzzle.BestMinutes, puzzle.BestSeconds);
    puzzle.BestPlayer = static_cast<std::int16_t>(global.CurrentPlayer);
    Save_Puzzle(main);
    Congratulate(main, "New Best Time!!!", "New Best Time for this puzzle. Congratulations!");
    ShowBestTime(main);
  }
  TellOfLoss(main, main.LostTimes, "Time not saved",
             "Your own times cannot be written to\n" + PersonalPath(global, global.CurrentPlayer) +
                 "\nThey are not kept while that is so.");
}

void cmdResetTime_Click(Main& main) {
  const MessageBox warning{.Title = "Warning!!!",
                           .Text = "This will reset the times of all puzzles in the current level. Continue?",
                           .Symbol = BoxSymbol::Error,
                           .Buttons = BoxButtons::OkCancel};
  if (main.desktop.Show(warning) != BoxAnswer::Ok) return;
  ClearPackTimes(main);
  for (int player = 1; player <= main.global.PlayerCount; ++player) ClearPersonalTimes(main, player);
  ShowNoBestTime(main);
  ShowNoYourTime(main);
}

}  // namespace bivouac
