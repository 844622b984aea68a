// How the game comes up and goes down.
#pragma once

#include <string>

#include "game/game_state.h"
#include "storage/players.h"

namespace bivouac {

/// The special folder of that number, without a separator at its end; empty if the platform has none.
std::string LookupFolder(Desktop& desktop, int folderNumber);

/// The whole start-up, up to and including the showing of the window. Opens no puzzle. Errors: whatever a
/// step does not catch; the caller reports it and ends the program.
void Form_Load(Main& main, FormNamen& form);

/// Sound and size from the settings. Errors: NotANumber, Overflow for a size that is no 16-bit number.
void ReadSettings(Main& main);
/// The sound engine that was there turns out to have no device: all is as if the start had found none.
void LoseSound(Main& main);
/// Copies the packs beside the program to DataDir where one is missing, or empty. Errors: FileNotFound for a
/// pack that is in neither folder, or another file error.
void CopyMissingPacks(Main& main);

/// Asks, then ends the program. Throws ProgramEnd on Yes.
void cmdExit_Click(Main& main);
/// The window is closed by the system's means: ends the program without a question. Throws ProgramEnd.
void Form_QueryUnload(Main& main);

}  // namespace bivouac
