// The command line of bivouac-packs: each function adds commands, and sets `chosen` when one is read.
#pragma once

#include <CLI/CLI.hpp>
#include <atomic>
#include <functional>
#include <string>

#include "tools/commands.h"

namespace bivouac {

struct DrawingOptions;

using Command = std::function<ExitStatus(Terminal&)>;

/// "3" or "2-4". Errors: CLI::ValidationError.
LevelRange LevelsOf(const std::string& text);

/// From now on an interrupt sets a flag, which is returned.
const std::atomic<bool>& WatchForInterrupts();

/// An option that is given with nothing is no option left out. Errors: CLI::ValidationError.
void RefuseEmpty(const CLI::App& command, const char* name, const char* words);

/// What every drawing command asks for.
void AddDrawingOptions(CLI::App& command, DrawingOptions& options);

CLI::Option* AddPaperOption(CLI::App& command, std::string& paper);

/// Thrown where something is to be drawn and this program does not draw: bivouac-draw goes on then.
struct DrawingWanted {};

inline constexpr const char* kPrintHelp = "A book of puzzles, or a picture of one";

void AddExplain(CLI::App& app, Command& chosen);
void AddStats(CLI::App& app, Command& chosen);
void AddPrint(CLI::App& app, Command& chosen);

}  // namespace bivouac
