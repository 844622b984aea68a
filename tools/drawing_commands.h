// The commands of bivouac-packs that draw. Drawing itself is the work of bivouac-draw.
#pragma once

#include <functional>
#include <string>

#include "generator/generator.h"
#include "tools/terminal.h"
#include "walks/pack_stats.h"

namespace bivouac {

/// What every drawing command asks for.
struct DrawingOptions {
  std::string Output{};
  bool Colour = false;  ///< The colours of the window, else ink.
  bool Force = false;   ///< Overwrites a file.
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

/// Writes a PDF that tells the way to the solution as the hints give it.
ExitStatus ExplainOnPaper(const ExplainOptions& options, Terminal& terminal);
/// Errors: InputError if the ending of the file's name is no picture's.
void CheckPlot(const DrawingOptions& options);
/// Draws them as a picture, by the ending of the file's name, which it gets once it is whole and `mayKeep`
/// says so. Errors: InputError.
void PlotStats(const DrawingOptions& options, const PackStats& stats, const std::function<bool()>& mayKeep);

}  // namespace bivouac
