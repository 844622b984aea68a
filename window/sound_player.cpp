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

/// Empty if the file is no sound of one or two channels.
Wave ReadWave(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) return {};
  Wave wave;
  const bool known = (info.channels == 1 || info.channels == 2) && info.frames > 0 &&
                     info.frames <= kLongest / info.channels && info.samplerate > 0;
  if (known) {
    wave.Channels = info.channels;
    wave.Rate = info.samplerate;
    wave.Samples.resize(static_cast<std::size_t>(info.frames * info.channels));
    const sf_count_t frames = sf_readf_short(file, wave.Samples.data(), info.frames);
    wave.Samples.resize(static_cast<std::size_t>(std::max<sf_count_t>(frames, 0) * info.channels));
  }
  sf_close(file);
  return wave;
}

}  // namespace

struct SoundPlayer::Device {
  ALCdevice* Handle = nullptr;
  ALCcontext* Context = nullptr;
  std::array<ALuint, kSources> Sources{};
  std::size_t NextSource = 0;
  std::vector<ALuint> Buffers;  // By id.
  void (*Pause)(ALCdevice*) = nullptr;
  void (*Resume)(ALCdevice*) = nullptr;

  Device() = default;
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  /// Null if no device or no context can be had.
  static std::unique_ptr<Device> Open() {
    auto device = std::make_unique<Device>();
    device->Handle = alcOpenDevice(nullptr);
    if (device->Handle == nullptr) return nullptr;
    device->Context = alcCreateContext(device->Handle, nullptr);
    if (device->Context == nullptr || alcMakeContextCurrent(device->Context) == ALC_FALSE) return nullptr;
    alGetError();
    alGenSources(kSources, device->Sources.data());
    if (alGetError() != AL_NO_ERROR) {
      device->Sources = {};
      return nullptr;
    }
    // The writer of wave files loses the head of its file over a pause.
    const std::string name = alcGetString(device->Handle, ALC_ALL_DEVICES_SPECIFIER);
    const bool pauses = alcIsExtensionPresent(device->Handle, "ALC_SOFT_pause_device") == ALC_TRUE;
    if (pauses && name != "Wave File Writer") {
      device->Pause =
          reinterpret_cast<void (*)(ALCdevice*)>(alcGetProcAddress(device->Handle, "alcDevicePauseSOFT"));
      device->Resume =
          reinterpret_cast<void (*)(ALCdevice*)>(alcGetProcAddress(device->Handle, "alcDeviceResumeSOFT"));
    }
    device->Rest();
    return device;
  }

  ~Device() {
    if (Context != nullptr) {
      alcMakeContextCurrent(Context);
      if (Sources[0] != 0) alDeleteSources(kSources, Sources.data());
      if (!Buffers.empty()) alDeleteBuffers(static_cast<ALsizei>(Buffers.size()), Buffers.data());
      alcMakeContextCurrent(nullptr);
      alcDestroyContext(Context);
    }
    if (Handle != nullptr) alcCloseDevice(Handle);
  }

  static bool IsPlaying(ALuint source) {
    ALint state = AL_STOPPED;
    alGetSourcei(source, AL_SOURCE_STATE, &state);
    return state == AL_PLAYING;
  }

  /// One that is silent; if all sound, the one that began first.
  ALuint FreeSource() {
    const auto silent = std::find_if_not(Sources.begin(), Sources.end(), IsPlaying);
    if (silent != Sources.end()) return *silent;
    NextSource = (NextSource + 1) % Sources.size();
    return Sources[NextSource];
  }

  void Rest() const {
    if (Pause != nullptr) Pause(Handle);
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
  const Wave wave = ReadWave(path);
  if (wave.Samples.empty()) return -1;
  ALuint buffer = 0;
  alGetError();
  alGenBuffers(1, &buffer);
  alBufferData(buffer, wave.Channels == 1 ? AL_FORMAT_MONO16 : AL_FORMAT_STEREO16, wave.Samples.data(),
               static_cast<ALsizei>(wave.Samples.size() * sizeof(short)), wave.Rate);
  if (alGetError() != AL_NO_ERROR) return -1;
  device_->Buffers.push_back(buffer);
  return static_cast<int>(device_->Buffers.size()) - 1;
}

void SoundPlayer::Play(int id) {
  if (!Ready() || id < 0 || static_cast<std::size_t>(id) >= device_->Buffers.size()) return;
  if (device_->Resume != nullptr) device_->Resume(device_->Handle);
  const ALuint source = device_->FreeSource();
  alSourceStop(source);
  alSourcei(source, AL_BUFFER, static_cast<ALint>(device_->Buffers[static_cast<std::size_t>(id)]));
  alSourcePlay(source);
}

bool SoundPlayer::Playing() {
  return Ready() && std::any_of(device_->Sources.begin(), device_->Sources.end(), Device::IsPlaying);
}

void SoundPlayer::Rest() {
  if (Ready()) device_->Rest();
}

}  // namespace bivouac
