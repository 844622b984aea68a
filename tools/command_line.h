// The command line of bivouac-packs: each function adds commands, and sets `chosen` when one is read.
#pragma once

#include <CLI/CLI.hpp>
#include <atomic>
#include <functional>
#include <string>

#include "tools/commands.h"

namespace bivouac {

using Command = std::function<ExitStatus(Terminal&)>;

/// "3" or "2-4". Errors: CLI::ValidationError.
LevelRange LevelsOf(const std::string& text);

/// From now on an interrupt sets a flag, which is returned.
const std::atomic<bool>& WatchForInterrupts();

/// The commands that draw.
void AddDrawingCommands(CLI::App& app, Command& chosen);

}  // namespace bivouac
