#include "tools/command_line.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include "tools/drawing_commands.h"

namespace bivouac {
namespace {

// A signal handler can reach nothing else.
std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void OnInterrupt(int) {
  interrupted = true;
}

}  // namespace

LevelRange LevelsOf(const std::string& text) {
  const std::optional<LevelRange> levels = ReadLevels(text);
  if (!levels)
    throw CLI::ValidationError("--level", "'" + text + "' is not a level 1 to 5 or a range such as 2-4");
  return *levels;
}

void RefuseEmpty(const CLI::App& command, const char* name, const char* words) {
  const CLI::Option* option = command.get_option(name);
  if (option->count() != 0 && option->results().front().empty()) throw CLI::ValidationError(name, words);
}

const std::atomic<bool>& WatchForInterrupts() {
  interrupted = false;
  std::signal(SIGINT, OnInterrupt);
  std::signal(SIGTERM, OnInterrupt);
  return interrupted;
}

CLI::Option* AddTableFlag(CLI::App& command, Format& format) {
  return command.add_flag_callback(
      "--tsv", [&format] { format = Format::Table; }, "Write a table, separated by tabs");
}

void AddDrawingOptions(CLI::App& command, DrawingOptions& options) {
  CLI::Option* output =
      command.add_option("-o,--output", options.Output, "The file to write; its ending says what it becomes");
  command.add_flag("--colour", options.Colour, "The colours of the window instead of ink")->needs(output);
  command.add_flag("--force", options.Force, "Overwrite the file")->needs(output);
}

CLI::Option* AddPaperOption(CLI::App& command, std::string& paper) {
  return command.add_option("--paper", paper, "a4, a5, a6, letter or millimetres such as 148x210");
}

void AddCommands(CLI::App& app, Command& chosen) {
  app.require_subcommand(0, 1);
  for (const auto add : {AddMake, AddListAndProve, AddShow, AddAdd, AddRate, AddCheckAndSort, AddMerge,
                         AddHint, AddExplain, AddStats, AddPrint})
    add(app, chosen);
}

ExitStatus RunCommand(std::vector<std::string> arguments, Terminal& terminal) {
  CLI::App app;
  Command chosen;
  AddCommands(app, chosen);
  std::reverse(arguments.begin(), arguments.end());  // As the library wants them.
  app.parse(std::move(arguments));
  return chosen(terminal);
}

}  // namespace bivouac
