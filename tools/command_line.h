// The command line of bivouac-packs.
#pragma once

#include <CLI/CLI.hpp>
#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "generator/generator.h"
#include "tools/terminal.h"

namespace bivouac {

struct DrawingOptions;

// A command is one source: it adds its options, and sets `chosen` to its work when it is read. Each reports
// input that it cannot work with by an InputError, before it changes a file. One that comes later, as from a
// full disk, says what was changed.

using Command = std::function<ExitStatus(Terminal&)>;

/// "3" or "2-4". Errors: CLI::ValidationError.
LevelRange LevelsOf(const std::string& text);

/// From now on an interrupt sets a flag, which is returned.
const std::atomic<bool>& WatchForInterrupts();

/// An option that is given with nothing is no option left out. Errors: CLI::ValidationError.
void RefuseEmpty(const CLI::App& command, const char* name, const char* words);

CLI::Option* AddTableFlag(CLI::App& command, Format& format);

/// What every drawing command asks for.
void AddDrawingOptions(CLI::App& command, DrawingOptions& options);

CLI::Option* AddPaperOption(CLI::App& command, std::string& paper);

/// Thrown where something is to be drawn and this program does not draw: bivouac-draw goes on then.
struct DrawingWanted {};

inline constexpr const char* kPrintHelp = "A book of puzzles, or a picture of one";

void AddMake(CLI::App& app, Command& chosen);
void AddListAndProve(CLI::App& app, Command& chosen);
void AddShow(CLI::App& app, Command& chosen);
void AddAdd(CLI::App& app, Command& chosen);
void AddRate(CLI::App& app, Command& chosen);
void AddCheckAndSort(CLI::App& app, Command& chosen);
void AddMerge(CLI::App& app, Command& chosen);
void AddHint(CLI::App& app, Command& chosen);
void AddExplain(CLI::App& app, Command& chosen);
void AddStats(CLI::App& app, Command& chosen);
void AddPrint(CLI::App& app, Command& chosen);
/// All of them, as --help tells them.
void AddCommands(CLI::App& app, Command& chosen);

/// Runs a command from its name and arguments. Errors: CLI::ParseError; those of the command.
ExitStatus RunCommand(std::vector<std::string> arguments, Terminal& terminal);

}  // namespace bivouac
