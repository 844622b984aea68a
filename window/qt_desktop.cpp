#include "window/qt_desktop.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QTime>
#include <unistd.h>

#include "window/boxes.h"
#include "window/own_files.h"

namespace bivouac {
namespace {

constexpr int kFolderNotFound = 1;
constexpr int kNotFoundCode = 2;
constexpr int kNotStartedCode = 31;

constexpr auto kBetweenEvents = std::chrono::milliseconds(8);
constexpr int kSoundRestAfter = 3000;  // Milliseconds.
constexpr int kOpenerFailsWithin = 2000;

QString SettingName(std::string_view section, std::string_view key) {
  return QString::fromUtf8(section) + QLatin1Char('/') + QString::fromUtf8(key);
}

bool IsFileOrFree(const QString& path) {
  const QFileInfo info(path);
  return info.isFile() || !(info.exists() || info.isSymLink());
}

std::string PathText(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

/// Waits for another program's turn at the settings, and takes away the lock of one that was killed in it.
/// Returns false if the lock does not go.
bool FreeLock(const QString& path) {
  constexpr int kStale = 1000;  // Milliseconds; a turn takes a few.
  constexpr int kPatience = 1500;
  if (!QFileInfo::exists(path)) return true;
  QLockFile lock(path);
  lock.setStaleLockTime(kStale);
  return IsFileOrFree(path) && lock.tryLock(kPatience);
}

}  // namespace

QtDesktop::QtDesktop(SoundPlayer& sound) : sound_(sound) {
  // Their path, without a look at what stands there: a pipe would hold the program.
  const QSettings beside(QSettings::NativeFormat, QSettings::UserScope, "Bivouac", "None");
  settingsFile_ = QFileInfo(beside.fileName()).dir().filePath(QStringLiteral("Bivouac.conf"));
  if (IsFileOrFree(settingsFile_)) {
    settings_.emplace(QSettings::NativeFormat, QSettings::UserScope, "Bivouac", "Bivouac");
    settings_->setFallbacksEnabled(false);
  }
  soundRest_.setSingleShot(true);
  soundRest_.setInterval(kSoundRestAfter);
  QObject::connect(&soundRest_, &QTimer::timeout, [this] {
    if (sound_.Playing()) {
      soundRest_.start();
    } else {
      sound_.Rest();
    }
  });
}

void QtDesktop::Attach(EventRoad& road, MainWindow& window, Players players) {
  road_ = &road;
  window_ = &window;
  players_ = std::move(players);
}

QWidget* QtDesktop::BoxParent() const {
  if (shownPlayers_ != nullptr && shownPlayers_->isVisible()) return shownPlayers_;
  return window_ != nullptr && window_->isVisible() ? window_ : nullptr;
}

BoxAnswer QtDesktop::Show(const MessageBox& box) {
  road_->ThrowIfEnded();
  road_->Draw();
  const EventRoad::Modal modal(*road_);
  const BoxAnswer answer = ShowMessageBox(BoxParent(), box);
  road_->ThrowIfEnded();
  return answer;
}

std::string QtDesktop::Show(const InputBox& box) {
  road_->ThrowIfEnded();
  road_->Draw();
  const EventRoad::Modal modal(*road_);
  std::string answer = ShowInputBox(BoxParent(), box);
  road_->ThrowIfEnded();
  return answer;
}

void QtDesktop::ShowPlayerDialog() {
  road_->ThrowIfEnded();
  road_->Draw();
  const EventRoad::Modal modal(*road_);
  shownPlayers_ = &players_();
  shownPlayers_->ShowModal(window_->BoxUnit());
  road_->ThrowIfEnded();
}

void QtDesktop::Beep() {
  QApplication::beep();
}

void QtDesktop::Yield() {
  if (std::chrono::steady_clock::now() - lastEvents_ < kBetweenEvents) return;
  LetEventsRun();
}

void QtDesktop::LetEventsRun() {
  road_->ThrowIfEnded();
  road_->Draw();
  QCoreApplication::processEvents();
  lastEvents_ = std::chrono::steady_clock::now();
  road_->ThrowIfEnded();
}

std::string QtDesktop::TimeOfDay() {
  return QTime::currentTime().toString(QStringLiteral("HH:mm:ss")).toStdString();
}

std::uint64_t QtDesktop::RandomSeed() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto seed =
      static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
  lastSeed_ = seed == lastSeed_ ? seed + 1 : seed;
  return lastSeed_;
}

std::string QtDesktop::GetSetting(std::string_view section, std::string_view key, std::string_view fallback) {
  const QString name = SettingName(section, key);
  if (const auto unsaved = unsaved_.find(name); unsaved != unsaved_.end())
    return unsaved->second.toStdString();
  if (!SettingsAreReachable()) return std::string(fallback);
  // Another game may have written since.
  if (unsaved_.empty()) settings_->sync();
  const QVariant value = settings_->value(name);
  if (!value.isValid()) return std::string(fallback);
  // A text with commas that was written by hand is read as a list.
  return value.toStringList().join(QLatin1String(", ")).toStdString();
}

bool QtDesktop::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
  unsaved_[SettingName(section, key)] = QString::fromUtf8(value);
  if (!SettingsAreReachable() || !FreeLock(settingsFile_ + QStringLiteral(".lock"))) return false;
  for (const auto& [name, text] : unsaved_) settings_->setValue(name, text);
  settings_->sync();
  if (settings_->status() == QSettings::AccessError) return false;
  unsaved_.clear();
  return true;
}

bool QtDesktop::SettingsAreReachable() {
  return settings_ && IsFileOrFree(settingsFile_);
}

std::string QtDesktop::SettingsFile() {
  return PathText(settingsFile_);
}

std::string QtDesktop::ProgramFolder() {
  return OwnFolder();
}

FolderAnswer QtDesktop::SpecialFolder(int number) {
  if (number != kLocalDataFolder) return {kFolderNotFound, ""};
  const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  if (path.isEmpty()) return {kFolderNotFound, ""};
  QDir().mkpath(path);
  return {0, PathText(path)};
}

ScreenSize QtDesktop::Screen() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {kWindowWidth, kWindowHeight};
  return {screen->size().width() * kTwipsPerPixel, screen->size().height() * kTwipsPerPixel};
}

void QtDesktop::PlaySound(int id) {
  sound_.Play(id);
  soundRest_.start();
}

ProgramAnswer QtDesktop::FindExecutable(const std::string&, const std::string&) {
  const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
  if (program.isEmpty()) return {kNotFoundCode, ""};
  return {kFirstGoodCode, PathText(program)};
}

int QtDesktop::ShellExecute(std::string_view, const std::string& program, const std::string& parameters,
                            const std::string&, int) {
  auto* opener = new QProcess;  // Not ended with the game: it may be the viewer itself.
  opener->setStandardInputFile(QProcess::nullDevice());
  opener->setProcessChannelMode(QProcess::ForwardedChannels);
  opener->setChildProcessModifier([] { setsid(); });
  opener->start(QFile::decodeName(QByteArray::fromStdString(program)), {QString::fromStdString(parameters)});
  if (opener->waitForStarted()) WaitForEnd(*opener);
  if (opener->state() == QProcess::Running) {
    QObject::connect(opener, &QProcess::finished, opener, &QObject::deleteLater);
    road_->ThrowIfEnded();
    return kFirstGoodCode;
  }
  const bool opened = opener->error() == QProcess::UnknownError && opener->exitCode() == 0;
  delete opener;
  road_->ThrowIfEnded();
  return opened ? kFirstGoodCode : kNotStartedCode;
}

/// Lets events run until the opener has ended, or for as long as one takes to find that nothing opens. As
/// under a box, presses do not count.
void QtDesktop::WaitForEnd(QProcess& opener) {
  road_->Draw();
  const EventRoad::Modal modal(*road_);
  QEventLoop loop;
  QObject::connect(&opener, &QProcess::finished, &loop, &QEventLoop::quit);
  QTimer::singleShot(kOpenerFailsWithin, &loop, &QEventLoop::quit);
  if (opener.state() == QProcess::Running) loop.exec();
}

}  // namespace bivouac
