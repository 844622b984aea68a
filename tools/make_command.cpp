#include <cmath>
#include <cstdio>
#include <optional>
#include <ostream>
#include <unordered_set>

#include "storage/record_file.h"
#include "tools/alike.h"
#include "tools/commands.h"
#include "tools/pack_access.h"

namespace bivouac {
namespace {

/// What stands in the pack before. Nothing if there is no such file yet.
std::vector<PackRecord> ExistingPuzzles(const std::string& path, int size) {
  if (!FileExists(path)) return {};
  std::vector<PackRecord> records = ReadSoundPack(path);
  long number = 0;
  for (const PackRecord& record : records) {
    ++number;
    if (SizeOf(record.LevelSize) == size) continue;
    throw InputError(path + ": record " + std::to_string(number) + " has the size " +
                     std::to_string(SizeOf(record.LevelSize)) + ", not " + std::to_string(size));
  }
  return records;
}

/// How far a command has come, on one line that is written over and over.
class ProgressLine {
 public:
  ProgressLine(Terminal& terminal, long count) : terminal_(terminal), count_(count) {}

  void Show(long made) const {
    const double seconds = Seconds();
    const double rate = static_cast<double>(made) / seconds;
    char text[120];
    if (made == 0) {
      std::snprintf(text, sizeof text, "0 of %ld puzzles", count_);
    } else {
      const long left = std::lround(static_cast<double>(count_ - made) / rate);
      std::snprintf(text, sizeof text, "%ld of %ld puzzles, %.*f a second, %ld:%02ld:%02ld left", made,
                    count_, rate < 10 ? 2 : 0, rate, left / 3600, left / 60 % 60, left % 60);
    }
    terminal_.Err << '\r' << text << kClearLine << std::flush;
  }
  void Clear() const { terminal_.Err << '\r' << kClearLine << std::flush; }
  double Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  static constexpr const char* kClearLine = "\x1b[K";
  Terminal& terminal_;
  long count_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace

ExitStatus MakePack(const MakeOptions& options, const std::atomic<bool>& stop, Terminal& terminal) {
  const std::vector<PackRecord> existing = ExistingPuzzles(options.Pack, options.Request.Size);
  std::unordered_set<std::string> seen;
  if (options.Distinct) {
    for (const PackRecord& record : existing) seen.insert(ViewedFromAnySide(record));
  }
  std::optional<RecordFile<PackRecord>> file;
  long made = 0;
  const auto take = [&](const PackRecord& puzzle) {
    const int level = LevelOf(puzzle.LevelSize);
    if (level < options.LowestLevel || level > options.HighestLevel) return true;
    if (options.Distinct && !seen.insert(ViewedFromAnySide(puzzle)).second) return true;
    if (!file) file.emplace(options.Pack, Patience::Long);
    const Turn turn(*file);
    file->Write(file->Counts().Whole + 1, puzzle);
    return ++made < options.Count;
  };

  const ProgressLine progress(terminal, options.Count);
  const auto wait = [&] {
    if (terminal.Progress) progress.Show(made);
  };
  try {
    MakePuzzles(options.Request, stop, take, wait);
  } catch (...) {
    if (terminal.Progress) progress.Clear();
    throw;
  }
  if (terminal.Progress) progress.Clear();
  char rate[32];
  std::snprintf(rate, sizeof rate, "%.4g", static_cast<double>(made) / progress.Seconds());
  terminal.Err << made << (made == 1 ? " puzzle" : " puzzles") << " added to " << options.Pack << ", " << rate
               << " a second, seed " << options.Request.Seed << '\n';
  return made < options.Count ? ExitStatus::Interrupted : ExitStatus::Done;
}

}  // namespace bivouac
