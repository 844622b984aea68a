// The whole program in a page: the state, the window that draws it, the desktop, and the events of the page.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <emscripten/emscripten.h>
#include <memory>
#include <span>
#include <utility>

#include "events/board_keys.h"
#include "events/event_road.h"
#include "events/help.h"
#include "events/player_presses.h"
#include "events/presses.h"
#include "game/blinking.h"
#include "game/clock.h"
#include "game/layout.h"
#include "game/puzzle_line.h"
#include "game/settings.h"
#include "game/text.h"
#include "game/web_link.h"
#include "packs/pack_access.h"
#include "page/page_desktop.h"
#include "page/page_window.h"
#include "page/puzzle_list.h"
#include "storage/pack_files.h"
#include "storage/start_up.h"
#include "storage/status_panels.h"

namespace bivouac {
namespace {

constexpr const char* kLevelKeyOfPage = "M";  // Browsers keep that of the desktop to themselves.
constexpr const char* kPageHelp =
    "\nIN THIS PAGE: Escape ends the making of a puzzle of a level. D saves all packs and times as a file. A "
    "pack that is dropped on the page is joined to that of its size.";

constexpr std::array<std::pair<std::string_view, FrameKey>, 8> kFrameKeys = {{
    {"ArrowLeft", FrameKey::Left},
    {"ArrowRight", FrameKey::Right},
    {"ArrowUp", FrameKey::Up},
    {"ArrowDown", FrameKey::Down},
    {"PageUp", FrameKey::PageUp},
    {"PageDown", FrameKey::PageDown},
    {"Home", FrameKey::Home},
    {"End", FrameKey::End},
}};
constexpr std::array<std::pair<std::string_view, int>, 3> kContentKeys = {
    {{"g", CELL_GRASS}, {"t", CELL_TENT}, {"o", CELL_OPEN}}};

/// Says a sentence and, where it tells what a press has done, shows it over the board for a while.
void Say(const std::optional<std::string>& sentence, bool shown) {
  if (sentence) TellPage(Message().Add("tell", "say").Add("text", *sentence).Add("shown", shown).Text());
}

/// Joins the puzzles of a pack to those of its size and leaves out what is alike. Returns what to say.
std::string JoinPack(Main& main, const std::string& path) {
  const std::vector<PackRecord> puzzles = ReadSoundPack(path);
  if (puzzles.empty()) return "There is no puzzle in it.";
  const int size = SizeOf(puzzles.front().LevelSize);
  RequireSize(path, puzzles, size);
  PackAppender appender(PackPath(main.global, size), size, PackAppender::Twins::LeaveOut);
  appender.Add(puzzles);
  const long added = appender.Added();
  main.PuzzleCount[size - kMinSize] = PackCount(main.global, size);
  ShowTotal(main);
  RefreshButtons(main);
  return Counted(added, "puzzle") + " added to those of size " + std::to_string(size) + ", " +
         std::to_string(static_cast<long>(puzzles.size()) - added) + " left out that were alike.";
}

class Program {
 public:
  Program()
      : main_(global_, desktop_),
        form_(main_),
        list_(main_),
        window_(main_, form_, list_),
        road_([this] { window_.Draw(); },
              [](const std::string& line) {
                ShowMessageBox(MessageBox{.Title = "Bivouac", .Text = line, .Symbol = BoxSymbol::Error});
              },
              [](int status) { TellPage(Message().Add("tell", "leave").Add("status", status).Text()); }) {
    desktop_.Attach(road_, form_);
  }

  /// Does what an event of the page asks for: a word, and what belongs to it.
  void Take(const std::string& event, bool keyUsedLast) {
    window_.UseKeys(keyUsedLast);
    const std::size_t blank = std::min(event.find(' '), event.size());
    const std::string what = event.substr(0, blank);
    const std::string rest = event.substr(std::min(blank + 1, event.size()));
    ++depth_;
    if (what.rfind("player", 0) == 0) {
      TakePlayers(what, rest);
    } else if (what.rfind("list-", 0) == 0) {
      if (list_.IsOpen() && road_.Modals() == 1) road_.Run([&] { list_.Take(what, rest); });
    } else {
      TakeEvent(what, rest);
    }
    if (--depth_ == 0 && road_.Modals() == 0 && !road_.Ended()) window_.SayWhatChanged();
  }

 private:
  void TakeEvent(const std::string& what, const std::string& rest);
  void TakePlayers(const std::string& what, const std::string& rest);
  void TakeBoardKey(const std::string& key, bool control, bool repeated);
  void Start(const std::string& damaged, bool refused);
  struct KeyRow {
    std::string_view Key;
    void (*Press)(Program& program);
  };
  static std::span<const KeyRow> Keys();
  void ShowHelp();
  void Print();
  void ShowPuzzles();
  void Copy();

  /// An open box or dialog holds every press.
  void Press(const EventRoad::Handler& press) {
    if (road_.Modals() == 0) road_.Run(press);
  }
  void PressPlayers(const EventRoad::Handler& press) {
    if (!IsHeld(form_, road_)) road_.Run(press);
  }

  PageDesktop desktop_;
  Global global_;
  Main main_;
  FormNamen form_;
  PuzzleList list_;
  PageWindow window_;
  EventRoad road_;
  int depth_ = 0;
};

void Program::Start(const std::string& damaged, bool refused) {
  std::vector<std::string> keys;
  for (const KeyRow& row : Keys()) keys.emplace_back(row.Key);
  TellPage(Message().Add("tell", "keys").Add("keys", keys).Text());
  road_.Run([&] { Form_Load(main_, form_); });
  if (!damaged.empty()) {
    road_.Run([&] {
      desktop_.Show(MessageBox{.Title = "File Error",
                               .Text = "The browser's database is damaged at " + damaged +
                                       ".\nThe packs to begin with stand there again. Nothing else is lost.",
                               .Symbol = BoxSymbol::Warning});
    });
  }
  if (!refused) return;
  main_.LostSettings = Loss::Untold;
  road_.Run([&] { TellOfLostSettings(main_); });
}

/// The keys that press no control.
std::span<const Program::KeyRow> Program::Keys() {
  static constexpr std::array<KeyRow, 8> kKeys = {{
      {kProgressKey, [](Program& p) { Say(SpokenProgress(p.main_), false); }},
      {"F1", [](Program& p) { p.ShowHelp(); }},
      {"F2", [](Program& p) { p.ShowPuzzles(); }},
      {kLevelKeyOfPage, [](Program& p) { PressNewOfLevel(p.main_); }},
      {"Ctrl+S", [](Program& p) { Say(PressKeep(p.main_), true); }},
      {"Ctrl+B", [](Program& p) { Say(PressRemember(p.main_), true); }},
      {"Ctrl+Shift+B", [](Program& p) { PressBackToStep(p.main_); }},
      {"Ctrl+P", [](Program& p) { p.Print(); }},
  }};
  return kKeys;
}

void Program::ShowHelp() {
  desktop_.Show(
      MessageBox{.Title = "Help",
                 .Text = HelpText(KeysOfPage) + ListKeyHelp(kLevelKeyOfPage) + kPrintKeyHelp + kPageHelp});
}

void Program::Print() {
  if (IsPuzzleOnShow(main_) && !main_.Paused) TellPage(Message().Add("tell", "print").Text());
}

/// The puzzles of the size, from which one is opened. While one is made, that must not be held up.
void Program::ShowPuzzles() {
  if (IsMakingPuzzle(main_)) return;
  const auto choice = list_.Choose(desktop_);
  if (choice) (choice->GoOn ? PressGoOn : PressOpen)(main_, choice->Number);
}

/// The puzzle as a line of text, and the position as a picture; a pause hides that.
void Program::Copy() {
  if (!IsPuzzleOnShow(main_)) return;
  Message message;
  message.Add("tell", "copy").Add("text", PuzzleLineOf(main_.global.PuzzleRec));
  if (!main_.Paused) message.AddJson("picture", PictureJson(main_));
  TellPage(message.Text());
  Say("Puzzle copied.", true);
}

void Program::TakeEvent(const std::string& what, const std::string& rest) {
  const int number = std::atoi(rest.c_str());
  if (what == "start") {
    Start(rest.substr(std::min<std::size_t>(2, rest.size())), number == 1);
  } else if (what == "size") {
    const std::size_t blank = std::min(rest.find(' '), rest.size());
    window_.Resize(std::max(number, 1), std::max(std::atoi(rest.c_str() + blank), 1));
  } else if (what == "timer") {
    constexpr std::array<void (*)(Main&), 3> kTicks = {Timer1_Timer, Timer2_Timer, Timer3_Timer};
    if (number >= 1 && number <= 3) road_.Run([&] { kTicks[static_cast<std::size_t>(number - 1)](main_); });
  } else if (what == "focus" || what == "tab") {
    window_.TakeFocus(rest, what == "tab");
    road_.Run([] {});
  } else if (what == "press") {
    if (rest == "lblHint") Press([&] { PressHint(main_); });
    if (rest == "Picture1") Press([&] { PressContinue(main_); });
    for (const ControlRow& row : ControlTable()) {
      if (row.Name != rest) continue;
      if (row.ItsButton != nullptr) Press([&] { PressButton(main_, ButtonOf(row.ItsButton)); });
      if (row.Kind == ControlKind::Link) Press([&] { Label2_Click(main_); });  // What Label3_Click does, too.
    }
  } else if (what == "key-press") {
    for (const KeyRow& row : Keys()) {
      if (row.Key == rest) return Press([&] { row.Press(*this); });
    }
    // The key of the pause ends it too.
    if (rest == "cmdPause" && main_.Paused) return Press([&] { PressContinue(main_); });
    TakeEvent("press", rest);
  } else if (what == "sound") {
    Press([&] { PressSound(main_, number != 0); });
  } else if (what == "field" || what == "tool") {  // By the mouse, or by an assistive tool.
    if (what == "field") window_.ClickField(number);
    window_.NoteClick();
    Press([&] { PressField(main_, number); });
  } else if (what == "key" || what == "control" || what == "repeat") {
    TakeBoardKey(rest, what == "control", what == "repeat");
  } else if (what == "escape") {
    if (HintTakesClicks(main_)) Press([&] { PressHint(main_); });
    if (IsMakingPuzzle(main_)) Press([&] { PressEndMaking(main_); });
  } else if (what == "copy") {
    Press([&] { Copy(); });
  } else if (what == "paste") {
    Press([&] { PressPaste(main_, rest); });
  } else if (what == "drop") {
    Press([&] {
      MessageBox box{.Title = "Pack"};
      try {
        box.Text = JoinPack(main_, rest);
      } catch (const std::runtime_error& error) {
        box.Text = error.what();
        box.Symbol = BoxSymbol::Warning;
      }
      desktop_.Show(box);
    });
  } else if (what == "close") {
    road_.Run([&] { Form_QueryUnload(main_); });
  }
}

void Program::TakeBoardKey(const std::string& key, bool control, bool repeated) {
  const auto click = [&](int cell) {
    window_.NoteClick();
    Press([&] { PressField(main_, cell); });
  };
  const auto* move =
      std::find_if(kFrameKeys.begin(), kFrameKeys.end(), [&](const auto& row) { return row.first == key; });
  const auto* content = std::find_if(kContentKeys.begin(), kContentKeys.end(),
                                     [&](const auto& row) { return row.first == key; });
  if (move != kFrameKeys.end()) {
    window_.MoveFrame(move->second, control);
  } else if (!window_.ShowsFrameFirst() && !repeated) {
    if (content != kContentKeys.end()) {
      ClickUntil(main_, window_.Frame(), content->second, click);
    } else {
      click(window_.Frame());
    }
  }
  road_.Run([] {});
}

void Program::TakePlayers(const std::string& what, const std::string& rest) {
  PressPlayers([&] {
    if (what == "player-press") {
      for (const PlayerButtonRow& row : PlayerButtonTable()) {
        if (rest == row.Name) PressPlayerButton(form_, row);
      }
    } else if (what == "player-select") {
      SelectPlayer(form_, std::atoi(rest.c_str()));
    } else if (what == "player-double") {
      NaamLijst_DblClick(form_);
    } else if (what == "player-enter") {
      PressEnterOnList(form_);
    } else if (what == "player-arrow") {
      if (const int first = SelectedByFirstArrow(form_); first >= 0) SelectPlayer(form_, first);
    } else if (what == "player-escape") {
      PressEscape(form_);
    } else if (what == "player-keep") {
      NaamInvoerveld_KeyPress(form_, Key::Enter);
    } else if (what == "player-type") {  // What lies in front of the cursor, and behind it.
      const std::size_t cursor = std::min(rest.find('\n'), rest.size());
      TypeName(form_, rest.substr(0, cursor), rest.substr(std::min(cursor + 1, rest.size())));
    } else if (what == "player-close") {
      KnopAnnuleren_Click(form_);
    }
  });
}

}  // namespace
}  // namespace bivouac

extern "C" EMSCRIPTEN_KEEPALIVE void PageEvent(const char* event, int keyUsedLast) {
  static bivouac::Program program;
  program.Take(event, keyUsedLast != 0);
}
