#include "game/spoken.h"

#include <algorithm>
#include <cctype>

#include "game/board.h"
#include "game/text.h"

namespace bivouac {
namespace {

constexpr std::string_view kContents[] = {"open", "grass", "tent", "tree"};

bool HintOnShow(const Main& main) {
  return !main.BoardLive && main.Timer2.Enabled;
}

bool Making(const Main& main) {
  return main.Timer1.Enabled;
}

std::string Sentence(std::string text) {
  if (text.empty()) return text;
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text + ".";
}

/// Joined by commas, the last by "and".
std::string Listed(const std::vector<int>& numbers) {
  std::string text;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i > 0) text += i + 1 == numbers.size() ? " and " : ", ";
    text += std::to_string(numbers[i]);
  }
  return text;
}

std::string_view ContentOfTile(int tile) {
  const int content = tile < 0 ? -tile : tile;
  return kContents[content % kHighlight];
}

std::string Content(const Main& main, int cell) {
  if (HintOnShow(main)) {
    for (int i = main.BlinkTop; i >= 0; --i) {  // Of several marks the last one shows.
      if (main.BlinkCell[i] == cell) return std::string(ContentOfTile(main.BlinkTile[i])) + ", blinking";
    }
  }
  return std::string(ContentOfTile(main.Grid[cell].Picture));
}

std::string PlaceName(const Main& main, int cell) {
  return "row " + std::to_string(RowOf(main, cell) + 1) + ", column " + std::to_string(ColOf(main, cell) + 1);
}

/// The line of the clue, from its first cell on.
std::string LineState(const Main& main, const Label& clue, int first, int step) {
  if (clue.ForeColor == TextColour::Green) return "finished";
  const LineCount count = CountLine(main, first, step);
  return std::to_string(count.Tents) + " of " + clue.Caption +
         (clue.Caption == "1" ? " tent, " : " tents, ") +
         (clue.ForeColor == TextColour::Red ? "too many" : std::to_string(count.Open) + " open");
}

std::string Opened(const Main& main) {
  const std::string size = std::to_string(main.BoardSize);
  return "Puzzle " + std::to_string(main.PuzzleNo) + ", " + size + " by " + size + ", level " +
         std::to_string(main.Level) + ", " + Counted(main.TreeCount, "tent") + ".";
}

/// What a clue's colour says, as the end of a sentence that its line begins.
const char* News(TextColour colour, bool ofBoth) {
  if (colour == TextColour::Green) return " finished";
  return ofBoth ? " have too many tents" : " has too many tents";
}

}  // namespace

std::string SpokenFieldAlone(const Main& main, int cell) {
  return Sentence(PlaceName(main, cell) + ", " + Content(main, cell));
}

std::string SpokenField(const Main& main, int cell) {
  std::string text = SpokenFieldAlone(main, cell);
  if (main.PuzzleOver || Making(main)) return text;
  const int row = RowOf(main, cell);
  const int col = ColOf(main, cell);
  return text + " Row: " + LineState(main, main.RowCnt[row], row * main.BoardSize, 1) +
         ". Column: " + LineState(main, main.ColCnt[col], col, main.BoardSize) + ".";
}

std::string SpokenClue(const std::string& line, TextColour colour) {
  const char* state = colour == TextColour::Red     ? ", too many tents"
                      : colour == TextColour::Green ? ", finished"
                                                    : "";
  return "Tents in " + line + state;
}

std::string SentenceOf(std::string_view text) {
  return std::string(text.substr(0, text.find(" Click HERE")));
}

std::string SpokenHint(const Main& main) {
  return SentenceOf(main.lblHint.Caption);
}

std::string SpokenMarks(const Main& main) {
  if (!HintOnShow(main)) return "";
  std::string text;
  FixedArray<std::string_view, kMaxCells> unnamed;  // By cell: as what it blinks, until it was named.
  const auto isOnBoard = [&](int cell) { return cell >= 0 && cell < main.CellCount; };
  for (int i = 0; i <= main.BlinkTop; ++i) {
    const int cell = main.BlinkCell[i];
    if (isOnBoard(cell)) unnamed[cell] = ContentOfTile(main.BlinkTile[i]);
  }
  // Fields of one row that are marked alike are named together.
  for (int i = 0; i <= main.BlinkTop; ++i) {
    const int first = main.BlinkCell[i];
    if (!isOnBoard(first) || unnamed[first].empty()) continue;
    const std::string_view content = unnamed[first];
    std::vector<int> columns;
    for (int k = i; k <= main.BlinkTop; ++k) {
      const int cell = main.BlinkCell[k];
      if (!isOnBoard(cell) || RowOf(main, cell) != RowOf(main, first) || unnamed[cell] != content) continue;
      unnamed[cell] = {};
      columns.push_back(ColOf(main, cell) + 1);
    }
    text += text.empty() ? "" : "; ";
    text += "row " + std::to_string(RowOf(main, first) + 1) +
            (columns.size() == 1 ? " column " : " columns ") + Listed(columns) + ": " + std::string(content);
  }
  return Sentence(text);
}

std::string SpokenProgress(const Main& main) {
  if (Making(main)) return "A new puzzle is being made.";
  if (main.PuzzleOver) return "No puzzle is being played.";
  int left = main.TreeCount;
  for (int cell = 0; cell < main.CellCount; ++cell) left -= main.Board[cell] == CELL_TENT ? 1 : 0;
  return std::string(main.Paused ? "Paused at " : "Time ") + main.LabelTijd.Caption + ", " +
         Counted(main.StepCount, "step") + ", " +
         (left < 0 ? Counted(-left, "tent") + " too many." : Counted(left, "tent") + " left.");
}

std::string Told::WhatChanged(const Main& main, const Listener& listener) {
  std::string text = WhatHappened(main, listener);
  over_ = main.PuzzleOver;
  making_ = Making(main);
  paused_ = main.Paused;
  hint_ = HintOnShow(main);
  hintText_ = main.lblHint.Caption;
  size_ = main.BoardSize;
  steps_ = main.StepCount;
  board_.clear();
  for (int cell = 0; cell < main.CellCount; ++cell) board_.push_back(main.Board[cell]);
  clues_.clear();
  for (int line = 0; line < kMaxSize; ++line) clues_.push_back(main.RowCnt[line].ForeColor);
  for (int line = 0; line < kMaxSize; ++line) clues_.push_back(main.ColCnt[line].ForeColor);
  return text;
}

std::string Told::WhatHappened(const Main& main, const Listener& listener) const {
  if (size_ == 0) return "";  // Start-up.
  if (Making(main)) return making_ ? "" : "Making a new puzzle.";
  if (!main.PuzzleOver && (over_ || making_)) return Opened(main);
  if (main.BoardSize != size_) {
    return "Size " + std::to_string(main.BoardSize) + " by " + std::to_string(main.BoardSize) + ".";
  }
  const bool solutionShown = main.PuzzleOver && !over_ && main.StepCount == steps_;
  if (solutionShown) return "The solution is shown.";
  if (main.PuzzleOver) return "";

  const bool hint = HintOnShow(main);
  if (hint && !hint_) {
    return listener.Focus == Listener::On::Hint ? "" : SpokenHint(main) + " " + SpokenMarks(main);
  }
  if (!hint && hint_ && main.StepCount == steps_) {
    return listener.Focus == Listener::On::Board ? "" : SpokenFieldAlone(main, listener.Frame);
  }
  if (main.lblHint.Caption != hintText_ && main.BoardLive) return main.lblHint.Caption;
  if (main.Paused != paused_) {
    if (main.Paused) return "Paused at " + main.LabelTijd.Caption + ".";
    return listener.Focus == Listener::On::Board ? "" : "The clock runs.";
  }
  return WhichFields(main, listener);
}

std::string Told::WhichFields(const Main& main, const Listener& listener) const {
  if (main.StepCount == steps_) return "";
  if (main.StepCount == 0 && main.MoveLogTop == 0) return "Started again.";
  std::vector<int> changed;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] != board_[static_cast<std::size_t>(cell)]) changed.push_back(cell);
  }
  if (changed.size() != 1) return "Now at step " + std::to_string(main.StepCount) + ".";

  const int cell = changed.front();
  const bool known = listener.Clicked && cell == listener.Frame;
  const std::string text = known ? Sentence(Content(main, cell)) : SpokenFieldAlone(main, cell);
  const int row = RowOf(main, cell);
  const int col = ColOf(main, cell);
  const auto newOf = [this](TextColour now, int before) {
    return now != clues_[static_cast<std::size_t>(before)] ? now : TextColour::WindowText;
  };
  const TextColour ofRow = newOf(main.RowCnt[row].ForeColor, row);
  const TextColour ofCol = newOf(main.ColCnt[col].ForeColor, kMaxSize + col);
  constexpr TextColour kNone = TextColour::WindowText;
  std::string news;
  if (ofRow != kNone && ofRow == ofCol) {
    news = std::string("Row and column") + News(ofRow, true);
  } else {
    if (ofRow != kNone) news = std::string("row") + News(ofRow, false);
    if (ofCol != kNone) news += (news.empty() ? "" : ", ") + std::string("column") + News(ofCol, false);
  }
  return text + (news.empty() ? "" : " ") + Sentence(news);
}

}  // namespace bivouac
