// A desktop that answers from a script and records what it was asked.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "game/desktop.h"
#include "game/error.h"

namespace bivouac {

class ScriptedDesktop : public Desktop {
 public:
  // Answers, taken from the front. A box that finds none throws std::logic_error: no test may meet an
  // unexpected one. Plain boxes with an OK button need no answer.
  std::deque<BoxAnswer> Answers;
  std::deque<std::string> Inputs;
  // Called, if set, instead of taking one from there.
  std::function<BoxAnswer(const MessageBox&)> AnswerBox;
  std::function<std::string(const InputBox&)> AnswerInput;
  // Called, if set, while a message box is open, before it is answered.
  std::function<void(const MessageBox&)> WhileOpen;
  // Called, if set, at every yield.
  std::function<void()> WhileYielding;
  std::function<void()> PlayerDialog;

  std::string Now = "12:00:00";
  std::uint64_t Seed = 1;  // Counts up at every call.
  std::map<std::pair<std::string, std::string>, std::string> Settings;
  bool SettingsWritable = true;
  std::string Program = "/program/";
  FolderAnswer LocalData{0, "/data"};
  int SoundEngine = 1;
  std::map<std::string, int> SoundIds;  // By path; a sound that is not in it gets the next number.
  ProgramAnswer Browser{42, "/usr/bin/browser"};
  int ShellCode = 42;

  // What was asked.
  std::vector<MessageBox> Boxes;
  std::vector<int> Played;
  std::vector<std::string> Loaded;
  std::vector<std::string> Opened;  // Parameters of ShellExecute.
  int Beeps = 0;
  int Yields = 0;
  bool SoundAttached = false;

  BoxAnswer Show(const MessageBox& box) override;
  std::string Show(const InputBox& box) override;
  void ShowPlayerDialog() override {
    if (PlayerDialog) PlayerDialog();
  }
  void Beep() override { ++Beeps; }
  void Yield() override;
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  std::string TimeOfDay() override { return Now; }
  std::uint64_t RandomSeed() override { return Seed++; }
  std::string GetSetting(std::string_view section, std::string_view key, std::string_view fallback) override;
  bool SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  std::string SettingsFile() override { return "/settings"; }
  std::string ProgramFolder() override { return Program; }
  FolderAnswer SpecialFolder(int) override { return LocalData; }
  ScreenSize Screen() override { return {19200, 14400}; }
  void AttachSound() override { SoundAttached = true; }
  int SoundReady() override { return SoundEngine; }
  int LoadSound(const std::string& path) override;
  void PlaySound(int id) override { Played.push_back(id); }
  ProgramAnswer FindExecutable(const std::string&, const std::string&) override { return Browser; }
  int ShellExecute(std::string_view verb, const std::string& program, const std::string& parameters,
                   const std::string& folder, int show) override;
};

}  // namespace bivouac
