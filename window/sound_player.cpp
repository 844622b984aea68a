#include "window/sound_player.h"

#include <AL/al.h>
#include <AL/alc.h>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <sndfile.h>

namespace bivouac {
namespace {

constexpr int kSources = 16;              // Sounds heard at the same time.
constexpr sf_count_t kLongest = 1 << 24;  // Samples; a longer file is no short sound.

struct Wave {
  std::vector<short> Samples;
  int Channels = 0;
  int Rate = 0;
};

/// Opens a file of sound of one or two channels; null if it is none.
SNDFILE* OpenWave(const std::string& path, SF_INFO& info) {
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  const bool known = file != nullptr && (info.channels == 1 || info.channels == 2) && info.frames > 0 &&
                     info.frames <= kLongest / info.channels && info.samplerate > 0;
  if (known) return file;
  if (file != nullptr) sf_close(file);
  return nullptr;
}

/// Empty if the file cannot be read.
Wave ReadWave(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = OpenWave(path, info);
  if (file == nullptr) return {};
  Wave wave{.Samples = std::vector<short>(static_cast<std::size_t>(info.frames * info.channels)),
            .Channels = info.channels,
            .Rate = info.samplerate};
  const sf_count_t frames = sf_readf_short(file, wave.Samples.data(), info.frames);
  wave.Samples.resize(static_cast<std::size_t>(std::max<sf_count_t>(frames, 0) * info.channels));
  sf_close(file);
  return wave;
}

}  // namespace

/// A device is opened at once, so that it is known whether there is one. Its context, which takes megabytes
/// and a thread that mixes, waits for the first sound: a run begins silent.
struct SoundPlayer::Device {
  struct Sound {
    std::string Path;
    ALuint Buffer = 0;  ///< 0 until it is first played.
  };

  ALCdevice* Handle = nullptr;
  ALCcontext* Context = nullptr;
  bool Failed = false;  ///< No context can be had.
  std::array<ALuint, kSources> Sources{};
  std::size_t NextSource = 0;
  std::vector<Sound> Sounds;  ///< By id.
  void (*Pause)(ALCdevice*) = nullptr;
  void (*Resume)(ALCdevice*) = nullptr;

  Device() = default;
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  /// Null if no device can be had.
  static std::unique_ptr<Device> Open() {
    auto device = std::make_unique<Device>();
    device->Handle = alcOpenDevice(nullptr);
    if (device->Handle == nullptr) return nullptr;
    return device;
  }

  ~Device() {
    if (Context != nullptr) {
      alDeleteSources(kSources, Sources.data());
      for (const Sound& sound : Sounds) {
        if (sound.Buffer != 0) alDeleteBuffers(1, &sound.Buffer);
      }
      alcMakeContextCurrent(nullptr);
      alcDestroyContext(Context);
    }
    if (Handle != nullptr) alcCloseDevice(Handle);
  }

  /// Makes the device mix. Returns whether it does.
  bool Wake() {
    if (Context == nullptr && !Failed) Failed = !MakeContext();
    if (Context != nullptr && Resume != nullptr) Resume(Handle);
    return Context != nullptr;
  }

  bool MakeContext() {
    ALCcontext* context = alcCreateContext(Handle, nullptr);
    if (context == nullptr) return false;
    alcMakeContextCurrent(context);
    alGetError();
    alGenSources(kSources, Sources.data());
    if (alGetError() != AL_NO_ERROR) {
      alcMakeContextCurrent(nullptr);
      alcDestroyContext(context);
      return false;
    }
    Context = context;
    // The writer of wave files loses the head of its file over a pause.
    const std::string name = alcGetString(Handle, ALC_ALL_DEVICES_SPECIFIER);
    const bool pauses = alcIsExtensionPresent(Handle, "ALC_SOFT_pause_device") == ALC_TRUE;
    if (pauses && name != "Wave File Writer") {
      Pause = reinterpret_cast<void (*)(ALCdevice*)>(alcGetProcAddress(Handle, "alcDevicePauseSOFT"));
      Resume = reinterpret_cast<void (*)(ALCdevice*)>(alcGetProcAddress(Handle, "alcDeviceResumeSOFT"));
    }
    return true;
  }

  /// The samples of a sound, read when they are first wanted; 0 if they cannot be read any longer.
  /// Requires: awake.
  static ALuint BufferOf(Sound& sound) {
    if (sound.Buffer != 0) return sound.Buffer;
    const Wave wave = ReadWave(sound.Path);
    if (wave.Samples.empty()) return 0;
    alGetError();
    alGenBuffers(1, &sound.Buffer);
    alBufferData(sound.Buffer, wave.Channels == 1 ? AL_FORMAT_MONO16 : AL_FORMAT_STEREO16,
                 wave.Samples.data(), static_cast<ALsizei>(wave.Samples.size() * sizeof(short)), wave.Rate);
    if (alGetError() == AL_NO_ERROR) return sound.Buffer;
    alDeleteBuffers(1, &sound.Buffer);
    sound.Buffer = 0;
    return 0;
  }

  static bool IsPlaying(ALuint source) {
    ALint state = AL_STOPPED;
    alGetSourcei(source, AL_SOURCE_STATE, &state);
    return state == AL_PLAYING;
  }

  /// One that is silent; if all sound, each in turn.
  ALuint FreeSource() {
    const auto silent = std::find_if_not(Sources.begin(), Sources.end(), IsPlaying);
    if (silent != Sources.end()) return *silent;
    NextSource = (NextSource + 1) % Sources.size();
    return Sources[NextSource];
  }
};

SoundPlayer::SoundPlayer() {
  // A machine without sound is nothing to complain about on the terminal.
  setenv("ALSOFT_LOGLEVEL", "0", 0);
  opening_ = std::async(std::launch::async, Device::Open);
}

SoundPlayer::~SoundPlayer() {
  Ready();
}

bool SoundPlayer::Ready() {
  if (opening_.valid()) device_ = opening_.get();
  return device_ != nullptr;
}

int SoundPlayer::Load(const std::string& path) {
  if (!Ready()) return -1;
  SF_INFO info{};
  SNDFILE* file = OpenWave(path, info);
  if (file == nullptr) return -1;
  sf_close(file);
  device_->Sounds.push_back({.Path = path});
  return static_cast<int>(device_->Sounds.size()) - 1;
}

void SoundPlayer::Play(int id) {
  if (!Ready() || id < 0 || static_cast<std::size_t>(id) >= device_->Sounds.size() || !device_->Wake())
    return;
  const ALuint buffer = Device::BufferOf(device_->Sounds[static_cast<std::size_t>(id)]);
  if (buffer == 0) return;
  const ALuint source = device_->FreeSource();
  alSourceStop(source);
  alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));
  alSourcePlay(source);
}

bool SoundPlayer::Playing() {
  return Ready() && device_->Context != nullptr &&
         std::any_of(device_->Sources.begin(), device_->Sources.end(), Device::IsPlaying);
}

void SoundPlayer::Rest() {
  if (Ready() && device_->Pause != nullptr) device_->Pause(device_->Handle);
}

}  // namespace bivouac
