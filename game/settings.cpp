#include "game/settings.h"

#include <algorithm>

namespace bivouac {

void KeepSetting(Main& main, std::string_view section, std::string_view key, std::string_view value) {
  if (main.desktop.SaveSetting(section, key, value)) return;
  if (main.LostSettings == Loss::None) main.LostSettings = Loss::Untold;
}

void TellOfLoss(Main& main, Loss& loss, const std::string& title, const std::string& text) {
  if (loss != Loss::Untold) return;
  loss = Loss::Told;
  main.desktop.Show(MessageBox{.Title = title, .Text = text, .Symbol = BoxSymbol::Warning});
}

void TellOfLostSettings(Main& main) {
  TellOfLoss(main, main.LostSettings, "Settings not saved",
             "Size, players and sound cannot be written to\n" + main.desktop.SettingsFile() +
                 "\nWhat you change holds until the game ends.");
}

RunTimeError WithCure(Main& main, const StartSetting& setting, const RunTimeError& error) {
  const std::string key = std::string(setting.Section) + "/" + std::string(setting.Key);
  std::string value = main.desktop.GetSetting(setting.Section, setting.Key, "");
  std::replace(value.begin(), value.end(), '\0', '?');  // It would end the sentence.
  return {error.Number(), std::string(error.what()) + ". The setting " + key + " is \"" + value +
                              "\"; allowed is " + setting.Allowed + ". Change it in " +
                              main.desktop.SettingsFile()};
}

}  // namespace bivouac
