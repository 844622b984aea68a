#include <memory>

#include "tools/command_line.h"
#include "tools/drawing_commands.h"

namespace bivouac {

void AddExplain(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<ExplainOptions>();
  CLI::App* explain = app.add_subcommand("explain", "The way to the solution as the hints give it");
  explain->add_option("PACK", options->Pack, "The pack")->required();
  explain->add_option("NUMBER", options->Number, "The puzzle, counted from 1")->required();
  explain->add_option("--from", options->From, "Digits of the position to begin with");
  CLI::Option* table = explain->add_flag_callback(
      "--tsv", [options] { options->Output = Format::Table; }, "Write a table, separated by tabs");
  AddDrawingOptions(*explain, options->Drawing);
  table->excludes(explain->get_option("--output"));
  explain->callback([options, explain, &chosen] {
    RefuseEmpty(*explain, "--from", "no digits");
    RefuseEmpty(*explain, "--output", "no name");
    chosen = [options](Terminal& terminal) { return ExplainPuzzle(*options, terminal); };
  });
}

}  // namespace bivouac
