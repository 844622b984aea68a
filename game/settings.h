// Settings: kept, and blamed where one of them ends the start.
#pragma once

#include <string>
#include <string_view>

#include "game/game_state.h"

namespace bivouac {

/// Keeps a setting. One that cannot be written holds until the program ends.
void KeepSetting(Main& main, std::string_view section, std::string_view key, std::string_view value);
/// Tells in a box of what could not be kept, once in a run.
void TellOfLoss(Main& main, Loss& loss, const std::string& title, const std::string& text);
/// Tells of settings that could not be written. Every handler that keeps settings calls it once its state is
/// whole again, since a box draws.
void TellOfLostSettings(Main& main);

/// A setting that the start depends on.
struct StartSetting {
  std::string_view Section, Key;
  std::string Allowed;  ///< Such as "6 to 18".
};

/// The error with the cure in a sentence: which setting, what it holds, what is allowed, and where to change
/// it.
RunTimeError WithCure(Main& main, const StartSetting& setting, const RunTimeError& error);

/// Runs a step that fails if the setting is none of the allowed. Errors: those of the step, with the cure;
/// file errors have another cause and pass as they are.
template <class Step>
auto DependingOn(Main& main, const StartSetting& setting, Step step) {
  try {
    return step();
  } catch (const RunTimeError& error) {
    if (error.IsFileError()) throw;
    throw WithCure(main, setting, error);
  }
}

}  // namespace bivouac
