// The game without its window, and a player at random, who presses everything, in every state, over real
// packs: bytes become presses, ticks, answers and hours. Nothing may be lost, stuck or wrong.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "events/presses.h"
#include "fuzz/bytes.h"
#include "fuzz/invariants.h"
#include "fuzz/target.h"
#include "game/blinking.h"
#include "game/clock.h"
#include "game/text.h"
#include "game/web_link.h"
#include "storage/pack_files.h"
#include "storage/start_up.h"
#include "tests/support/installation.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

constexpr int kDay = 86400;
constexpr int kMostYields = 40000;  // Of an input: then the player closes the window, as people do.
constexpr std::size_t kPackBytes = 1376;
constexpr std::size_t kLevelSizeAt = 1368;
constexpr std::size_t kTimesAt = 1370;
constexpr std::size_t kPersonalBytes = 8;

constexpr std::array<const char*, 12> kOddAnswers = {
    "", "abc", "0", "99", "-1", "2.5", "1e9", " 2 ", "&H2", "2x", "1e999", "\xFF\xFE",
};

/// Seconds of a time at a place in a file; 0 if there is none.
int TimeAt(const std::string& bytes, std::size_t at) {
  return IntegerAt(bytes, at) * 60 + IntegerAt(bytes, at + 2);
}

/// Everything of a game that keeping it must not lose.
std::string GameText(const Main& main) {
  std::ostringstream text;
  for (int cell = 0; cell < main.CellCount; ++cell) text << main.Board[cell] << main.Grid[cell].Picture;
  text << "; steps " << main.StepCount << " of " << main.MoveLogTop << ':';
  for (int step = 1; step <= main.MoveLogTop; ++step) text << ' ' << main.MoveLog[step];
  for (const auto* clues : {&main.RowCnt, &main.ColCnt}) {
    for (int line = 0; line < main.BoardSize; ++line)
      text << ' ' << (*clues)[line].Caption << '/' << static_cast<int>((*clues)[line].ForeColor);
  }
  // In a pause a price is on the clock, and not on its label yet.
  text << "; " << (main.Paused ? "" : main.LabelTijd.Caption) << ' ' << main.Elapsed << ' '
       << main.LabelStap.Caption << main.Paused << main.PuzzleOver << main.Shield.Visible
       << main.Timer3.Enabled << "; buttons ";
  for (const ButtonRow& row : ButtonTable()) text << (main.*row.Value).Enabled;
  return text.str();
}

/// One run of the program, watched.
struct WatchedRun : LoadedProgram {
  using LoadedProgram::LoadedProgram;
  Watched watched{main, form, Array<int>()};
};

class Season {
 public:
  explicit Season(Bytes& bytes);
  void Play();

 private:
  /// What the player does while a call holds its caller. A program that has ended throws on from all of them.
  template <class Act>
  void Held(Act act);
  void AtYield();
  void UnderBox(const std::string& title);
  void InPlayerDialog();
  BoxAnswer AnswerTo(const MessageBox& box);
  std::string AnswerTo(const InputBox& box);
  template <class Handler>
  void Run(const std::string& name, Handler handler);
  void Install();
  void StartProgram();
  void WindowEvent();
  void DialogEvent();
  void Press(std::size_t button);
  template <class Act>
  void PressAs(const ButtonRow& row, const char* name, Act act);
  void KeepAndGoOn();
  void ClickField(int index);
  void PlayRightFields(int fields);
  void Tick();
  void LetTimePass();
  void ChangeFilesOutside();
  void MendSettings();
  bool IsNamed(const RunTimeError& error) const;
  void Check();
  void CheckMadePuzzle();
  void NoticeNoPuzzle();
  void CheckFiles();
  [[noreturn]] void Wrong(const std::string& what) const;
  Main& main() { return run_->main; }

  Bytes& bytes_;
  const int baseSize_;
  const int first_;  ///< Of the puzzles in the packs.
  Installation installation_;
  ScriptedDesktop& desktop_ = installation_.desktop;
  int second_ = 43200;  ///< Of the day.
  bool ended_ = false;  ///< The program.
  std::unique_ptr<WatchedRun> run_;
  std::string event_;  ///< That is running; empty between two.
  std::string lastEvent_;
  bool oddSettings_ = false;
  bool damaged_ = false;
  bool missingPack_ = false;
  bool fileError_ = false;  ///< Told of since the last press of a button.
  int yields_ = 0;
  int yieldsBetween_ = 8;
  std::map<std::string, std::string> files_;  ///< As last seen.
};

Season::Season(Bytes& bytes)
    : bytes_(bytes),
      baseSize_(bytes.Once(2) ? kMinSize : kMinSize + bytes.Below(kSizes)),
      first_(bytes.Below(30)),
      installation_(first_) {
  desktop_.AnswerBox = [this](const MessageBox& box) { return AnswerTo(box); };
  desktop_.AnswerInput = [this](const InputBox& box) { return AnswerTo(box); };
  desktop_.WhileYielding = [this] { Held([&] { AtYield(); }); };
  desktop_.PlayerDialog = [this] { Held([&] { InPlayerDialog(); }); };
}

void Season::Wrong(const std::string& what) const {
  Fault(what + (event_.empty() ? "; after " + lastEvent_ : "; in " + event_));
}

/// Damages, missing files and odd settings come one in some inputs each: most play an ordinary game.
void Season::Install() {
  fs::create_directories(installation_.InData(""));
  const bool copied = bytes_.Once(4);
  const int trouble = bytes_.Below(10);
  missingPack_ = copied && trouble == 9;
  const std::string path = installation_.InProgram(PackName(baseSize_));
  std::string pack = BytesOf(path);
  if (trouble == 0) pack.replace(kLevelSizeAt, 2, Integers({baseSize_}));  // Never rated.
  if (trouble == 1) {
    damaged_ = true;
    for (int byte = 1 + bytes_.Below(8); byte > 0; --byte) {
      const auto at = static_cast<std::size_t>(bytes_.Below(static_cast<int>(pack.size())));
      pack[at] = static_cast<char>(bytes_.Next());
    }
  }
  if (trouble == 2) pack.clear();
  if (trouble == 3) pack.resize(pack.size() - 700);
  WriteBytes(path, pack);
  if (missingPack_) fs::remove(path);
  for (int size = kMinSize; size <= kMaxSize && !copied; ++size)
    fs::rename(installation_.InProgram(PackName(size)), installation_.InData(PackName(size)));
  auto& settings = desktop_.Settings;
  settings[{"Options", "Size"}] = std::to_string(baseSize_);
  const int players = bytes_.Below(3);
  installation_.AddPlayers(std::vector<std::string>{"Ann", "Ben"});
  settings[{"Players", "Count"}] = std::to_string(players);
  settings[{"Players", "Last_Player"}] = std::to_string(bytes_.Below(players + 1));
  desktop_.SoundEngine = bytes_.Below(2);
  if (trouble == 8) {
    constexpr std::array<std::pair<const char*, const char*>, 4> kKeys = {
        {{"Options", "Size"}, {"Players", "Count"}, {"Players", "Last_Player"}, {"Options", "Sounds"}}};
    const auto& [section, key] = kKeys.at(static_cast<std::size_t>(bytes_.Below(4)));
    settings[{section, key}] = kOddAnswers.at(static_cast<std::size_t>(bytes_.Below(12)));
    oddSettings_ = true;
  }
}

/// What the report of such a start tells its reader to do.
void Season::MendSettings() {
  desktop_.Settings = {};
  oddSettings_ = false;
}

/// The run-time errors that are meant. Every other ends the game for no reason.
bool Season::IsNamed(const RunTimeError& error) const {
  const bool outside = error.Number() == ErrorNumber::IndexOutsideArray;
  if (event_ == "start") return oddSettings_ || (missingPack_ && error.IsFileError());
  // The box for the size lets 19 and 20 through, which are stored: the next start fails as well.
  if (event_ == "press cmdOptions") return outside && run_->main.BoardSize > kMaxSize;
  // Rules of hints without a test for the edge read beyond the board.
  if (event_ == "press cmdHint") return outside;
  // A pack is trusted as it stands.
  return damaged_ && (outside || error.Number() == ErrorNumber::Overflow);
}

/// As the window's road does: an error that no handler catches ends the program, and so does an end.
template <class Handler>
void Season::Run(const std::string& name, Handler handler) {
  static const bool trace = std::getenv("BIVOUAC_FUZZ_TRACE") != nullptr;
  if (ended_) return;
  CountEvent();
  const std::string outer = event_;
  event_ = name;
  if (trace) std::fprintf(stderr, "%s%s\n", outer.empty() ? "" : "  ", name.c_str());
  try {
    handler();
  } catch (const ProgramEnd&) {
    ended_ = true;
  } catch (const RunTimeError& error) {
    if (!IsNamed(error)) Wrong(std::string("No run-time error but those that are meant -- ") + error.what());
    ended_ = true;
  }
  lastEvent_ = name;
  event_ = outer;
}

void Season::StartProgram() {
  run_ = std::make_unique<WatchedRun>(desktop_);
  ended_ = false;
  const std::string size = desktop_.GetSetting("Options", "Size", "12");
  oddSettings_ = oddSettings_ || size == "19" || size == "20";
  Run("start", [&] { Form_Load(main(), run_->form); });
  if (oddSettings_ && ended_) MendSettings();
  if (!ended_ && !main().Visible) Wrong("The window shows once the program has started");
}

void Season::Play() {
  Install();
  do {
    bytes_.Next();  // So that runs that never come up end too.
    StartProgram();
    CheckFiles();
    if (!ended_) Check();
    while (!ended_ && !bytes_.AtEnd()) WindowEvent();
    CheckFiles();
  } while (!bytes_.AtEnd() && yields_ < kMostYields);
  NoteEnd(GameText(main()));
  for (const auto& [name, bytes] : files_) NoteEnd(name + bytes);
}

void Season::WindowEvent() {
  const int kind = bytes_.Below(32);
  if (kind < 10) {
    Press(static_cast<std::size_t>(bytes_.Below(13)));
  } else if (kind < 15) {
    if (main().CellCount > 0) ClickField(bytes_.Below(main().CellCount));
  } else if (kind < 18) {
    PlayRightFields(1 + bytes_.Below(8));
  } else if (kind == 18) {
    PlayRightFields(main().CellCount);
  } else if (kind < 21) {
    Run("press lblHint", [&] { PressHint(main()); });
  } else if (kind < 23) {
    Run("press Picture1", [&] { PressContinue(main()); });
  } else if (kind < 28) {
    Tick();
  } else if (kind < 30) {
    LetTimePass();
  } else if (kind == 30) {
    const int odd = bytes_.Below(8);
    if (odd == 0) Run("close", [&] { Form_QueryUnload(main()); });
    if (odd == 1) ChangeFilesOutside();
    if (odd == 2) {
      desktop_.Browser = {bytes_.Below(64), bytes_.Once(4) ? "" : "/usr/bin/browser"};
      desktop_.ShellCode = bytes_.Below(64);
      Run("press Label2", [&] { Label2_Click(main()); });
    }
    if (odd == 3) KeepAndGoOn();
    if (odd == 4) Run("remember", [&] { PressRemember(main()); });
    if (odd == 5) Run("back", [&] { PressBackToStep(main()); });
    if (odd == 6) PressAs(ButtonOf(&Main::cmdGenerate), "cmdGenerate", PressNewOfLevel);
    if (odd == 7) Run("end making", [&] { PressEndMaking(main()); });
  } else {
    Run("press optSound", [&] { PressSound(main(), !main().optSound.Checked); });
  }
  if (!ended_) Check();
}

void Season::Press(std::size_t button) {
  constexpr std::array<const char*, 13> kNames = {
      "cmdOptions", "cmdPause", "cmdGenerate", "cmdOpen",    "cmdNext", "cmdRestart",  "cmdSolution",
      "cmdUndo",    "cmdRedo",  "cmdHint",     "cmdPlayers", "cmdExit", "cmdResetTime"};
  const ButtonRow& row = ButtonTable()[button];
  PressAs(row, kNames.at(button), [&](Main& pressed) { PressButton(pressed, row); });
}

/// A press of a button, or one that does the like.
template <class Act>
void Season::PressAs(const ButtonRow& row, const char* name, Act act) {
  const int sizeBefore = main().BoardSize;
  const int step = main().StepCount;
  const bool enabled = (main().*row.Value).Enabled;
  fileError_ = false;
  Run(std::string("press ") + name, [&] { act(main()); });
  if (ended_) return;
  Watched& watched = run_->watched;
  if (main().BoardSize != sizeBefore) watched.NoPuzzleOfThisSize = true;
  const bool opens = row.Value == &Main::cmdOpen || row.Value == &Main::cmdNext;
  const bool starts = opens || row.Value == &Main::cmdGenerate || row.Value == &Main::cmdRestart;
  if (starts && main().Timer3.Enabled && (step != 0 || opens || row.Value == &Main::cmdGenerate) &&
      main().StepCount == 0 && !IsMakingPuzzle(main())) {
    watched.StartBoard = main().Board;
    watched.NoPuzzleOfThisSize = false;
    watched.OpeningBrokeOff = false;
  }
  if (opens && damaged_ && fileError_) watched.OpeningBrokeOff = true;
  if (!enabled) return;
  if (row.Value == &Main::cmdGenerate) {
    NoticeNoPuzzle();
    if (!main().PuzzleOver)
      CheckMadePuzzle();  // None was made where the question for the level was cancelled.
  }
  if (starts || row.Value == &Main::cmdResetTime) CheckFiles();
}

/// A game taken up again is the game that was kept, in everything but the time of day.
void Season::KeepAndGoOn() {
  bool kept = false;
  Run("keep", [&] { kept = PressKeep(main()).has_value(); });
  if (!kept || ended_ || damaged_ || run_->watched.Now != Amid::Nothing) return;
  const std::string before = GameText(main());
  Run("press cmdSolution", [&] { PressButton(main(), ButtonOf(&Main::cmdSolution)); });
  LetTimePass();
  Run("press cmdOpen", [&] { PressGoOn(main(), main().PuzzleNo); });
  if (!ended_ && GameText(main()) != before) Wrong("A kept game goes on as it was -- " + before);
}

void Season::ClickField(int index) {
  const bool over = main().PuzzleOver;
  Run("field " + std::to_string(index), [&] { PressField(main(), index); });
  if (!ended_ && main().PuzzleOver != over) CheckFiles();
}

/// So that games get solved at all.
void Season::PlayRightFields(int fields) {
  const auto click = [&](int cell) {
    const bool live = !ended_ && !main().Paused && main().BoardLive && !IsMakingPuzzle(main());
    if (live && fields > 0) ClickField(cell);
    if (live && !ended_ && main().Board[cell] == RightCode(main(), cell)) --fields;
  };
  ClickRightFields(main(), click);
}

void Season::Tick() {
  struct Row {
    Timer Main::*Value;
    void (*Handler)(Main& main);
    const char* Name;
  };
  constexpr std::array<Row, 3> kTimers = {{{&Main::Timer1, Timer1_Timer, "tick Timer1"},
                                           {&Main::Timer2, Timer2_Timer, "tick Timer2"},
                                           {&Main::Timer3, Timer3_Timer, "tick Timer3"}}};
  for (const Row& row : kTimers) {
    if ((main().*row.Value).Enabled) Run(row.Name, [&] { row.Handler(main()); });
  }
}

void Season::LetTimePass() {
  constexpr std::array<int, 8> kJumps = {1, 10, 61, 600, 3600, kDay - 1, kDay - 60, kDay / 2};
  second_ = bytes_.Once(4) ? kDay - 1 - bytes_.Below(3)
                           : (second_ + kJumps.at(static_cast<std::size_t>(bytes_.Below(8)))) % kDay;
  desktop_.Now =
      TwoDigits(second_ / 3600) + ":" + TwoDigits(second_ / 60 % 60) + ":" + TwoDigits(second_ % 60);
  desktop_.Seed += static_cast<std::uint64_t>(second_);
}

/// Another program, or the user, has changed a pack or a player's file.
void Season::ChangeFilesOutside() {
  const std::string pack = installation_.InData(PackName(main().BoardSize));
  if (!fs::exists(pack)) return;
  std::string bytes = BytesOf(pack);
  const int kind = bytes_.Below(4);
  if (kind == 0 && bytes.size() >= kPackBytes) bytes.resize(bytes.size() - kPackBytes);
  if (kind == 1) bytes += ShippedPack(main().BoardSize).substr(0, kPackBytes);
  if (kind == 2) fs::remove(installation_.InData("PLBest01.bvq"));
  if (kind < 2) WriteBytes(pack, bytes);
  damaged_ = true;  // What the game believes of the files is wrong from here on.
}

void Season::AtYield() {
  if (++yields_ >= kMostYields) Run("close", [&] { Form_QueryUnload(main()); });
  if (bytes_.AtEnd()) PressEndMaking(main());
  if (yields_ % yieldsBetween_ != 0 || bytes_.AtEnd() || ended_) return;
  yieldsBetween_ = 1 << bytes_.Below(6);  // A small puzzle takes some dozens.
  WindowEvent();
}

/// The making of a puzzle of a level may end without one.
void Season::NoticeNoPuzzle() {
  if (main().PuzzleOver && PanelOf(main(), 3).Text == "Puzzle #: --") run_->watched.NoPuzzleOfThisSize = true;
}

void Season::UnderBox(const std::string& title) {
  if (title == "New Puzzle") NoticeNoPuzzle();
  Amid& amid = run_->watched.Now;
  const Amid outer = amid;
  amid = AmidOf(main(), title, outer);
  fileError_ = fileError_ || amid == Amid::FileError;
  Check();
  if (bytes_.Once(4)) {
    LetTimePass();
    Tick();
    if (!ended_) Check();
  }
  amid = outer;
}

void Season::InPlayerDialog() {
  FormNamen& form = run_->form;
  form.Visible = true;
  run_->watched.Now = Amid::Players;
  Form_Activate(form);
  for (int events = 0; form.Visible && !ended_; ++events) {
    if (bytes_.AtEnd() || events == 40) {
      Run("dialog: Free Play", [&] { CommandFree_Click(form); });
    } else {
      DialogEvent();
    }
    if (!ended_) Check();
  }
  form.Visible = false;
  run_->watched.Now = Amid::Nothing;
}

/// What the dialog lets through: a disabled control gets nothing.
void Season::DialogEvent() {
  FormNamen& form = run_->form;
  const auto press = [&](const char* name, const Button& button, void (*click)(FormNamen&)) {
    if (button.Enabled) Run(std::string("dialog: ") + name, [&] { click(form); });
  };
  switch (bytes_.Below(12)) {
    case 0:
    case 1:
      return press("New", form.KnopNieuweSpeler, KnopNieuweSpeler_Click);
    case 2:
      return press("Edit", form.KnopWijzigen, KnopWijzigen_Click);
    case 3:
      return press("OK", form.KnopOK, KnopOK_Click);
    case 4:
      return press("Free Play", form.CommandFree, CommandFree_Click);
    case 5:
      return press("Cancel", form.KnopAnnuleren, KnopAnnuleren_Click);
    case 6:
    case 7:
      if (!form.NaamLijst.Enabled || form.NaamLijst.Items.empty()) return;
      form.NaamLijst.ListIndex = bytes_.Below(static_cast<int>(form.NaamLijst.Items.size()));
      return Run("dialog: list", [&] { (bytes_.Once(4) ? NaamLijst_DblClick : NaamLijst_Click)(form); });
    case 8:
      if (form.NaamInvoerveld.Enabled) form.NaamInvoerveld.Text = bytes_.Text(kNameFieldLength);
      return;
    case 9:
      Tick();
      return;
    default:
      if (!form.NaamInvoerveld.Enabled) return;
      const Key key = bytes_.Once(3) ? Key::Escape : Key::Enter;
      return Run("dialog: key", [&] { NaamInvoerveld_KeyPress(form, key); });
  }
}

void Season::Check() {
  if (!main().Visible) return;
  const std::string broken = Broken(run_->watched);
  if (!broken.empty()) Wrong(broken);
}

void Season::CheckMadePuzzle() {
  const std::string wrong = WrongInMadePuzzle(main());
  if (!wrong.empty()) Wrong("A puzzle that was made has one solution, and its clues count it -- " + wrong);
}

void Season::CheckFiles() {
  std::map<std::string, std::string> now = FilesIn(installation_.InData(""));
  for (const auto& [name, before] : files_) {
    if (damaged_) break;
    if (name.starts_with("Kept")) continue;
    const std::string& after = now[name];
    const bool pack = name.starts_with("BVPack");
    const std::size_t record = pack ? kPackBytes : kPersonalBytes;
    if (after.size() < before.size() || (after.size() != before.size() && after.size() % record != 0))
      Wrong("Files only grow, by whole records -- " + name);
    for (std::size_t at = 0; at + record <= before.size(); at += record) {
      const std::size_t fixed = pack ? kLevelSizeAt : 0;
      const int level = pack ? IntegerAt(before, at + fixed) >> 5 : 0;
      const bool same = after.compare(at, fixed, before, at, fixed) == 0 &&
                        (level == 0 || IntegerAt(after, at + fixed) == IntegerAt(before, at + fixed));
      if (pack && !same) Wrong("A puzzle's layout never changes, nor its level once it is rated -- " + name);
      const std::size_t time = at + (pack ? kTimesAt : 4);
      // A game that was won within its first second has no time, and beats every other.
      if (TimeAt(before, time) != 0 && TimeAt(after, time) > TimeAt(before, time))
        Wrong("Times only get better, or are reset -- " + name);
    }
  }
  files_ = std::move(now);
}

template <class Act>
void Season::Held(Act act) {
  if (ended_) throw ProgramEnd{};
  act();
  if (ended_) throw ProgramEnd{};
}

BoxAnswer Season::AnswerTo(const MessageBox& box) {
  Held([&] { UnderBox(box.Title); });
  switch (box.Buttons) {
    case BoxButtons::Ok:
      return BoxAnswer::Ok;
    case BoxButtons::OkCancel:
      return bytes_.Once(2) ? BoxAnswer::Cancel : BoxAnswer::Ok;
    case BoxButtons::YesNo:
      break;
  }
  return bytes_.Once(2) ? BoxAnswer::No : BoxAnswer::Yes;
}

std::string Season::AnswerTo(const InputBox& box) {
  Held([&] { UnderBox(box.Title); });
  if (bytes_.AtEnd()) return {};
  const int kind = bytes_.Below(8);
  if (kind == 0) return kOddAnswers.at(static_cast<std::size_t>(bytes_.Below(12)));
  if (kind == 1) return bytes_.Text(8);
  const bool size = box.Title == "Puzzle Size";
  // Small boards are made in no time, so they are wanted most.
  if (size) return std::to_string(bytes_.Once(2) ? kMinSize : kMinSize + bytes_.Below(kSizes + 2));
  return std::to_string(1 + bytes_.Below(4));
}

}  // namespace
}  // namespace bivouac

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  bivouac::Bytes bytes(data, size);
  bivouac::Season(bytes).Play();
  return 0;
}
