// The game clock: the time of day less the second at which the clock stood at zero. So a lost tick loses
// nothing.
#pragma once

#include <string>

#include "game/game_state.h"

namespace bivouac {

inline constexpr int kDaySeconds = 86400;

/// Reads the time of day into ClockText and ClockNow.
void ReadClock(Main& main);
/// Seconds as "mm:ss"; from 100 minutes on the minutes start again at "00".
std::string FormatClock(int seconds);
/// Adds seconds to the clock. LabelTijd follows at the next tick.
void AddPenalty(Main& main, int seconds);

void Timer3_Timer(Main& main);
void cmdPause_Click(Main& main);
/// The only way out of a pause.
void Picture1_Click(Main& main);

}  // namespace bivouac
