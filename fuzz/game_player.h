// A player at random: presses everything, in every state, over real packs, and watches that nothing is lost,
// stuck or wrong.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/bytes.h"
#include "fuzz/invariants.h"
#include "game/desktop.h"
#include "game/game_state.h"
#include "storage/players.h"

namespace bivouac {

/// The desktop of a player whose answers, and whose clicks while something else is under way, are bytes. It
/// stays from run to run of the program, with its settings and folders.
class PlayerDesktop : public Desktop {
 public:
  /// What the player does while a call holds its caller.
  struct Hands {
    virtual ~Hands() = default;
    virtual void AtYield() = 0;
    virtual void UnderBox(const std::string& title) = 0;
    virtual void InPlayerDialog() = 0;
  };

  PlayerDesktop(Bytes& bytes, std::string folder) : bytes_(bytes), folder_(std::move(folder)) {}

  std::map<std::pair<std::string, std::string>, std::string> Settings;
  int Now = 43200;  ///< Second of the day.
  int SoundEngine = 1;
  Hands* Player = nullptr;
  bool Ended = false;  ///< The program has ended: every call that lets events run throws ProgramEnd.

  BoxAnswer Show(const MessageBox& box) override;
  std::string Show(const InputBox& box) override;
  void ShowPlayerDialog() override;
  void Beep() override {}
  void Yield() override;
  [[noreturn]] void End() override;
  std::string TimeOfDay() override;
  std::uint64_t RandomSeed() override;
  std::string GetSetting(std::string_view section, std::string_view key, std::string_view fallback) override;
  bool SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  std::string SettingsFile() override { return folder_ + "/settings"; }
  std::string ProgramFolder() override { return folder_ + "/program"; }
  FolderAnswer SpecialFolder(int) override { return {0, folder_ + "/local"}; }
  ScreenSize Screen() override { return {19200, 14400}; }
  void AttachSound() override {}
  int SoundReady() override { return SoundEngine; }
  int LoadSound(const std::string&) override { return sounds_++ % 12 - 1; }
  void PlaySound(int) override {}
  ProgramAnswer FindExecutable(const std::string&, const std::string&) override;
  int ShellExecute(std::string_view, const std::string&, const std::string&, const std::string&,
                   int) override;

  /// A program that ended early throws on from every call that held it.
  void ThrowIfEnded() const;

 private:
  Bytes& bytes_;
  std::string folder_;
  std::uint64_t seed_ = 0;
  int sounds_ = 0;
};

/// Plays an input to its end, over as many runs of the program as it takes. Calls Fault at what is wrong.
void PlayGame(Bytes& bytes);

}  // namespace bivouac
