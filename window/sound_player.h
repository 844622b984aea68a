// Plays wave files through the sound engine, which is a module of its own.
#pragma once

#include <QProcess>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "window/sound_engine.h"

namespace bivouac {

/// A run begins silent, and what an engine brings (a dozen libraries, the sound server's client, a thread) is
/// a third of the game's time to start and a quarter of its memory. So the module is opened when sounds are
/// wanted. Whether a device is there is found out by a small process of its own, once the window is up.
class SoundPlayer {
 public:
  SoundPlayer();
  /// `module` and `check`: the files of the engine and of the program that tries it.
  SoundPlayer(std::string module, std::string check);
  ~SoundPlayer();
  SoundPlayer(const SoundPlayer&) = delete;
  SoundPlayer& operator=(const SoundPlayer&) = delete;

  /// True if there is an engine, as far as is known: the module is there, and nothing has failed yet.
  bool Ready() const { return ready_; }
  /// Returns the id of the sound, negative if there is no such file.
  int Load(const std::string& path);
  /// Plays the sound beside those that still sound, and does not wait for its end. An unknown id plays
  /// nothing.
  void Play(int id);
  /// True while a sound is heard.
  bool Playing();
  /// Stops the work of the device until the next Play.
  void Rest();

  /// Tries the engine elsewhere, and calls `lost` if it finds no device to play on. Returns at once.
  void Check(std::function<void()> lost);
  /// Begins to open the engine, so that the first Play need not wait.
  void Open();

 private:
  SoundEngine* Engine();

  std::string module_;
  std::string check_;
  bool ready_;
  std::vector<std::string> sounds_;  ///< Paths by id.
  std::future<std::unique_ptr<SoundEngine>> opening_;
  std::unique_ptr<SoundEngine> engine_;
  QProcess checking_;
};

}  // namespace bivouac
