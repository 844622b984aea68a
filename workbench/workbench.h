// A window that nobody sees, to run the game's rules on records.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

#include "game/game_state.h"
#include "generator/random.h"

namespace bivouac {

/// A desktop for rules that run without a person. Of wrong fields, a hint asks whether to undo them, with a
/// warning, and the answer is No; then whether to see them, with a plain question, and the answer is Yes.
class HeadlessDesktop : public Desktop {
 public:
  /// RandomSeed() gives numbers that follow from this one.
  void Seed(std::uint64_t seed) { seeds_ = Random(seed); }
  /// From now on a yield ends the rule that is running, by ProgramEnd, once the flag is true. The flag must
  /// outlive this.
  void StopOn(const std::atomic<bool>& flag) { stop_ = &flag; }
  int LastSound = -1;                ///< The last sound played.
  std::function<void()> OnQuestion;  ///< Called, if set, while a question waits for its answer.

  BoxAnswer Show(const MessageBox& box) override;
  std::string Show(const InputBox&) override { return {}; }
  void ShowPlayerDialog() override {}
  void Beep() override {}
  void Yield() override {
    if (stop_ != nullptr && stop_->load(std::memory_order_relaxed)) throw ProgramEnd{};
  }
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  std::string TimeOfDay() override { return "00:00:00"; }
  std::uint64_t RandomSeed() override { return seeds_.Next(); }
  std::string GetSetting(std::string_view, std::string_view, std::string_view fallback) override {
    return std::string(fallback);
  }
  bool SaveSetting(std::string_view, std::string_view, std::string_view) override { return true; }
  std::string SettingsFile() override { return {}; }
  std::string ProgramFolder() override { return {}; }
  FolderAnswer SpecialFolder(int) override { return {1, {}}; }
  ScreenSize Screen() override { return {}; }
  void AttachSound() override {}
  int SoundReady() override { return 0; }
  int LoadSound(const std::string&) override { return -1; }
  void PlaySound(int id) override { LastSound = id; }
  ProgramAnswer FindExecutable(const std::string&, const std::string&) override { return {}; }
  int ShellExecute(std::string_view, const std::string&, const std::string&, const std::string&,
                   int) override {
    return 0;
  }

 private:
  Random seeds_{0};
  const std::atomic<bool>* stop_ = nullptr;
};

/// Everything that a rule needs, without a window around it.
struct Workbench {
  Workbench();
  HeadlessDesktop desktop;
  Global global;
  Main main{global, desktop};
};

/// Lays an empty board of a size out. Requires: 6 to 18.
void LayOutSize(Main& main, int size);
/// Lays a record out as a load does: size, finished board, directions and number of the trees, clues,
/// PuzzleRec. Requires: its size is 6 to 18.
void LayOutRecord(Main& main, const PackRecord& record);

}  // namespace bivouac
