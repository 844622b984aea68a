#include "page/page_desktop.h"

#include <array>
#include <ctime>
#include <fcntl.h>
#include <map>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

#include "game/controls.h"
#include "page/page.h"

namespace bivouac {
namespace {

// Folders of the platform's memory; files.js fills them.
constexpr const char* kProgramFolder = "/program";
constexpr const char* kDataFolder = "/data";
constexpr const char* kSettings = "/data/settings";

constexpr auto kBetweenEvents = std::chrono::milliseconds(8);
constexpr std::array<const char*, 5> kSymbols = {"", "information", "question", "warning", "error"};

/// The buttons of a box. Escape presses the last.
const char* ButtonsOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::Ok:
      return "OK";
    case BoxButtons::OkCancel:
      return "OK Cancel";
    case BoxButtons::YesNo:
      return "Yes No";
  }
  return "OK";
}

BoxAnswer AnswerOf(const std::string& button) {
  if (button == "Yes") return BoxAnswer::Yes;
  if (button == "No") return BoxAnswer::No;
  return button == "Cancel" ? BoxAnswer::Cancel : BoxAnswer::Ok;
}

using Settings = std::map<std::string, std::string>;

std::string SettingName(std::string_view section, std::string_view key) {
  return std::string(section) + "/" + std::string(key);
}

/// The file of settings, held for one turn.
class SettingsTurn {
 public:
  explicit SettingsTurn(int lock) : descriptor_(open(kSettings, O_RDWR | O_CREAT, 0666)) {
    // Where another tab does not end its turn, what is known here has to do.
    locked_ = flock(descriptor_, lock) == 0;
  }
  ~SettingsTurn() {
    if (locked_) flock(descriptor_, LOCK_UN);
    close(descriptor_);
  }
  SettingsTurn(const SettingsTurn&) = delete;
  SettingsTurn& operator=(const SettingsTurn&) = delete;

  Settings Read() const {
    std::string text;
    std::array<char, 4096> block;
    for (ssize_t count; (count = read(descriptor_, block.data(), block.size())) > 0;)
      text.append(block.data(), static_cast<std::size_t>(count));
    Settings settings;
    for (std::size_t at = 0, end; (end = text.find('\n', at)) != text.npos; at = end + 1) {
      const std::size_t sign = text.find('=', at);
      if (sign < end) settings[text.substr(at, sign - at)] = text.substr(sign + 1, end - sign - 1);
    }
    return settings;
  }
  bool Write(const Settings& settings) const {
    std::string text;
    for (const auto& [name, value] : settings) text += name + "=" + value + "\n";
    return ftruncate(descriptor_, 0) == 0 &&
           pwrite(descriptor_, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()) &&
           fsync(descriptor_) == 0;
  }

 private:
  int descriptor_;
  bool locked_ = false;
};

}  // namespace

BoxAnswer ShowMessageBox(const MessageBox& box) {
  return AnswerOf(AskPage(Message()
                              .Add("ask", "box")
                              .Add("title", box.Title)
                              .Add("text", box.Text)
                              .Add("symbol", kSymbols[static_cast<std::size_t>(box.Symbol)])
                              .Add("buttons", ButtonsOf(box.Buttons))
                              .Add("enter", box.Buttons == BoxButtons::OkCancel ? "Cancel" : "")
                              .Text()));
}

void PageDesktop::Attach(EventRoad& road, FormNamen& form) {
  road_ = &road;
  form_ = &form;
}

BoxAnswer PageDesktop::Show(const MessageBox& box) {
  road_->ThrowIfEnded();
  road_->Draw();
  const EventRoad::Modal modal(*road_);
  const BoxAnswer answer = ShowMessageBox(box);
  road_->ThrowIfEnded();
  return answer;
}

std::string PageDesktop::Show(const InputBox& box) {
  return Ask(Message()
                 .Add("ask", "input")
                 .Add("title", box.Title)
                 .Add("text", box.Prompt)
                 .Add("value", box.Default)
                 .Text());
}

void PageDesktop::ShowPlayerDialog() {
  form_->Visible = true;
  Form_Activate(*form_);
  Ask(Message().Add("ask", "players").Text());
  form_->Visible = false;
}

std::string PageDesktop::Ask(const std::string& message) {
  road_->ThrowIfEnded();
  const EventRoad::Modal modal(*road_);
  road_->Draw();
  std::string answer = AskPage(message);
  road_->ThrowIfEnded();
  return answer;
}

void PageDesktop::Beep() {
  TellPage(Message().Add("tell", "beep").Text());
}

void PageDesktop::Yield() {
  if (std::chrono::steady_clock::now() - lastEvents_ < kBetweenEvents) return;
  road_->ThrowIfEnded();
  road_->Draw();
  AskPage(Message().Add("ask", "yield").Text());
  lastEvents_ = std::chrono::steady_clock::now();
  road_->ThrowIfEnded();
}

std::string PageDesktop::TimeOfDay() {
  const std::time_t now = std::time(nullptr);
  std::array<char, 16> text;
  return {text.data(), std::strftime(text.data(), text.size(), "%H:%M:%S", std::localtime(&now))};
}

std::uint64_t PageDesktop::RandomSeed() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto seed =
      static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
  lastSeed_ = seed == lastSeed_ ? seed + 1 : seed;
  return lastSeed_;
}

std::string PageDesktop::GetSetting(std::string_view section, std::string_view key,
                                    std::string_view fallback) {
  const Settings settings = SettingsTurn(LOCK_SH).Read();
  const auto found = settings.find(SettingName(section, key));
  return found == settings.end() ? std::string(fallback) : found->second;
}

bool PageDesktop::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
  const SettingsTurn turn(LOCK_EX);
  Settings settings = turn.Read();
  settings[SettingName(section, key)] = value;
  return turn.Write(settings);
}

std::string PageDesktop::SettingsFile() {
  return "the browser's database of this page";
}

std::string PageDesktop::ProgramFolder() {
  return kProgramFolder;
}

FolderAnswer PageDesktop::SpecialFolder(int number) {
  if (number != kLocalDataFolder) return {1, ""};
  return {0, kDataFolder};
}

ScreenSize PageDesktop::Screen() {
  return {kWindowWidth, kWindowHeight};
}

int PageDesktop::LoadSound(const std::string& path) {
  sounds_.push_back(path.substr(path.rfind('/') + 1));
  return static_cast<int>(sounds_.size()) - 1;
}

void PageDesktop::PlaySound(int id) {
  if (id < 0 || static_cast<std::size_t>(id) >= sounds_.size()) return;
  TellPage(Message().Add("tell", "sound").Add("name", sounds_[static_cast<std::size_t>(id)]).Text());
}

ProgramAnswer PageDesktop::FindExecutable(const std::string&, const std::string&) {
  return {kFirstGoodCode, "browser"};
}

int PageDesktop::ShellExecute(std::string_view, const std::string&, const std::string& parameters,
                              const std::string&, int) {
  TellPage(Message().Add("tell", "open").Add("address", parameters).Text());
  return kFirstGoodCode;
}

}  // namespace bivouac
