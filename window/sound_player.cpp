#include "window/sound_player.h"

#include <QFile>
#include <dlfcn.h>

#include "window/own_files.h"

namespace bivouac {
namespace {

/// Null if the module or one of its libraries is missing, or there is no device to play on.
std::unique_ptr<SoundEngine> OpenModule(const std::string& path) {
  // Never closed: the libraries of sound leave threads and handlers behind.
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (module == nullptr) return nullptr;
  const auto open = reinterpret_cast<OpenSoundEngine*>(dlsym(module, kOpenSoundEngine));
  return std::unique_ptr<SoundEngine>(open == nullptr ? nullptr : open());
}

}  // namespace

SoundPlayer::SoundPlayer() : SoundPlayer(OwnModule("bivouac-sound.so"), OwnModule("bivouac-sound-check")) {}

SoundPlayer::SoundPlayer(std::string module, std::string check)
    : module_(std::move(module)),
      check_(std::move(check)),
      ready_(QFile::exists(QFile::decodeName(module_.c_str()))) {}

SoundPlayer::~SoundPlayer() {
  checking_.disconnect();
  checking_.kill();
  checking_.waitForFinished();
}

int SoundPlayer::Load(const std::string& path) {
  if (!ready_ || !QFile::exists(QFile::decodeName(path.c_str()))) return -1;
  sounds_.push_back(path);
  return static_cast<int>(sounds_.size()) - 1;
}

void SoundPlayer::Play(int id) {
  if (id < 0 || static_cast<std::size_t>(id) >= sounds_.size()) return;
  Open();
  if (SoundEngine* engine = Engine()) engine->Play(sounds_[static_cast<std::size_t>(id)]);
}

bool SoundPlayer::Playing() {
  SoundEngine* engine = Engine();
  return engine != nullptr && engine->Playing();
}

void SoundPlayer::Rest() {
  if (SoundEngine* engine = Engine()) engine->Rest();
}

void SoundPlayer::Check(std::function<void()> lost) {
  if (!ready_) return;
  const auto answer = [this, lost = std::move(lost)](bool found) {
    if (found || !ready_) return;
    ready_ = false;
    lost();
  };
  QObject::connect(
      &checking_, &QProcess::finished, &checking_,
      [answer](int status, QProcess::ExitStatus how) { answer(how == QProcess::NormalExit && status == 0); });
  QObject::connect(&checking_, &QProcess::errorOccurred, &checking_, [answer](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) answer(false);
  });
  checking_.setStandardOutputFile(QProcess::nullDevice());
  checking_.setStandardErrorFile(QProcess::nullDevice());
  checking_.start(QFile::decodeName(check_.c_str()), {QFile::decodeName(module_.c_str())});
}

void SoundPlayer::Open() {
  if (ready_ && engine_ == nullptr && !opening_.valid())
    opening_ = std::async(std::launch::async, OpenModule, module_);
}

/// Waits for an engine that is being opened; null where there is none.
SoundEngine* SoundPlayer::Engine() {
  if (opening_.valid()) {
    engine_ = opening_.get();
    if (engine_ == nullptr) ready_ = false;
  }
  return engine_.get();
}

}  // namespace bivouac
