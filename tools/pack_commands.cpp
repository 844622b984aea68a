#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <numeric>
#include <ostream>

#include "game/clock.h"
#include "generator/unique_solution.h"
#include "rating/rating.h"
#include "tools/commands.h"
#include "tools/faults.h"
#include "tools/pack_access.h"
#include "tools/workbench.h"

namespace bivouac {
namespace {

/// Reads all packs before the first line is written, so that bad input leaves no half of an answer.
std::vector<std::vector<PackRecord>> ReadSoundPacks(const std::vector<std::string>& paths) {
  std::vector<std::vector<PackRecord>> packs;
  packs.reserve(paths.size());
  for (const std::string& path : paths) packs.push_back(ReadSoundPack(path));
  return packs;
}

/// Calls visit(path, number, record) for every record of every pack.
template <class Visit>
void ForEachRecord(const std::vector<std::string>& paths, Visit visit) {
  const std::vector<std::vector<PackRecord>> packs = ReadSoundPacks(paths);
  auto path = paths.begin();
  for (const std::vector<PackRecord>& pack : packs) {
    long number = 0;
    for (const PackRecord& record : pack) visit(*path, ++number, record);
    ++path;
  }
}

/// The columns that every table of records begins with.
std::ostream& RowStart(std::ostream& out, const std::string& path, long number, int size) {
  return out << FileName(path) << '\t' << number << '\t' << size << '\t';
}

/// What every line in words begins with.
std::ostream& LineStart(std::ostream& out, const std::string& path, long number, int size) {
  return out << FileName(path) << ' ' << std::setw(5) << number << "  " << std::setw(2) << size << 'x'
             << std::left << std::setw(2) << size << std::right << "  ";
}

std::string BestTime(const PackRecord& record) {
  const int seconds = record.BestMinutes * 60 + record.BestSeconds;
  return seconds > 0 ? FormatClock(seconds) : "-";
}

int TreesIn(const PackRecord& record) {
  return static_cast<int>(std::count(record.Layout.begin(), record.Layout.end(), CELL_TREE));
}

struct Rating {
  int Level = 0;
  float Difficulty = 0;
  RatingTrace Trace;
};

/// Leaves the board as the rating left it.
Rating Rate(Main& main, const PackRecord& record) {
  LayOutRecord(main, record);
  Rating rating;
  RatePuzzle(main, rating.Level, rating.Trace);
  rating.Difficulty = main.Difficulty;
  return rating;
}

std::string Digits(float number, int significant) {
  char text[40];
  std::snprintf(text, sizeof text, "%.*g", significant, static_cast<double>(number));
  return text;
}

void WriteRating(const RateOptions& options, const std::string& path, long number, const Main& main,
                 const Rating& rating, Terminal& terminal) {
  if (options.Output == Format::Table) {
    RowStart(terminal.Out, path, number, main.BoardSize)
        << rating.Level << '\t' << Digits(rating.Difficulty, 9) << '\t';
    for (int cell = 0; cell < main.CellCount; ++cell) terminal.Out << main.Board[cell];
    terminal.Out << '\t' << PassNames(rating.Trace) << '\n';
    return;
  }
  LineStart(terminal.Out, path, number, main.BoardSize)
      << "level " << std::setw(2) << rating.Level << "  difficulty " << Digits(rating.Difficulty, 7) << '\n';
  if (options.Steps) terminal.Out << "  " << PassNames(rating.Trace) << '\n';
}

}  // namespace

ExitStatus ListPacks(const std::vector<std::string>& packs, Format format, Terminal& terminal) {
  ForEachRecord(packs, [&](const std::string& path, long number, const PackRecord& record) {
    const int size = SizeOf(record.LevelSize);
    const int level = LevelOf(record.LevelSize);
    if (format == Format::Table) {
      RowStart(terminal.Out, path, number, size)
          << level << '\t' << TreesIn(record) << '\t' << BestTime(record) << '\n';
      return;
    }
    LineStart(terminal.Out, path, number, size)
        << "level " << std::setw(2) << level << "  " << std::setw(2) << TreesIn(record) << " trees  best "
        << BestTime(record) << '\n';
  });
  return ExitStatus::Done;
}

ExitStatus RatePacks(const RateOptions& options, Terminal& terminal) {
  std::vector<std::vector<PackRecord>> packs = ReadSoundPacks(options.Packs);
  Workbench bench;
  auto path = options.Packs.begin();
  for (std::vector<PackRecord>& pack : packs) {
    long number = 0;
    for (PackRecord& record : pack) {
      const Rating rating = Rate(bench.main, record);
      WriteRating(options, *path, ++number, bench.main, rating, terminal);
      record.LevelSize = LevelSizeOf(rating.Level, bench.main.BoardSize);
    }
    if (options.Write) ReplacePack(*path, pack);
    ++path;
  }
  return ExitStatus::Done;
}

ExitStatus ProvePacks(const std::vector<std::string>& packs, Format format, Terminal& terminal) {
  Workbench bench;
  ForEachRecord(packs, [&](const std::string& path, long number, const PackRecord& record) {
    LayOutRecord(bench.main, record);
    bool unique = false;
    CheckUniqueSolution(bench.main, unique);
    const int size = bench.main.BoardSize;
    if (format == Format::Table) {
      RowStart(terminal.Out, path, number, size) << (unique ? 1 : 0) << '\n';
    } else {
      LineStart(terminal.Out, path, number, size) << (unique ? "one solution" : "not proved") << '\n';
    }
  });
  return ExitStatus::Done;
}

ExitStatus CheckPacks(const std::vector<std::string>& packs, Terminal& terminal) {
  std::vector<PackContent> contents;
  contents.reserve(packs.size());
  for (const std::string& path : packs) contents.push_back(ReadContent(path));
  Workbench bench;
  long faults = 0;
  auto path = packs.begin();
  for (const PackContent& content : contents) {
    for (const Fault& fault : FaultsOf(FileName(*path), content, bench.main)) {
      terminal.Out << FileName(*path) << ": ";
      if (fault.Record > 0) terminal.Out << "record " << fault.Record << ", ";
      terminal.Out << fault.Field << ": " << fault.Words << '\n';
      ++faults;
    }
    ++path;
  }
  return faults == 0 ? ExitStatus::Done : ExitStatus::FaultsFound;
}

ExitStatus SortPack(const std::string& pack, Terminal&) {
  const std::vector<PackRecord> records = ReadSoundPack(pack);
  Workbench bench;
  std::vector<Rating> ratings;
  ratings.reserve(records.size());
  for (const PackRecord& record : records) ratings.push_back(Rate(bench.main, record));
  std::vector<std::size_t> order(records.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    if (ratings[a].Level != ratings[b].Level) return ratings[a].Level < ratings[b].Level;
    return ratings[a].Difficulty < ratings[b].Difficulty;
  });
  std::vector<PackRecord> sorted;
  sorted.reserve(records.size());
  for (const std::size_t place : order) sorted.push_back(records[place]);
  if (sorted != records) ReplacePack(pack, sorted);
  return ExitStatus::Done;
}

}  // namespace bivouac
