// Short sounds for the player's actions. Everything works as well without them.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// Numbers of the sounds, as Speel takes them.
enum class Sound {
  Applause = 0,
  Discard = 1,
  Assign = 2,
  ResetCell = 3,  ///< Loaded, never played.
  Solution = 4,
  Label = 5,  ///< Loaded, never played.
  UndoRedo = 6,
  Hint = 7,
  Error = 8,
  Giggle = 9,
};

/// Loads the ten sounds from AppDir. Without a sound engine it unchecks and disables the sound box instead.
void Init_Sound(Main& main);
/// Plays a sound if it is loaded and sounds are wanted.
void Speel(Main& main, Sound sound);
/// Requires: optSound.Checked holds the new state already.
void optSound_Click(Main& main);

}  // namespace bivouac
