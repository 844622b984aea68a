// The commands of bivouac-packs that draw. Drawing itself is the work of bivouac-draw.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/commands.h"
#include "walks/pack_stats.h"

namespace bivouac {

enum class SolutionPlace { None, Back, Separate };

/// What every drawing command asks for.
struct DrawingOptions {
  std::string Output{};
  bool Colour = false;  ///< The colours of the window, else ink.
  bool Force = false;   ///< Overwrites a file.
};

/// Numbers first to last of a pack, both included.
struct NumberRange {
  long First = 1;
  long Last = 1;
};

struct BookOptions {
  DrawingOptions Drawing{};
  std::vector<std::string> Packs{};
  std::vector<NumberRange> Numbers{};  ///< None: all of every pack.
  std::optional<LevelRange> Levels{};  ///< None: all, and those that the rater cannot finish.
  int PerPage = 2;
  bool Duplex = false;
  std::string Paper = "a4";
  SolutionPlace Solutions = SolutionPlace::Back;
  std::string Title = "Bivouac";
};

struct PictureOptions {
  DrawingOptions Drawing{};
  std::string Pack{};
  long Number = 1;
  std::string Board{};  ///< Digits of the position; empty for the puzzle alone.
  bool Solution = false;
  int Width = 600;  ///< In pixels; a PDF takes the paper's.
  std::string Paper = "a4";
};

struct ExplainOptions {
  DrawingOptions Drawing{};  ///< An output makes a PDF instead of text.
  std::string Pack{};
  long Number = 1;
  std::string From{};  ///< Digits of the position to begin with; empty for the start of the puzzle.
  Format Output = Format::Words;
  bool Html = false;  ///< Instead of words.
  bool Long = false;  ///< Every step by itself.
  std::string Paper = "a4";
};

struct StatsOptions {
  DrawingOptions Drawing{};  ///< An output makes a plot as well.
  std::vector<std::string> Packs{};
  Format Output = Format::Words;
};

/// Writes a PDF that tells the way to the solution as the hints give it.
ExitStatus ExplainOnPaper(const ExplainOptions& options, Terminal& terminal);
/// Tells what packs hold: levels, difficulty, tents, the rules that hints need, their seconds.
ExitStatus StatsOfPacks(const StatsOptions& options, const std::atomic<bool>& stop, Terminal& terminal);
/// Errors: InputError if the ending of the file's name is no picture's.
void CheckPlot(const DrawingOptions& options);
/// Draws them as a picture, by the ending of the file's name, which it gets once it is whole and `mayKeep`
/// says so. Errors: InputError.
void PlotStats(const DrawingOptions& options, const PackStats& stats, const std::function<bool()>& mayKeep);
/// Writes a PDF. `stop` ends it without a file.
ExitStatus PrintBook(const BookOptions& options, const std::atomic<bool>& stop, Terminal& terminal);
/// Writes one board as a PDF, SVG or PNG, by the ending of the file's name.
ExitStatus PrintPicture(const PictureOptions& options, Terminal& terminal);

}  // namespace bivouac
