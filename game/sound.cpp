#include "game/sound.h"

#include <array>

#include "game/settings.h"

namespace bivouac {
namespace {

constexpr std::array<const char*, 10> kSoundFiles = {
    "Applause.wav", "Discard.wav",  "Assign.wav", "ResetCell.wav", "Solution.wav",
    "Label.wav",    "UndoRedo.wav", "Hint.wav",   "Error.wav",     "Giggle.wav",
};

}  // namespace

void Init_Sound(Main& main) {
  if (main.desktop.SoundReady() != 1) {
    main.SoundOn = false;
    main.optSound.Checked = false;
    main.optSound.Enabled = false;
    return;
  }
  int number = 0;
  for (const char* file : kSoundFiles)
    main.SoundId[number++] = main.desktop.LoadSound(main.global.AppDir + file);
}

void Speel(Main& main, Sound sound) {
  const int id = main.SoundId[static_cast<int>(sound)];
  if (id >= 0 && main.SoundOn) main.desktop.PlaySound(id);
}

void optSound_Click(Main& main) {
  if (main.SettingsLoading) return;
  main.SoundOn = main.optSound.Checked;
  // The start-up reads "Sounds": the player's choice holds for this run only.
  KeepSetting(main, "Options", "Sound", main.SoundOn ? "True" : "False");
  TellOfLostSettings(main);
}

}  // namespace bivouac
