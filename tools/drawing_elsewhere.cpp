// What draws, for a program that does not load the libraries for it: they are fifty, and cost a start three
// times its time.
#include "tools/command_line.h"
#include "tools/drawing_commands.h"

namespace bivouac {

ExitStatus ExplainOnPaper(const ExplainOptions&, Terminal&) {
  throw DrawingWanted();
}

void CheckPlot(const DrawingOptions&) {
  throw DrawingWanted();
}

void PlotStats(const DrawingOptions&, const PackStats&, const std::function<bool()>&) {
  throw DrawingWanted();
}

void AddPrint(CLI::App& app, Command& chosen) {
  CLI::App* print = app.add_subcommand("print", kPrintHelp);
  print->set_help_flag();
  print->prefix_command();
  print->callback([&chosen] { chosen = [](Terminal&) -> ExitStatus { throw DrawingWanted(); }; });
}

}  // namespace bivouac
