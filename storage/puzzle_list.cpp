#include "storage/puzzle_list.h"

#include <algorithm>
#include <map>
#include <utility>

#include "game/text.h"
#include "storage/best_times.h"
#include "storage/navigation.h"
#include "storage/pack_files.h"
#include "storage/platform_files.h"
#include "storage/players.h"
#include "storage/record_file.h"

namespace bivouac {
namespace {

/// The current player's times for BoardSize by the numbers of the puzzles. Of several for one puzzle the
/// first counts, as on a load.
std::map<int, int> OwnTimes(const Main& main) {
  std::map<int, int> times;
  if (main.global.CurrentPlayer < 1) return times;
  IgnoringFileErrors([&] {
    const std::string path = PersonalPath(main.global, main.global.CurrentPlayer);
    for (const PersonalRecord& own : RecordFile<PersonalRecord>(path).ReadAll()) {
      if (SizeOf(own.PersonalLevelSize) == main.BoardSize)
        times.emplace(own.PersonalPuzzle, own.PersonalMinutes * 60 + own.PersonalSeconds);
    }
  });
  return times;
}

std::string HolderOf(const Global& global, int player) {
  return player >= 1 && player <= global.PlayerCount ? NameOf(global, player) : std::string();
}

ListedPuzzle ListedFrom(const Main& main, const PackRecord& record) {
  ListedPuzzle puzzle;
  puzzle.Readable = true;
  puzzle.Record = record;
  const auto cells = record.Layout.begin();
  puzzle.Trees = static_cast<int>(std::count(cells, cells + main.CellCount, CELL_TREE));
  if (HasBestTime(main.global, record)) {
    puzzle.BestTime = record.BestMinutes * 60 + record.BestSeconds;
    puzzle.BestBy = HolderOf(main.global, record.BestPlayer);
  }
  return puzzle;
}

}  // namespace

std::vector<ListedPuzzle> ListPuzzles(const Main& main) {
  std::vector<PackRecord> records;
  IgnoringFileErrors(
      [&] { records = RecordFile<PackRecord>(PackPath(main.global, main.BoardSize)).ReadAll(); });
  std::vector<ListedPuzzle> puzzles(
      static_cast<std::size_t>(std::max(0, main.PuzzleCount[main.BoardSize - kMinSize])));
  const std::map<int, int> own = OwnTimes(main);
  for (std::size_t place = 0; place < std::min(puzzles.size(), records.size()); ++place) {
    puzzles[place] = ListedFrom(main, records[place]);
    const auto time = own.find(static_cast<int>(place) + 1);
    if (time != own.end()) puzzles[place].OwnTime = std::max(0, time->second);
  }
  return puzzles;
}

int SolvedTime(const Main& main, const ListedPuzzle& puzzle) {
  return main.global.CurrentPlayer < 1 ? puzzle.BestTime : puzzle.OwnTime;
}

std::string SolvedText(const Main& main, const std::vector<ListedPuzzle>& puzzles) {
  std::vector<int> times;
  for (const ListedPuzzle& puzzle : puzzles) {
    if (const int time = SolvedTime(main, puzzle); time > 0) times.push_back(time);
  }
  std::string text = std::to_string(times.size()) + " of " + std::to_string(puzzles.size()) + " solved";
  if (times.empty()) return text;
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>((times.size() - 1) / 2);
  std::nth_element(times.begin(), middle, times.end());
  return text + (times.size() == 1 ? ", in " : ", half of them in ") + TimeText(*middle) +
         (times.size() == 1 ? "" : " or less");
}

std::string TimeText(int seconds) {
  const int minutes = seconds / 60;
  return (minutes < 100 ? TwoDigits(minutes) : std::to_string(minutes)) + ":" + TwoDigits(seconds % 60);
}

int PuzzleOfDay(long day, int size, int count) {
  constexpr long kFirst = 100;
  constexpr long kStride = 37;  // Prime to kFirst: neighbouring days lie far apart, and all numbers come.
  const long place = ((day % kFirst + kFirst) * kStride + size * 7L) % kFirst;
  return static_cast<int>(place % std::min<long>(kFirst, count)) + 1;
}

}  // namespace bivouac
