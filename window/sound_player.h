// Plays wave files through OpenAL.
#pragma once

#include <future>
#include <memory>
#include <string>
#include <vector>

namespace bivouac {

/// Opening a sound device can take longer than a window needs to come up: it begins in the background when
/// the player is made.
class SoundPlayer {
 public:
  SoundPlayer();
  ~SoundPlayer();
  SoundPlayer(const SoundPlayer&) = delete;
  SoundPlayer& operator=(const SoundPlayer&) = delete;

  /// True if there is a device to play on. The first call waits until that is known.
  bool Ready();
  /// Returns the id of the sound, negative if the file cannot be read.
  int Load(const std::string& path);
  /// Plays the sound beside those that still sound, and does not wait. An unknown id plays nothing.
  void Play(int id);
  /// True while a sound is heard.
  bool Playing();
  /// Stops the work of the device until the next Play.
  void Rest();

 private:
  struct Device;

  std::future<std::unique_ptr<Device>> opening_;
  std::unique_ptr<Device> device_;
};

}  // namespace bivouac
