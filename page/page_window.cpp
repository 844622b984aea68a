#include "page/page_window.h"

#include <array>
#include <cstdio>

#include "events/help.h"
#include "events/player_presses.h"
#include "hints/evidence.h"

namespace bivouac {
namespace {

// Sizes of text, pixels at the window's opening size.
constexpr int kPlainText = 13;
constexpr int kLargeText = 15;
constexpr int kPanelText = 11;

// A narrow page, CSS pixels.
constexpr int kNarrowMargin = 4;
constexpr int kNarrowClue = 20;
constexpr int kNarrowText = 16;

constexpr std::array<const char*, 7> kKinds = {"button",   "figure", "text",   "link",
                                               "checkbox", "shield", "picture"};

std::string Colour(int colour) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "#%06x", static_cast<unsigned>(colour));
  return text.data();
}

const char* ColourName(TextColour colour) {
  return colour == TextColour::Red ? "red" : colour == TextColour::Green ? "green" : "";
}

std::string Json(const PixelRect& at) {
  return "[" + std::to_string(at.Left) + "," + std::to_string(at.Top) + "," + std::to_string(at.Width) + "," +
         std::to_string(at.Height) + "]";
}

int LargestText(ControlKind kind) {
  return kind == ControlKind::Figure || kind == ControlKind::Link ? kLargeText : kPlainText;
}

}  // namespace

std::string_view KeysOfPage(const ControlRow& row) {
  if (row.ItsButton == &Main::cmdGenerate) return "N";
  if (row.ItsButton == &Main::cmdOpen) return "L";
  if (row.ItsButton == &Main::cmdExit) return "Q";
  return row.Keys;
}

void PageWindow::Resize(int width, int height) {
  width_ = width;
  height_ = height;
  scale_ = Scale::ToFit(width, height);
  Draw();
}

void PageWindow::Draw() {
  changes_.clear();
  for (int cell = 0; cell < main_.CellCount; ++cell) {
    const int picture = main_.Grid[cell].Picture;
    if (pictures_[cell] != picture && !main_.Timer2.Enabled) focusCameByItself_ = false;
    pictures_[cell] = picture;
  }
  constexpr int kPixelsWide = kWindowWidth / kTwipsPerPixel;
  const bool narrow = width_ < kPixelsWide && width_ * kWindowHeight < height_ * kWindowWidth;
  const bool hintTakesClicks = HintTakesClicks(main_);
  const bool hintAppeared = hintTakesClicks && !hintWaited_ && !main_.BoardLive;
  hintWaited_ = hintTakesClicks;
  const bool focusMoves = MoveFocus(hintAppeared);
  narrowSide_ = narrow ? (width_ - 2 * kNarrowMargin - kNarrowClue) / main_.BoardSize : 0;
  for (const ControlRow& row : ControlTable()) {
    if (row.Kind != ControlKind::PictureBox && row.Kind != ControlKind::Picture) DrawControl(row);
  }
  for (int line = 0; line < kMaxSize; ++line) {
    DrawClue("RowCnt", line, main_.RowCnt[line], true);
    DrawClue("ColCnt", line, main_.ColCnt[line], false);
  }
  DrawStatusBar();
  DrawBoard();
  DrawShield();
  DrawPlayers();
  list_.Draw([this](const char* id, Message& message) { DrawElement(id, message); });
  SendChanges(focusMoves);
}

/// Returns whether the focus goes elsewhere. What is said of the board depends on it.
bool PageWindow::MoveFocus(bool hintAppeared) {
  const Focus next = FocusFrom(main_, focus_, hintAppeared);
  if (next == focus_) return false;
  focus_ = next;
  if (next.Where == Focus::On::Board) TakeFocus("Grid", false);
  return true;
}

/// What can be used comes first and what cannot any longer last: the page moves the focus in between.
void PageWindow::SendChanges(bool focusMoves) {
  const std::string whole = WholeWindow();
  if (!focusMoves && changes_.empty() && whole == drawnWhole_) return;
  drawnWhole_ = whole;
  Message message;
  message.Add("tell", "draw").AddJson("elements", "[" + changes_ + "]").AddJson("window", whole);
  const Focus::On where = focus_.Where;
  if (focusMoves)
    message.Add("focus", where == Focus::On::Board  ? "Grid"
                         : where == Focus::On::Hint ? "lblHint"
                                                    : "Picture1");
  TellPage(message.Text());
}

/// What belongs to no single element.
std::string PageWindow::WholeWindow() const {
  Message whole;
  whole.Add("title", main_.Caption).Add("shown", main_.Visible);
  whole.Add("frame", frame_).Add("frameShown", frameShown_);
  if (IsNarrow())
    whole.Add("narrow", 2 * kNarrowMargin + kNarrowClue + narrowSide_ * main_.BoardSize);
  else
    whole.Add("unit", static_cast<int>(scale_.Unit() * 1000));
  const auto timer = [&](const char* name, const Timer& value) {
    whole.Add(name, value.Enabled ? value.Interval : 0);
  };
  timer("timer1", main_.Timer1);
  timer("timer2", main_.Timer2);
  timer("timer3", main_.Timer3);
  return whole.Text();
}

void PageWindow::DrawElement(const std::string& id, Message& message) {
  std::string text = message.Add("id", id).Text();
  std::string& drawn = drawn_[id];
  if (drawn == text) return;
  drawn = std::move(text);
  changes_ += (changes_.empty() ? "" : ",") + drawn;
}

void PageWindow::AddPlace(Message& message, const PixelRect& at, int text) const {
  message.AddJson("at", Json(at)).Add("largest", PixelsOf(text, IsNarrow() ? 1 : scale_.Unit()));
}

void PageWindow::DrawControl(const ControlRow& row) {
  Message message;
  message.Add("kind", kKinds[static_cast<std::size_t>(row.Kind)]);
  const std::string_view keys = KeysOfPage(row);
  message.Add("tip", TipOf(row, keys)).Add("keys", keys);
  if (IsNarrow()) {
    message.Add("largest", kNarrowText);
  } else {
    AddPlace(message, scale_.Map(row.At), LargestText(row.Kind));
  }
  if (row.Background != kSystemDefault) message.Add("ground", Colour(row.Background));
  message.Add("ink", Colour(row.Foreground));
  std::string_view text = row.Caption;
  if (row.ItsLabel != nullptr) text = (main_.*row.ItsLabel).Caption;
  message.Add("text", text);
  std::string_view description = DescriptionOf(row);
  std::string marks;
  if (row.Kind == ControlKind::Text) {
    const bool waits = HintTakesClicks(main_);
    message.Add("label", SpokenHint(main_)).Add("waits", waits);
    if (waits) description = marks = SpokenMarksAndEvidence(main_);
  }
  message.Add("description", description);
  if (row.ItsButton != nullptr) message.Add("enabled", (main_.*row.ItsButton).Enabled);
  if (row.Kind == ControlKind::CheckBox)
    message.Add("enabled", main_.optSound.Enabled).Add("checked", main_.optSound.Checked);
  DrawElement(std::string(row.Name), message);
}

PixelRect PageWindow::PlaceOfClue(const Label& clue, int line, bool isRow) const {
  if (!IsNarrow()) return scale_.Map(clue.At);
  const int along = kNarrowMargin + kNarrowClue + line * narrowSide_;
  return isRow ? PixelRect{kNarrowMargin, along, kNarrowClue, narrowSide_}
               : PixelRect{along, kNarrowMargin, narrowSide_, kNarrowClue};
}

void PageWindow::DrawClue(const char* name, int line, const Label& clue, bool isRow) {
  const std::string number = std::to_string(line);
  Message message;
  message.Add("kind", "clue").Add("visible", clue.Visible);
  if (clue.Visible) AddPlace(message, PlaceOfClue(clue, line, isRow), kLargeText);
  message.Add("text", clue.Caption).Add("colour", ColourName(clue.ForeColor));
  message.Add("description",
              SpokenClue((isRow ? "row " : "column ") + std::to_string(line + 1), clue.ForeColor));
  DrawElement(name + number, message);
}

void PageWindow::DrawStatusBar() {
  const PixelRect bar = PlaceOfStatusBar(width_, height_, scale_.Unit());
  Message whole;
  whole.Add("kind", "bar");
  if (!IsNarrow()) AddPlace(whole, bar, kPanelText);
  DrawElement("StatusBar1", whole);
  for (int i = 0; i < 6; ++i) {
    const PanelRow& row = PanelTable()[static_cast<std::size_t>(i)];
    Message message;
    message.Add("kind", "panel").Add("parent", "StatusBar1").Add("text", main_.StatusBar1[i].Text);
    message.Add("tip", row.ToolTip).Add("description", row.ToolTip);
    if (IsNarrow()) {
      message.Add("largest", kNarrowText);
    } else {
      AddPlace(message, PlaceOfPanel(i, bar.Width, bar.Height, scale_.Unit()), kPanelText);
    }
    DrawElement("panel" + std::to_string(i + 1), message);
  }
}

PixelRect PageWindow::PlaceOfCell(int cell) const {
  if (!IsNarrow()) return edges_.Cell(cell);
  const int size = main_.BoardSize;
  return {cell % size * narrowSide_, cell / size * narrowSide_, narrowSide_, narrowSide_};
}

void PageWindow::DrawBoard() {
  const int cells = main_.Grid[0].Visible ? main_.CellCount : 0;
  if (frame_ >= cells) frame_ = 0;
  Message board;
  board.Add("kind", "board").Add("size", main_.BoardSize).Add("cells", cells);
  board.Add("visible", !main_.Shield.Visible);
  if (cells > 0 && IsNarrow()) {
    const int corner = kNarrowMargin + kNarrowClue;
    AddPlace(board, {corner, corner, narrowSide_ * main_.BoardSize, narrowSide_ * main_.BoardSize}, 1);
  } else if (cells > 0) {
    edges_ = EdgesOfCells(main_, main_.BoardSize, scale_, 1);
    AddPlace(board,
             {edges_.Room.Left, edges_.Room.Top, edges_.Lefts[main_.BoardSize], edges_.Tops[main_.BoardSize]},
             1);
  }
  DrawElement("Grid", board);
  for (int cell = 0; cell < cells; ++cell) {
    const std::string id = "Grid" + std::to_string(cell);
    const bool alone = focusCameByItself_ && cell == frame_;
    Message message;
    message.Add("kind", "cell").Add("tile", main_.Grid[cell].Picture).AddJson("at", Json(PlaceOfCell(cell)));
    message.Add("label", alone ? SpokenFieldAlone(main_, cell) : SpokenField(main_, cell));
    DrawElement(id, message);
  }
}

void PageWindow::DrawShield() {
  const ControlRow& box = ControlNamed("Shield");
  const ControlRow& row = ControlNamed("Picture1");
  const Place on = row.At;
  Message shield;
  shield.Add("kind", "shield").Add("visible", main_.Shield.Visible).Add("description", box.Description);
  Message picture;
  picture.Add("kind", "picture").Add("parent", "Shield");
  if (IsNarrow()) {
    const int side = 2 * kNarrowMargin + kNarrowClue + narrowSide_ * main_.BoardSize;
    AddPlace(shield, {0, 0, side, side}, 1);
    AddPlace(picture,
             {side * on.Left / box.At.Width, side * on.Top / box.At.Height, side * on.Width / box.At.Width,
              side * on.Height / box.At.Height},
             1);
  } else {
    const PixelRect whole = scale_.Map(box.At);
    PixelRect at = scale_.Map({box.At.Left + on.Left, box.At.Top + on.Top, on.Width, on.Height});
    at.Left -= whole.Left;
    at.Top -= whole.Top;
    AddPlace(shield, whole, 1);
    AddPlace(picture, at, 1);
  }
  DrawElement("Shield", shield);
  DrawElement("Picture1", picture);
}

void PageWindow::DrawPlayers() {
  Message message;
  message.Add("kind", "players").Add("visible", form_.Visible);
  if (form_.Visible) {
    message.Add("items", form_.NaamLijst.Items).Add("selected", form_.NaamLijst.ListIndex);
    message.Add("list", form_.NaamLijst.Enabled).Add("field", form_.NaamInvoerveld.Enabled);
    message.Add("name", form_.NaamInvoerveld.Text);
    message.Add("focus", form_.Focus == FormNamen::FocusOn::NaamLijst ? "NaamLijst" : "NaamInvoerveld");
    std::vector<std::string> buttons;
    for (const PlayerButtonRow& row : PlayerButtonTable())
      buttons.push_back(ButtonJson(row, (form_.*row.Value).Enabled));
    message.AddJson("buttons", buttons);
    const auto control = [&](const char* name, const PlayerControlRow& row) {
      message.AddJson(name, Message()
                                .Add("id", row.ObjectName)
                                .Add("label", row.Name)
                                .Add("description", row.Description)
                                .Text());
    };
    control("formNames", kPlayerForm);
    control("textNames", kPlayerText);
    control("listNames", kPlayerList);
    control("fieldNames", kPlayerField);
  }
  DrawElement(kPlayerForm.ObjectName, message);
}

void PageWindow::SayWhatChanged() {
  Listener listener{.Frame = frame_, .Clicked = clicked_};
  clicked_ = false;
  if (focus_.Where == Focus::On::Board) listener.Focus = Listener::On::Board;
  if (focus_.Where == Focus::On::Hint) listener.Focus = Listener::On::Hint;
  const std::string text = told_.WhatChanged(main_, listener);
  if (!text.empty()) TellPage(Message().Add("tell", "say").Add("text", text).Text());
}

void PageWindow::TakeFocus(std::string_view control, bool byTab) {
  focus_ = {};
  if (control == "Grid") {
    focus_.Where = Focus::On::Board;
    focusCameByItself_ = !byTab;
    frameShown_ = byTab || keyUsedLast_ || frameShown_;
  } else if (control == "lblHint") {
    focus_.Where = Focus::On::Hint;
  } else if (control == "Picture1") {
    focus_.Where = Focus::On::Continue;
  } else {
    for (const ControlRow& row : ControlTable()) {
      if (row.Name == control && row.ItsButton != nullptr) focus_ = {Focus::On::Button, row.ItsButton};
    }
  }
}

void PageWindow::ClickField(int cell) {
  frameShown_ = false;
  focusCameByItself_ = false;
  frame_ = cell;
}

bool PageWindow::ShowsFrameFirst() {
  const bool first = !frameShown_;
  frameShown_ = true;
  return first;
}

void PageWindow::MoveFrame(FrameKey key, bool control) {
  frameShown_ = true;
  focusCameByItself_ = false;
  frame_ = FrameAfter(main_.BoardSize, frame_, key, control);
}

}  // namespace bivouac
