// The desktop of the game, made of what a browser has.
#pragma once

#include <chrono>

#include "events/event_road.h"
#include "game/desktop.h"
#include "storage/players.h"

namespace bivouac {

class PageDesktop : public Desktop {
 public:
  /// Requires: called before any handler runs; both live as long as handlers do.
  void Attach(EventRoad& road, FormNamen& form);

  BoxAnswer Show(const MessageBox& box) override;
  std::string Show(const InputBox& box) override;
  void ShowPlayerDialog() override;
  void Beep() override;
  void Yield() override;
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  std::string TimeOfDay() override;
  std::uint64_t RandomSeed() override;
  /// Settings are lines of a file, which tabs share.
  std::string GetSetting(std::string_view section, std::string_view key, std::string_view fallback) override;
  bool SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  std::string SettingsFile() override;
  std::string ProgramFolder() override;
  FolderAnswer SpecialFolder(int number) override;
  ScreenSize Screen() override;
  void AttachSound() override {}
  int SoundReady() override { return 1; }
  int LoadSound(const std::string& path) override;
  void PlaySound(int id) override;
  ProgramAnswer FindExecutable(const std::string& file, const std::string& folder) override;
  int ShellExecute(std::string_view verb, const std::string& program, const std::string& parameters,
                   const std::string& folder, int show) override;
  /// Asks the page something that holds the caller, as a box does.
  std::string Ask(const std::string& message);

 private:
  EventRoad* road_ = nullptr;
  FormNamen* form_ = nullptr;
  std::chrono::steady_clock::time_point lastEvents_;
  std::uint64_t lastSeed_ = 0;
  std::vector<std::string> sounds_;
};

/// Shows a box and holds the caller, whatever the state of the program.
BoxAnswer ShowMessageBox(const MessageBox& box);

}  // namespace bivouac
