#include <cmath>
#include <cstdio>
#include <memory>
#include <ostream>
#include <random>
#include <thread>
#include <vector>

#include "game/text.h"
#include "packs/pack_access.h"
#include "packs/puzzle_maker.h"
#include "tools/command_line.h"
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

struct MakeOptions {
  MakeRequest Request{};
  long Count = 1;
  std::string Levels = "1-5";
  bool Distinct = false;   ///< Leaves out what is alike to a puzzle of the pack, turned and mirrored too.
  bool Explained = false;  ///< Leaves out what hints do not lead through to the solution.
  std::string Pack{};
};

/// Appends puzzles, in short turns between which other programs may append theirs; `stop` ends it with those
/// that are made.
ExitStatus MakePack(const MakeOptions& options, const LevelRange& levels, Terminal& terminal) {
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
    if (level < levels.Lowest || level > levels.Highest) return true;
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
    MakePuzzles(options.Request, WatchForInterrupts(), take, wait);
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

}  // namespace

void AddMake(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<MakeOptions>();
  options->Request.Jobs = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
  CLI::App* make = app.add_subcommand("make", "Append new puzzles to a pack");
  make->add_option("--size", options->Request.Size, "Lines of the board")
      ->required()
      ->check(CLI::Range(kMinSize, kMaxSize));
  make->add_option("--count", options->Count, "How many to add")
      ->required()
      ->check(CLI::Range(1L, 100'000'000L));
  make->add_option("--level", options->Levels, "Keep only this level or range of levels");
  CLI::Option* seed =
      make->add_option("--seed", options->Request.Seed, "The same seed gives the same puzzles")
          ->check([](const std::string& text) {
            const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
            return digits ? std::string() : text + " is no whole number from 0 on";
          });
  make->add_option("--jobs", options->Request.Jobs, "Threads; all cores unless told")
      ->check(CLI::Range(1, 1024));
  make->add_flag("--distinct", options->Distinct, "Leave out what is alike, turned or mirrored");
  make->add_flag("--explained", options->Explained, "Leave out what hints do not lead through");
  make->add_option("PACK", options->Pack, "The pack")->required();
  make->callback([options, seed, &chosen] {
    if (seed->count() == 0) {
      std::random_device random;
      options->Request.Seed = std::uint64_t{random()} << 32 | random();
    }
    chosen = [options, levels = LevelsOf(options->Levels)](Terminal& terminal) {
      return MakePack(*options, levels, terminal);
    };
  });
}

}  // namespace bivouac
