#include "window/qt_desktop.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QTime>

#include "window/boxes.h"
#include "window/own_files.h"

namespace bivouac {
namespace {

constexpr int kFolderNotFound = 1;
constexpr int kNotFoundCode = 2;
constexpr int kNotStartedCode = 31;

constexpr auto kBetweenEvents = std::chrono::milliseconds(8);
constexpr int kSoundRestAfter = 3000;  // Milliseconds.

QString SettingName(std::string_view section, std::string_view key) {
  return QString::fromUtf8(section) + QLatin1Char('/') + QString::fromUtf8(key);
}

std::string PathText(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

}  // namespace

QtDesktop::QtDesktop(SoundPlayer& sound)
    : sound_(sound), settings_(QSettings::NativeFormat, QSettings::UserScope, "Bivouac", "Bivouac") {
  settings_.setFallbacksEnabled(false);
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
  const QVariant value = settings_.value(SettingName(section, key));
  if (!value.isValid()) return std::string(fallback);
  // A text with commas that was written by hand is read as a list.
  return value.toStringList().join(QLatin1String(", ")).toStdString();
}

bool QtDesktop::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
  settings_.setValue(SettingName(section, key), QString::fromUtf8(value));
  settings_.sync();
  return settings_.status() != QSettings::AccessError;
}

std::string QtDesktop::SettingsFile() {
  return PathText(settings_.fileName());
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
  const bool started = QProcess::startDetached(QFile::decodeName(QByteArray::fromStdString(program)),
                                               {QString::fromStdString(parameters)});
  return started ? kFirstGoodCode : kNotStartedCode;
}

}  // namespace bivouac
