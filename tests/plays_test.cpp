// Whole games without a window, played from scripts: after each line that begins with "> " stands what came
// of it, every value that a player or a file could show the change of. BIVOUAC_KEEP_LOOKS=1 writes the files
// of tests/data/plays anew, and `git diff` shows what became different.
#include <algorithm>
#include <cstdarg>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <sys/syscall.h>
#include <unistd.h>

#include "events/presses.h"
#include "game/blinking.h"
#include "game/clock.h"
#include "game/play.h"
#include "game/spoken.h"
#include "game/text.h"
#include "game/web_link.h"
#include "storage/kept_game.h"
#include "storage/pack_files.h"
#include "storage/puzzle_list.h"
#include "storage/record_file.h"
#include "storage/start_up.h"
#include "tests/support/installation.h"
#include "tests/support/looks.h"
#include "tests/support/picture.h"
#include "workbench/position.h"

namespace bivouac {
namespace {

using namespace std::string_view_literals;

// What changes files, and who locks them: the calls of the platform as this program's own, which go straight
// to the kernel and are noted while a play goes on.

std::string called;
bool noting = false;
std::map<int, short> locks;  // By descriptor.

#ifndef __EMSCRIPTEN__  // Which has no kernel: nothing is noted there.
void Note(const char* what, std::string path) {
  noting = false;
  path = std::filesystem::path(path).filename().string();
  // With or without a hidden name, as the file system has it.
  if (path.starts_with(".bivouac-") || path.ends_with(" (deleted)")) path = "a new file";
  if (path.starts_with("bivouac-test-")) path = "~";
  const bool isHiddenName = path == "a new file" && (what == "name"sv || what == "unlink"sv);
  const std::string call = std::string(what) + ' ' + path;
  if (!isHiddenName && !called.ends_with(call)) called += (called.empty() ? "" : ", ") + call;
  noting = true;
}

void Note(const char* what, int descriptor) {
  if (noting)
    Note(what, std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor)).string());
}

void NoteLock(int descriptor, short kind) {
  const short before = std::exchange(locks[descriptor], kind);
  if (kind == F_WRLCK) Note("lock", descriptor);
  if (kind == F_UNLCK && before == F_WRLCK) Note("free", descriptor);
}

}  // namespace
}  // namespace bivouac

extern "C" {

int fcntl(int descriptor, int command, ...) {
  va_list rest;
  va_start(rest, command);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  const auto result = static_cast<int>(syscall(SYS_fcntl, descriptor, command, argument));
  if (bivouac::noting && command == F_OFD_SETLK && result == 0)
    bivouac::NoteLock(descriptor, static_cast<struct flock*>(argument)->l_type);
  return result;
}

ssize_t pread(int descriptor, void* bytes, std::size_t count, off_t offset) {
  const auto lock = bivouac::locks.find(descriptor);
  if (lock != bivouac::locks.end() && lock->second == F_WRLCK) bivouac::Note("read", descriptor);
  return syscall(SYS_pread64, descriptor, bytes, count, offset);
}

ssize_t pwrite(int descriptor, const void* bytes, std::size_t count, off_t offset) {
  bivouac::Note("write", descriptor);
  return syscall(SYS_pwrite64, descriptor, bytes, count, offset);
}

int fdatasync(int descriptor) {
  bivouac::Note("sync", descriptor);
  return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

int close(int descriptor) {
  bivouac::locks.erase(descriptor);
  return static_cast<int>(syscall(SYS_close, descriptor));
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  if (bivouac::noting) bivouac::Note("name", std::string(to));
  return static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}

int rename(const char* from, const char* to) noexcept {
  if (bivouac::noting) bivouac::Note("rename to", std::string(to));
  return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int unlink(const char* path) noexcept {
  if (bivouac::noting) bivouac::Note("unlink", std::string(path));
  return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}

}  // extern "C"

#else
}  // namespace
}  // namespace bivouac
#endif

namespace bivouac {
namespace {

namespace fs = std::filesystem;
using Values = std::vector<std::pair<std::string, std::string>>;

constexpr std::size_t kPackBytes = RecordFile<PackRecord>::kBytes;

template <class... Parts>
std::string Joined(const Parts&... parts) {
  std::ostringstream text;
  (text << ... << parts);
  return text.str();
}

std::string NumbersIn(const std::string& bytes) {
  std::string text;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
    text += Joined(IntegerAt(bytes, at), at % 8 == 6 ? "; " : " ");
  return text + (bytes.size() % 2 != 0 ? "and a byte" : "");
}

/// A pack by its records: a number of what never changes, level and size, best time and player.
std::string PackText(const std::string& bytes) {
  std::string text;
  for (std::size_t at = 0; at + kPackBytes <= bytes.size(); at += kPackBytes) {
    unsigned puzzle = 0;
    for (const char byte : bytes.substr(at, 1368)) puzzle = puzzle * 31 + static_cast<unsigned char>(byte);
    text += Joined('#', puzzle % 1000, ' ', NumbersIn(bytes.substr(at + 1368, 8)));
  }
  return bytes.size() % kPackBytes == 0 ? text : Joined(text, "and ", bytes.size() % kPackBytes, " bytes");
}

std::string LinesOf(std::string text) {
  std::replace(text.begin(), text.end(), '\n', '|');
  return text;
}

std::string ClueText(const FixedArray<Label, kMaxSize>& clues, int size) {
  std::string text;
  for (int i = 0; i <= size && i < kMaxSize; ++i) {
    const TextColour colour = clues[i].ForeColor;
    const char* const sign = colour == TextColour::Green ? "g" : colour == TextColour::Red ? "r" : "";
    if (clues[i].Visible) text += Joined(' ', clues[i].Caption, sign);
  }
  return text;
}

class Play {
 public:
  explicit Play(std::string script) : script_(std::move(script)) {
    ScriptedDesktop& scripted = installation_.desktop;
    scripted.AnswerBox = [this](const MessageBox& box) { return AnswerTo(box); };
    scripted.AnswerInput = [this](const InputBox& box) { return AnswerTo(box); };
    scripted.PlayerDialog = [this] { PlayInDialog(); };
    scripted.WhileYielding = [this] {
      if (yieldsToEnd_ > 0 && --yieldsToEnd_ == 0) desktop().End();
      if (yieldsToEscape_ > 0 && --yieldsToEscape_ == 0) PressEndMaking(Now());
      if (!later_.empty()) desktop().Now = std::exchange(later_, {});
      if (!std::exchange(watchedMaking_, true)) TellChanges();
    };
  }

  std::string Told() {
    std::istringstream lines(script_);
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("#")) told_ += line + '\n';
      if (!line.starts_with("> ")) continue;
      told_ += line + '\n';
      words_ = Split(line.substr(2), ' ');
      watchedMaking_ = false;
      noting = true;
      try {
        Do(Next(""));
      } catch (const RunTimeError& error) {
        Tell("error", Joined(static_cast<int>(error.Number()), ' ', error.what()));
      } catch (const ProgramEnd&) {
        Tell("the program", "ends");
      } catch (const std::exception& error) {
        ADD_FAILURE() << line << ": " << error.what();
      }
      noting = false;
      for (const auto& [descriptor, lock] : std::exchange(locks, {})) {
        if (lock != F_UNLCK) Tell("lock", "left behind");
      }
      TellChanges();
      if (!run_) continue;
      const std::string said = said_.WhatChanged(Now(), std::exchange(listener_, {}));
      if (!said.empty()) Tell("said", said);
    }
    return told_;
  }

 private:
  ScriptedDesktop& desktop() { return installation_.desktop; }

  std::string Next(const std::string& fallback) {
    if (words_.empty()) return fallback;
    std::string word = words_.front();
    words_.erase(words_.begin());
    std::replace(word.begin(), word.end(), '~', ' ');
    return word == "''" ? "" : word;
  }
  int NextNumber() { return std::stoi(Next("0")); }

  void Tell(const std::string& what, std::string text) {
    const std::string folder = installation_.folder / "";
    for (std::size_t at; (at = text.find(folder)) != std::string::npos;)
      text.replace(at, folder.size(), "~/");
    for (std::size_t at = 0; (at = text.find_first_of("\n\r", at)) != std::string::npos;)
      text.replace(at, 1, text[at] == '\n' ? "\\n" : "\\r");
    told_ += "  " + what + ": " + text + '\n';
  }

  std::string AnswerTo(const InputBox& box) {
    std::string answer = Next("");
    Tell("asked", Joined(box.Title, " | ", box.Prompt, " | ", box.Default, " -> ", answer));
    return answer;
  }

  BoxAnswer AnswerTo(const MessageBox& box) {
    TellChanges();
    static const char* const kSymbols[] = {"", "Information", "Question", "Warning", "Error"};
    static const std::map<std::string, BoxAnswer> answers = {
        {"yes", BoxAnswer::Yes}, {"no", BoxAnswer::No}, {"ok", BoxAnswer::Ok}, {"cancel", BoxAnswer::Cancel}};
    static const char* const kButtons[] = {"ok", "ok or cancel", "yes or no"};
    const std::string answer = box.Buttons == BoxButtons::Ok ? "ok" : Next("no answer");
    Tell("box", Joined(box.Title, " | ", box.Text, " | ", kSymbols[static_cast<int>(box.Symbol)], " | ",
                       kButtons[static_cast<int>(box.Buttons)], " -> ", answer));
    return answers.at(answer);
  }

  void PlayInDialog() {
    FormNamen& form = run_->form;
    form.Visible = true;
    Form_Activate(form);
    TellChanges();
    while (form.Visible && !words_.empty()) {
      DoInDialog(Next(""));
      TellChanges();
    }
  }

  void DoInDialog(const std::string& word) {
    FormNamen& form = run_->form;
    Tell("dialog", word);
    const std::map<std::string, std::pair<Button*, void (*)(FormNamen&)>> buttons = {
        {"new", {&form.KnopNieuweSpeler, KnopNieuweSpeler_Click}},
        {"edit", {&form.KnopWijzigen, KnopWijzigen_Click}},
        {"ok", {&form.KnopOK, KnopOK_Click}},
        {"free", {&form.CommandFree, CommandFree_Click}},
        {"cancel", {&form.KnopAnnuleren, KnopAnnuleren_Click}}};
    if (const auto found = buttons.find(word); found != buttons.end()) {
      if (found->second.first->Enabled) found->second.second(form);
    } else if (word == "select" || word == "double") {
      form.NaamLijst.ListIndex = NextNumber();
      (word == "select" ? NaamLijst_Click : NaamLijst_DblClick)(form);
    } else if (word.front() == '"') {  // Typed, and no key after it.
      form.NaamInvoerveld.Text = word.substr(1);
    } else {
      if (word != "escape")
        form.NaamInvoerveld.Text = word.substr(1);  // Typed after an apostrophe, and Enter.
      NaamInvoerveld_KeyPress(form, word == "escape" ? Key::Escape : Key::Enter);
    }
  }

  void Do(const std::string& word) {
    std::optional<FileSizeLimit> limit;
    if (full_ > 0) limit.emplace(static_cast<unsigned long>(std::exchange(full_, 0)));
    const auto& commands = Commands();
    const auto found = commands.find(word);
    if (found == commands.end()) throw std::logic_error("no command " + word);
    (this->*found->second)();
  }

  static const std::map<std::string, void (Play::*)()>& Commands() {
    static const std::map<std::string, void (Play::*)()> commands = {
        {"start", &Play::Start}, {"players", &Play::Players}, {"set", &Play::Set},      {"board", &Play::Lay},
        {"press", &Play::Press}, {"field", &Play::Fields},    {"solve", &Play::Solve},  {"tick", &Play::Tick},
        {"tell", &Play::Say},    {"write", &Play::Write},     {"file", &Play::DoToFile}};
    return commands;
  }

  Main& Now() { return run_->main; }
  std::string File() { return installation_.folder / Next(""); }

  void Start() {
    listener_ = {};
    said_ = {};
    desktop().Loaded.clear();
    run_.emplace(desktop());
    Form_Load(run_->main, run_->form);
  }

  void Players() { installation_.AddPlayers(std::exchange(words_, {})); }

  /// Something about the desktop or the game, or else a setting.
  void Set() {
    const std::string name = Next("");
    const std::string value = Next("");
    const int number = std::atoi(value.c_str());
    if (name == "now") desktop().Now = value;
    if (name == "engine") desktop().SoundEngine = number;
    if (name == "writable") desktop().SettingsWritable = value == "yes";
    if (name == "browser") desktop().Browser = {number, Next("")};
    if (name == "silent") desktop().SoundIds[installation_.InProgram(value)] = -1;
    if (name == "shell") desktop().ShellCode = number;
    if (name == "seed") desktop().Seed = static_cast<std::uint64_t>(number);
    if (name == "steps") Now().StepCount = number;
    if (name == "player") Now().global.CurrentPlayer = number;
    if (name == "end") yieldsToEnd_ = number;
    if (name == "escape") yieldsToEscape_ = number;
    if (name == "later") later_ = value;
    if (name == "full") full_ = number;
    const auto slash = name.find('/');
    if (slash != name.npos) desktop().Settings[{name.substr(0, slash), name.substr(slash + 1)}] = value;
  }

  /// A puzzle by its picture, with a slash between rows.
  void Lay() {
    std::string picture = Next("");
    std::replace(picture.begin(), picture.end(), '/', '\n');
    LayBoard(Now(), picture);
    StartPuzzle(Now());
  }

  void Press() {
    const std::string name = Next("");
    if (name == "lblHint") return PressHint(Now());
    if (name == "Picture1") return PressContinue(Now());
    if (name == "optSound") return PressSound(Now(), !Now().optSound.Checked);
    if (name == "Label2") return Label2_Click(Now());
    if (name == "close") return Form_QueryUnload(Now());
    if (name == "open") return PressOpen(Now(), NextNumber());
    if (name == "level") return PressNewOfLevel(Now());
    if (name == "goon") return PressGoOn(Now(), NextNumber());
    if (name == "back") return PressBackToStep(Now());
    if (name == "keep") return Tell("told", PressKeep(Now()).value_or("nothing"));
    if (name == "remember") return Tell("told", PressRemember(Now()).value_or("nothing"));
    if (name == "paste") return PressPaste(Now(), Rest());
    if (name == "list") return List();
    PressButton(Now(), ButtonOf(ControlNamed(name).ItsButton));
  }

  std::string Rest() {
    std::ostringstream text;
    while (!words_.empty()) text << Next("") << ' ';
    return text.str();
  }

  void List() {
    int number = 0;
    for (const ListedPuzzle& puzzle : ListPuzzles(Now())) {
      Tell("puzzle", Joined(++number, puzzle.Readable ? "" : " unreadable", ", ", puzzle.Trees, " trees, ",
                            puzzle.BestTime, " s by [", puzzle.BestBy, "], own ", puzzle.OwnTime, " s"));
    }
    Tell("list", SolvedText(Now(), ListPuzzles(Now())));
    for (const auto& [kept, game] : FindKeptGames(Now()))
      Tell("puzzle", Joined(kept, ' ', game ? KeptText(*game) : "damaged"));
  }

  void Field(int cell) {
    PressField(Now(), cell);
    listener_ = {.Focus = Listener::On::Board, .Frame = cell, .Clicked = true};
  }

  /// Those whose numbers come next; what is no number answers a box.
  void Fields() {
    while (!words_.empty() && std::isdigit(words_.front().front()) != 0) Field(NextNumber());
  }

  /// All fields, the one that is named last.
  void Solve() {
    const int last = std::stoi(Next("-1"));
    for (const bool others : {true, false}) {
      ClickRightFields(Now(), [&](int cell) { (cell != last) == others ? Field(cell) : void(); });
    }
  }

  void Tick() {
    void (*const ticks[])(Main&) = {Timer1_Timer, Timer2_Timer, Timer3_Timer};
    while (!words_.empty()) ticks[NextNumber() - 1](Now());
  }

  void Say() {
    while (!words_.empty()) Tell("field", SpokenField(Now(), NextNumber()));
    Tell("progress", SpokenProgress(Now()));
  }

  /// Sixteen-bit numbers at a place of a file, which grows where it must.
  void Write() {
    const std::string path = File();
    std::string bytes = fs::exists(path) ? BytesOf(path) : "";
    for (auto at = static_cast<std::size_t>(NextNumber()); !words_.empty(); at += 2) {
      bytes.resize(std::max(bytes.size(), at + 2));
      bytes.replace(at, 2, Integers({NextNumber()}));
    }
    WriteBytes(path, bytes);
  }

  void DoToFile() {
    const std::string path = File();
    const std::string what = Next("");
    if (what == "remove") fs::remove_all(path);
    if (what == "folder") fs::create_directories(path);
    if (what == "hardest") WriteBytes(path, ShippedPack(NextNumber()).substr(99 * kPackBytes));
    if (what == "readonly") fs::permissions(path, fs::perms(0444));
    if (what == "cut") fs::resize_file(path, static_cast<std::uintmax_t>(NextNumber()));
    if (what == "copy") fs::copy_file(File(), path, fs::copy_options::overwrite_existing);
  }

  void TellChanges() {
    for (const int sound : std::exchange(desktop().Played, {})) Tell("sound", std::to_string(sound));
    for (int beeps = std::exchange(desktop().Beeps, 0); beeps > 0; --beeps) Tell("beep", "");
    for (const std::string& page : std::exchange(desktop().Opened, {})) Tell("opened", page);
    const bool notes = std::exchange(noting, false);
    if (!called.empty()) Tell("calls", std::exchange(called, ""));
    Values values;
    if (run_) AddGame(values);
    AddFiles(values);
    noting = notes;
    std::map<std::string, std::string> gone(values_.begin(), values_.end());
    for (const auto& [name, text] : values) {
      const auto before = gone.find(name);
      if (before == gone.end() || before->second != text) Tell(name, text);
      if (before != gone.end()) gone.erase(before);
    }
    for (const auto& [name, text] : gone) Tell(name, "gone");
    values_ = values;
  }

  void AddGame(Values& values) {
    const auto add = [&](const std::string& name, const auto&... parts) {
      values.emplace_back(name, Joined(parts...));
    };
    const Main& main = Now();
    const int size = main.BoardSize;
    add("title", main.Caption);
    add("window", main.Visible ? "shown at " : "hidden at ", main.Left, ',', main.Top);
    for (int row = 0; row < size && main.CellCount == size * size && size <= kMaxSize; ++row) {
      std::string codes, pictures;
      for (int cell = row * size; cell < row * size + size; ++cell) {
        codes += ".gtT"[main.Board[cell]];
        pictures += main.Grid[cell].Visible ? ".gtT456W"[main.Grid[cell].Picture] : ' ';
      }
      add("row " + std::to_string(row + 1), codes, pictures == codes ? "" : " shown ",
          pictures == codes ? "" : pictures);
    }
    add("row clues", ClueText(main.RowCnt, size));
    add("column clues", ClueText(main.ColCnt, size));
    std::string enabled;
    for (const ControlRow& row : ControlTable()) {
      if (row.ItsButton != nullptr && (main.*row.ItsButton).Enabled)
        enabled += Joined(row.Name.substr(3), ' ');
    }
    add("enabled", enabled, main.optSound.Enabled ? "optSound" : "");
    add("sound", main.optSound.Checked ? "checked, " : "unchecked, ", main.SoundOn ? "on" : "off");
    std::string loaded;
    for (const std::string& path : desktop().Loaded) loaded += Joined(fs::path(path).stem().string(), ' ');
    add("sounds", desktop().SoundAttached ? "attached " : "", loaded);
    add("clock", main.LabelTijd.Caption, ", ", main.Elapsed, " s");
    add("steps", main.LabelStap.Caption, ", ", main.StepCount, " of ", main.MoveLogTop);
    add("text", main.lblHint.Caption);
    // A rating may leave a mark that is not set.
    add("marks", main.BlinkTop > main.BlinkCell.Upper() ? "one" : Marks(main));
    for (int panel = 1; panel <= 6; ++panel) {
      const Panel& of = main.StatusBar1[panel - 1];
      add("panel " + std::to_string(panel), of.Text, of.Tag.empty() ? "" : " tag ", of.Tag);
    }
    add("state", main.PuzzleOver ? "over" : "playing", main.Paused ? ", paused" : "",
        main.BoardLive ? "" : ", hint", main.Shield.Visible ? ", shield" : "");
    std::string timers;
    for (const auto& timer : {main.Timer1, main.Timer2, main.Timer3})
      timers += timer.Enabled ? std::to_string(timer.Interval) + ' ' : "off ";
    add("timers", timers);
    const FormNamen& form = run_->form;
    std::string names;
    for (const std::string& name : form.NaamLijst.Items) names += Joined('[', name, ']');
    add("players", names, ' ', main.global.CurrentPlayer, " plays, own time at ", main.global.PersonalPos);
    const bool inDialog[] = {form.NaamLijst.Enabled,        form.NaamInvoerveld.Enabled,
                             form.KnopNieuweSpeler.Enabled, form.KnopWijzigen.Enabled,
                             form.KnopOK.Enabled,           form.CommandFree.Enabled,
                             form.KnopAnnuleren.Enabled};
    std::string letters;
    for (std::size_t i = 0; i < std::size(inDialog); ++i) letters += inDialog[i] ? "LFNEOPC"[i] : '-';
    add("dialog", form.Visible ? "shown, " : "hidden, ", letters, ", selected ", form.NaamLijst.ListIndex,
        ", field [", form.NaamInvoerveld.Text, "], focus ",
        form.Focus == FormNamen::FocusOn::NaamLijst ? "list" : "field");
  }

  void AddFiles(Values& values) {
    for (const auto& [key, value] : desktop().Settings)
      values.emplace_back(Joined("setting ", key.first, '/', key.second), Joined('[', value, ']'));
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(installation_.folder / "")) {
      if (entry.path().string().find("/local") == std::string::npos) continue;
      const std::string name = entry.path().filename().string();
      const std::string bytes = entry.is_regular_file() ? BytesOf(entry.path().string()) : "";
      files["file " + name] = entry.is_directory()         ? "a folder"
                              : name.starts_with("BVPack") ? PackText(bytes)
                              : name.ends_with(".HTM")     ? bytes
                              : name.ends_with(".txt")     ? LinesOf(bytes)
                                                           : NumbersIn(bytes);
      const bool writable = (entry.status().permissions() & fs::perms::owner_write) != fs::perms::none;
      if (!writable) files["file " + name] += ", read only";
    }
    values.insert(values.end(), files.begin(), files.end());
  }

  const std::string script_;
  Installation installation_;
  std::optional<LoadedProgram> run_;
  std::vector<std::string> words_;
  std::string told_;
  int yieldsToEscape_ = 0;
  std::string later_;  // The time of day from the next yield on.
  Values values_;
  Listener listener_;
  bivouac::Told said_;
  int yieldsToEnd_ = 0;
  int full_ = 0;
  bool watchedMaking_ = false;
};

class Plays : public testing::TestWithParam<const char*> {};

TEST_P(Plays, GoAsTheyDid) {
  const std::string path = std::string(BIVOUAC_SOURCE_DIR "/tests/data/plays/") + GetParam() + ".txt";
  const std::string told = Play(BytesOf(path)).Told();
  std::string kept = KeptIn(path, told);
#ifdef __EMSCRIPTEN__
  kept = std::regex_replace(kept, std::regex("  calls: .*\n"), "");
#endif
  ExpectSameLines(told, kept);
}

INSTANTIATE_TEST_SUITE_P(All, Plays,
                         testing::Values("board", "files", "hints", "kept", "new", "players", "season",
                                         "start"),
                         [](const auto& play) { return std::string(play.param); });

}  // namespace
}  // namespace bivouac
