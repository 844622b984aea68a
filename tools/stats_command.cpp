#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>

#include "game/text.h"
#include "packs/pack_access.h"
#include "packs/pack_reader.h"
#include "tools/command_line.h"
#include "tools/drawing_commands.h"
#include "tools/progress.h"
#include "walks/pack_stats.h"

namespace bivouac {
namespace {

struct StatsOptions {
  DrawingOptions Drawing{};  // An output makes a plot as well.
  std::vector<std::string> Packs{};
  Format Output = Format::Words;
};

constexpr int kLevels[] = {1, 2, 3, 4, 5, -1};  // -1: the rater cannot finish them.

struct Spread {
  double Least = 0;
  double Median = 0;
  double Most = 0;
};

template <class Value>
Spread SpreadOf(const std::vector<const PuzzleStats*>& puzzles, Value value) {
  std::vector<double> values;
  values.reserve(puzzles.size());
  for (const PuzzleStats* puzzle : puzzles) values.push_back(value(*puzzle));
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  const double median = values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
  return {values.front(), median, values.back()};
}

struct LevelRow {
  long Puzzles;
  Spread Difficulty;
  Spread Tents;
  std::optional<Spread> Hints;  // Of the puzzles that hints finish; none if they finish none.
  std::optional<Spread> Seconds;
  long Unfinished;  // By hints.
};

/// Requires: there is a puzzle.
LevelRow RowOf(const std::vector<const PuzzleStats*>& puzzles) {
  LevelRow row{
      .Puzzles = static_cast<long>(puzzles.size()),
      .Difficulty = SpreadOf(puzzles, [](const PuzzleStats& p) { return static_cast<double>(p.Difficulty); }),
      .Tents = SpreadOf(puzzles, [](const PuzzleStats& p) { return p.Tents; }),
      .Hints = {},
      .Seconds = {},
      .Unfinished = 0};
  std::vector<const PuzzleStats*> finished;
  std::copy_if(puzzles.begin(), puzzles.end(), std::back_inserter(finished),
               [](const PuzzleStats* p) { return p->Finished; });
  row.Unfinished = row.Puzzles - static_cast<long>(finished.size());
  if (finished.empty()) return row;
  row.Hints = SpreadOf(finished, [](const PuzzleStats& p) { return p.Hints; });
  row.Seconds = SpreadOf(finished, [](const PuzzleStats& p) { return p.Seconds; });
  return row;
}

/// Calls visit(level, row) for the levels of the pack that have puzzles.
template <class Visit>
void ForEachLevel(const PackStats::Pack& pack, Visit visit) {
  for (const int level : kLevels) {
    std::vector<const PuzzleStats*> puzzles;
    for (const PuzzleStats& puzzle : pack.Puzzles) {
      if (puzzle.Level == level || (level == -1 && puzzle.Level < 1)) puzzles.push_back(&puzzle);
    }
    if (!puzzles.empty()) visit(level, RowOf(puzzles));
  }
}

/// Least, median and most, each as wide; the median and where asked all of them with decimals.
std::string Columns(const std::optional<Spread>& spread, int decimals) {
  char text[80];
  if (spread) {
    std::snprintf(text, sizeof text, "  %6.*f%7.*f%6.*f", decimals, spread->Least, std::max(decimals, 1),
                  spread->Median, decimals, spread->Most);
  } else {
    std::snprintf(text, sizeof text, "  %6s%7s%6s", "-", "-", "-");
  }
  return text;
}

void WriteLevels(const PackStats::Pack& pack, std::ostream& out) {
  out << pack.Name << ", " << Counted(static_cast<long>(pack.Puzzles.size()), "puzzle")
      << "\n                difficulty           tents                hints                seconds of hints\n"
         "level  puzzles";
  for (int group = 0; group < 4; ++group) out << "   least median  most";
  out << "  unfinished\n";
  ForEachLevel(pack, [&](int level, const LevelRow& row) {
    char text[40];
    std::snprintf(text, sizeof text, "%5s %8ld", level < 1 ? "none" : std::to_string(level).c_str(),
                  row.Puzzles);
    out << text << Columns(row.Difficulty, 2) << Columns(row.Tents, 0) << Columns(row.Hints, 0)
        << Columns(row.Seconds, 0);
    std::snprintf(text, sizeof text, "%12ld\n", row.Unfinished);
    out << text;
  });
  out << '\n';
}

void WriteRules(const PackStats& stats, std::ostream& out) {
  out << "Share of the puzzles of a level whose way by hints needs a rule\n"
         "rule                               level 1      2      3      4      5\n";
  const std::span<const HintRule> rules = HintRules();
  for (std::size_t rule = 0; rule < rules.size(); ++rule) {
    char text[40];
    std::snprintf(text, sizeof text, "%-34s", std::string(rules[rule].Title).c_str());
    out << text;
    for (int level = 1; level <= 5; ++level) {
      const long count = stats.Count(level);
      if (count == 0) {
        out << "      -";
        continue;
      }
      std::snprintf(text, sizeof text, "%6.1f%%",
                    100 * static_cast<double>(stats.CountNeeding(level, CasesOf(rules[rule]))) /
                        static_cast<double>(count));
      out << text;
    }
    out << '\n';
  }
}

void WriteTable(const PackStats& stats, std::ostream& out) {
  for (const PackStats::Pack& pack : stats.Packs) {
    ForEachLevel(pack, [&](int level, const LevelRow& row) {
      out << "level\t" << pack.Name << '\t' << level << '\t' << row.Puzzles;
      for (const std::optional<Spread>& spread :
           {std::optional(row.Difficulty), std::optional(row.Tents), row.Hints, row.Seconds}) {
        if (!spread) {
          out << "\t-\t-\t-";
          continue;
        }
        for (const double value : {spread->Least, spread->Median, spread->Most}) {
          char text[40];
          std::snprintf(text, sizeof text, "\t%.9g", value);
          out << text;
        }
      }
      out << '\t' << row.Unfinished << '\n';
    });
  }
  const std::span<const HintRule> rules = HintRules();
  for (std::size_t rule = 0; rule < rules.size(); ++rule) {
    for (int level = 1; level <= 5; ++level) {
      out << "rule\t" << rules[rule].Name << '\t' << level << '\t' << stats.Count(level) << '\t'
          << stats.CountNeeding(level, CasesOf(rules[rule])) << '\n';
    }
  }
}

void WriteWords(const PackStats& stats, std::ostream& out) {
  PackStats::Pack all{"all packs", {}};
  for (const PackStats::Pack& pack : stats.Packs) {
    WriteLevels(pack, out);
    all.Puzzles.insert(all.Puzzles.end(), pack.Puzzles.begin(), pack.Puzzles.end());
  }
  if (stats.Packs.size() > 1) WriteLevels(all, out);
  WriteRules(stats, out);
}

/// Tells what packs hold: levels, difficulty, tents, the rules that hints need, their seconds.
ExitStatus StatsOfPacks(const StatsOptions& options, const std::atomic<bool>& stop, Terminal& terminal) {
  RequireNoInput(options.Drawing.Output, options.Packs);
  if (!options.Drawing.Output.empty()) CheckPlot(options.Drawing);
  long total = 0;
  for (const std::string& path : options.Packs) total += PackReader(path).Count();
  PackStats stats;
  {
    ProgressLine progress(terminal, total);
    stats = StatsOf(options.Packs, [&] {
      progress.Step();
      return !stop;
    });
  }
  if (stop) return ExitStatus::Interrupted;
  const auto write = [&] {
    options.Output == Format::Table ? WriteTable(stats, terminal.Out) : WriteWords(stats, terminal.Out);
    return terminal.Out.flush().good();
  };
  // Where nobody could read the text, whoever runs the command says so, and there is no plot.
  options.Drawing.Output.empty() ? static_cast<void>(write()) : PlotStats(options.Drawing, stats, write);
  return ExitStatus::Done;
}

}  // namespace

void AddStats(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<StatsOptions>();
  CLI::App* stats = app.add_subcommand("stats", "Levels, difficulty, tents, rules and seconds of hints");
  stats->add_option("PACK", options->Packs, "The packs")->required();
  AddTableFlag(*stats, options->Output);
  CLI::Option* output =
      stats->add_option("-o,--output", options->Drawing.Output, "A plot to write: an SVG, PDF or PNG");
  stats->add_flag("--force", options->Drawing.Force, "Overwrite the plot")->needs(output);
  stats->callback([options, stats, &chosen] {
    RefuseEmpty(*stats, "--output", "no name");
    chosen = [options](Terminal& terminal) { return StatsOfPacks(*options, WatchForInterrupts(), terminal); };
  });
}

}  // namespace bivouac
