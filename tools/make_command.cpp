#include <cmath>
#include <cstdio>
#include <ostream>
#include <vector>

#include "game/text.h"
#include "packs/pack_access.h"
#include "tools/commands.h"
#include "walks/solution_walk.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

constexpr std::size_t kLargestBatch = 512;  // Puzzles made ready between two turns at the pack.

/// How many puzzles are made, how fast, and how long it will take, on a line that is written over and over.
class MakingLine {
 public:
  MakingLine(Terminal& terminal, long count) : terminal_(terminal), count_(count) {}

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
  using Twins = PackAppender::Twins;
  PackAppender pack(options.Pack, options.Request.Size, options.Distinct ? Twins::LeaveOut : Twins::Keep,
                    LongPatience(terminal.Err));
  std::vector<PackRecord> batch;
  const auto addBatch = [&] {
    pack.Add(batch);
    batch.clear();
  };
  Workbench bench;
  const auto take = [&](const PackRecord& puzzle) {
    const int level = LevelOf(puzzle.LevelSize);
    if (level < options.LowestLevel || level > options.HighestLevel) return true;
    if (options.Explained && EndOfWay(bench.main, puzzle) != SolutionWalk::End::Solved) return true;
    batch.push_back(puzzle);
    const bool enough = pack.Added() + static_cast<long>(batch.size()) >= options.Count;
    if (enough || batch.size() >= kLargestBatch) addBatch();
    return pack.Added() < options.Count;
  };

  const MakingLine progress(terminal, options.Count);
  const auto wait = [&] {
    addBatch();
    if (terminal.Progress) progress.Show(pack.Added());
  };
  try {
    MakePuzzles(options.Request, stop, take, wait);
    addBatch();
  } catch (...) {
    if (terminal.Progress) progress.Clear();
    throw;
  }
  if (terminal.Progress) progress.Clear();
  const long made = pack.Added();
  char rate[32];
  std::snprintf(rate, sizeof rate, "%.4g", static_cast<double>(made) / progress.Seconds());
  terminal.Err << Counted(made, "puzzle") << " added to " << OnOneLine(options.Pack) << ", " << rate
               << " a second, seed " << options.Request.Seed << '\n';
  return made < options.Count ? ExitStatus::Interrupted : ExitStatus::Done;
}

}  // namespace bivouac
