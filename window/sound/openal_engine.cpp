// The sound engine on OpenAL: a module that the game opens while it runs.
#include <AL/al.h>
#include <AL/alc.h>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <memory>
#include <sndfile.h>
#include <vector>

#include "window/sound_engine.h"

namespace bivouac {
namespace {

constexpr int kSources = 16;              // Sounds heard at the same time.
constexpr sf_count_t kLongest = 1 << 24;  // Samples; a longer file is no short sound.

struct Wave {
  std::vector<short> Samples;
  int Channels = 0;
  int Rate = 0;
};

/// Empty if the file cannot be read, or is no sound of one or two channels.
Wave ReadWave(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) return {};
  Wave wave{.Samples = {}, .Channels = info.channels, .Rate = info.samplerate};
  if ((info.channels == 1 || info.channels == 2) && info.frames > 0 &&
      info.frames <= kLongest / info.channels && info.samplerate > 0) {
    wave.Samples.resize(static_cast<std::size_t>(info.frames * info.channels));
    const sf_count_t frames = sf_readf_short(file, wave.Samples.data(), info.frames);
    wave.Samples.resize(static_cast<std::size_t>(std::max<sf_count_t>(frames, 0) * info.channels));
  }
  sf_close(file);
  return wave;
}

/// Its device is open as long as it lives. The context, which takes megabytes and a thread that mixes, waits
/// for the first sound.
class OpenAlEngine final : public SoundEngine {
 public:
  explicit OpenAlEngine(ALCdevice* device) : device_(device) {}

  ~OpenAlEngine() override {
    if (context_ != nullptr) {
      alDeleteSources(kSources, sources_.data());
      for (const auto& [path, buffer] : buffers_) {
        if (buffer != 0) alDeleteBuffers(1, &buffer);
      }
      alcMakeContextCurrent(nullptr);
      alcDestroyContext(context_);
    }
    alcCloseDevice(device_);
  }

  void Play(const std::string& path) override {
    if (!Wake()) return;
    const ALuint buffer = BufferOf(path);
    if (buffer == 0) return;
    const ALuint source = FreeSource();
    alSourceStop(source);
    alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));
    alSourcePlay(source);
  }

  bool Playing() override {
    return context_ != nullptr && std::any_of(sources_.begin(), sources_.end(), IsPlaying);
  }

  void Rest() override {
    if (pause_ != nullptr) pause_(device_);
  }

 private:
  /// Makes the device mix. Returns whether it does.
  bool Wake() {
    if (context_ == nullptr && !failed_) failed_ = !MakeContext();
    if (context_ != nullptr && resume_ != nullptr) resume_(device_);
    return context_ != nullptr;
  }

  bool MakeContext() {
    ALCcontext* context = alcCreateContext(device_, nullptr);
    if (context == nullptr) return false;
    alcMakeContextCurrent(context);
    alGetError();
    alGenSources(kSources, sources_.data());
    if (alGetError() != AL_NO_ERROR) {
      alcMakeContextCurrent(nullptr);
      alcDestroyContext(context);
      return false;
    }
    context_ = context;
    // The writer of wave files loses the head of its file over a pause.
    const std::string name = alcGetString(device_, ALC_ALL_DEVICES_SPECIFIER);
    const bool pauses = alcIsExtensionPresent(device_, "ALC_SOFT_pause_device") == ALC_TRUE;
    if (pauses && name != "Wave File Writer") {
      pause_ = reinterpret_cast<void (*)(ALCdevice*)>(alcGetProcAddress(device_, "alcDevicePauseSOFT"));
      resume_ = reinterpret_cast<void (*)(ALCdevice*)>(alcGetProcAddress(device_, "alcDeviceResumeSOFT"));
    }
    return true;
  }

  /// The samples of a file, read when they are first wanted; 0 if they cannot be read. Requires: awake.
  ALuint BufferOf(const std::string& path) {
    const auto known = buffers_.find(path);
    if (known != buffers_.end()) return known->second;
    ALuint& buffer = buffers_[path];
    const Wave wave = ReadWave(path);
    if (wave.Samples.empty()) return 0;
    alGetError();
    alGenBuffers(1, &buffer);
    alBufferData(buffer, wave.Channels == 1 ? AL_FORMAT_MONO16 : AL_FORMAT_STEREO16, wave.Samples.data(),
                 static_cast<ALsizei>(wave.Samples.size() * sizeof(short)), wave.Rate);
    if (alGetError() == AL_NO_ERROR) return buffer;
    alDeleteBuffers(1, &buffer);
    buffer = 0;
    return 0;
  }

  static bool IsPlaying(ALuint source) {
    ALint state = AL_STOPPED;
    alGetSourcei(source, AL_SOURCE_STATE, &state);
    return state == AL_PLAYING;
  }

  /// One that is silent; if all sound, each in turn.
  ALuint FreeSource() {
    const auto silent = std::find_if_not(sources_.begin(), sources_.end(), IsPlaying);
    if (silent != sources_.end()) return *silent;
    nextSource_ = (nextSource_ + 1) % sources_.size();
    return sources_[nextSource_];
  }

  ALCdevice* device_;
  ALCcontext* context_ = nullptr;
  bool failed_ = false;  // No context can be had.
  std::array<ALuint, kSources> sources_{};
  std::size_t nextSource_ = 0;
  std::map<std::string, ALuint> buffers_;  // By path; 0 for one that cannot be read.
  void (*pause_)(ALCdevice*) = nullptr;
  void (*resume_)(ALCdevice*) = nullptr;
};

}  // namespace
}  // namespace bivouac

extern "C" __attribute__((visibility("default"))) bivouac::SoundEngine* bivouac_open_sound_engine() {
  // A machine without sound is nothing to complain about on the terminal.
  setenv("ALSOFT_LOGLEVEL", "0", 0);
  ALCdevice* device = alcOpenDevice(nullptr);
  return device == nullptr ? nullptr : std::make_unique<bivouac::OpenAlEngine>(device).release();
}
