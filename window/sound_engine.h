// What the game asks of a sound engine. The engine and the libraries that it needs are a module of their own,
// which the game opens while it runs: without it the game is silent.
#pragma once

#include <string>

namespace bivouac {

/// One thread at a time.
class SoundEngine {
 public:
  SoundEngine() = default;
  virtual ~SoundEngine() = default;
  SoundEngine(const SoundEngine&) = delete;
  SoundEngine& operator=(const SoundEngine&) = delete;

  /// Plays a file beside those that still sound, and does not wait. One that cannot be read is silent.
  virtual void Play(const std::string& path) = 0;
  /// True while a sound is heard.
  virtual bool Playing() = 0;
  /// Stops the work of the device until the next Play.
  virtual void Rest() = 0;
};

/// The one function of the module: makes an engine, which the caller deletes; null if there is no device to
/// play on.
using OpenSoundEngine = SoundEngine*();
inline constexpr const char* kOpenSoundEngine = "bivouac_open_sound_engine";

}  // namespace bivouac
