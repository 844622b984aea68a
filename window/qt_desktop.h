// The desktop of the game, made real with Qt, OpenAL and the platform's folders.
#pragma once

#include <QProcess>
#include <QSettings>
#include <QTimer>
#include <chrono>
#include <functional>
#include <map>
#include <optional>

#include "events/event_road.h"
#include "game/desktop.h"
#include "window/main_window.h"
#include "window/player_dialog.h"
#include "window/sound_player.h"

namespace bivouac {

class QtDesktop : public Desktop {
 public:
  explicit QtDesktop(SoundPlayer& sound);

  using Players = std::function<PlayerDialog&()>;

  /// Requires: called before any handler runs; all three live as long as handlers do.
  void Attach(EventRoad& road, MainWindow& window, Players players);

  BoxAnswer Show(const MessageBox& box) override;
  std::string Show(const InputBox& box) override;
  void ShowPlayerDialog() override;
  void Beep() override;
  void Yield() override;
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  std::string TimeOfDay() override;
  std::uint64_t RandomSeed() override;
  std::string GetSetting(std::string_view section, std::string_view key, std::string_view fallback) override;
  bool SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  std::string SettingsFile() override;
  std::string ProgramFolder() override;
  FolderAnswer SpecialFolder(int number) override;
  ScreenSize Screen() override;
  void AttachSound() override {}
  int SoundReady() override { return sound_.Ready() ? 1 : 0; }
  int LoadSound(const std::string& path) override { return sound_.Load(path); }
  void PlaySound(int id) override;
  ProgramAnswer FindExecutable(const std::string& file, const std::string& folder) override;
  int ShellExecute(std::string_view verb, const std::string& program, const std::string& parameters,
                   const std::string& folder, int show) override;

  /// The window that a box belongs to: the dialog of the players if it is open.
  QWidget* BoxParent() const;

 private:
  void LetEventsRun();
  bool SettingsAreReachable();
  void WaitForEnd(QProcess& opener);

  SoundPlayer& sound_;
  EventRoad* road_ = nullptr;
  MainWindow* window_ = nullptr;
  Players players_;
  PlayerDialog* shownPlayers_ = nullptr;
  QString settingsFile_;
  std::optional<QSettings> settings_;   ///< None where something else than a file stands there.
  std::map<QString, QString> unsaved_;  ///< What could not be written holds until the program ends.
  QTimer soundRest_;
  std::chrono::steady_clock::time_point lastEvents_;
  std::uint64_t lastSeed_ = 0;
};

}  // namespace bivouac
