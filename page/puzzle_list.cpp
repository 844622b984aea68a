#include "page/puzzle_list.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>

#include "game/clock.h"
#include "page/page.h"

namespace bivouac {
namespace {

constexpr auto kSearchedFor = std::chrono::milliseconds(8);  // Until the page may act again.

/// Today by the player's clock.
long JulianDay() {
  constexpr long kDayOf1970 = 2440588;
  const std::time_t now = std::time(nullptr);
  std::tm local = *std::localtime(&now);
  return kDayOf1970 + static_cast<long>(timegm(&local) / kDaySeconds);
}

template <class Labels>
std::vector<std::string> Captions(const Labels& labels, int count) {
  std::vector<std::string> texts;
  for (int line = 0; line < count; ++line) texts.push_back(labels[line].Caption);
  return texts;
}

}  // namespace

std::string PictureJson(const Main& main) {
  std::string tiles;
  for (int cell = 0; cell < main.CellCount; ++cell) tiles += std::to_string(main.Grid[cell].Picture);
  return Message()
      .Add("size", main.BoardSize)
      .Add("tiles", tiles)
      .Add("rows", Captions(main.RowCnt, main.BoardSize))
      .Add("columns", Captions(main.ColCnt, main.BoardSize))
      .Text();
}

std::optional<PuzzleList::Choice> PuzzleList::Choose(PageDesktop& desktop) {
  listing_.Refresh();
  selected_ = std::clamp(playing_, 1, std::max(1, listing_.Count())) - 1;
  Apply();
  choice_.reset();
  open_ = true;
  desktop.Ask(Message().Add("ask", "list").Text());
  open_ = false;
  return choice_;
}

/// Shows what the filter lets through, sorted, and selects the first where the selected one is not shown.
void PuzzleList::Apply() {
  rows_.clear();
  for (int row = 0; row < listing_.Count(); ++row) {
    if (listing_.Shows(row, filter_)) rows_.push_back(row);
  }
  std::stable_sort(rows_.begin(), rows_.end(), [&](int a, int b) {
    if (descending_) std::swap(a, b);
    return listing_.SortedBy(a, column_) < listing_.SortedBy(b, column_);
  });
  if (PlaceOfSelected() == static_cast<int>(rows_.size())) selected_ = rows_.empty() ? -1 : rows_.front();
}

/// In the order shown; behind the last if it is not shown.
int PuzzleList::PlaceOfSelected() const {
  return static_cast<int>(std::find(rows_.begin(), rows_.end(), selected_) - rows_.begin());
}

void PuzzleList::MoveBy(int rows) {
  if (rows_.empty()) return;
  const int last = static_cast<int>(rows_.size()) - 1;
  selected_ = rows_[static_cast<std::size_t>(std::clamp(PlaceOfSelected() + rows, 0, last))];
}

void PuzzleList::Press(const std::string& button) {
  const auto is = [&](ListButton which) { return button == kListButtons[which].Name; };
  if (is(kListToday) && listing_.Count() > 0) {
    filter_ = {};
    selected_ = listing_.Today(JulianDay());
    Apply();
  }
  if (is(kListOpen) && listing_.CanOpen(selected_)) choice_ = {selected_ + 1, false};
  if (is(kListGoOn) && listing_.CanGoOn(selected_)) choice_ = {selected_ + 1, true};
  if (choice_ || is(kListClose)) open_ = false;
}

void PuzzleList::FindNeeds() {
  const auto begun = std::chrono::steady_clock::now();
  while (listing_.Known() < listing_.Count() && std::chrono::steady_clock::now() - begun < kSearchedFor)
    listing_.FindNextNeeds();
  if (filter_.Rule != 0) Apply();
}

void PuzzleList::Take(const std::string& what, const std::string& rest) {
  const int number = std::atoi(rest.c_str());
  if (what == "list-press") return Press(rest);
  if (what == "list-needs") return FindNeeds();
  if (what == "list-move") return MoveBy(number);
  if (what == "list-select") {
    selected_ = std::clamp(number, 0, listing_.Count() - 1);
  } else if (what == "list-level") {
    filter_.Level = number;
  } else if (what == "list-rule") {
    filter_.Rule = std::clamp(number, 0, kHintRuleCount);
  } else if (what == "list-unsolved") {
    filter_.Unsolved = number != 0;
  } else if (what == "list-sort") {
    descending_ = column_ == number && !descending_;
    column_ = std::clamp<int>(number, 0, PuzzleListing::kColumns - 1);
  }
  Apply();
}

void PuzzleList::Draw(const std::function<void(const char* id, Message& message)>& draw) {
  Message list;
  list.Add("kind", "list").Add("visible", open_);
  if (!open_) return draw("PuzzleList", list);
  std::vector<std::string> rules = {kAnyRule}, levels = {kEveryLevel}, rows, buttons;
  for (int rule = 1; rule <= kHintRuleCount; ++rule) rules.push_back(listing_.RuleText(rule));
  for (int level = 1; level <= PuzzleListing::kLevels; ++level) levels.push_back(std::to_string(level));
  for (const ListButtonRow& row : kListButtons) {
    const bool enabled = &row == &kListButtons[kListOpen]   ? listing_.CanOpen(selected_)
                         : &row == &kListButtons[kListGoOn] ? listing_.CanGoOn(selected_)
                                                            : true;
    buttons.push_back(ButtonJson(row, enabled));
  }
  list.Add("title", listing_.Title()).AddJson("buttons", buttons);
  list.Add("levels", levels).Add("level", filter_.Level).Add("rules", rules).Add("rule", filter_.Rule);
  list.Add("unsolved", filter_.Unsolved).Add("summary", listing_.Summary(static_cast<int>(rows_.size())));
  list.Add("selected", selected_).Add("searches", listing_.Known() < listing_.Count());
  if (selected_ >= 0) list.Add("needs", listing_.NeedsText(selected_));
  if (const Main* begun = listing_.Begun(selected_)) list.AddJson("picture", PictureJson(*begun));
  list.Add("captions",
           std::vector<std::string>{kLevelFilter, kRuleFilter, kUnsolvedFilter, kNeedsTitle, kListPicture});
  draw("PuzzleList", list);
  for (const int row : rows_) {
    std::vector<std::string> texts;
    std::string spoken;
    for (int column = 0; column < PuzzleListing::kColumns; ++column) {
      texts.push_back(listing_.TextOf(row, column));
      const std::string word = listing_.SpokenAt(row, column);
      if (!word.empty()) spoken += (spoken.empty() ? "" : ", ") + word;
    }
    rows.push_back(Message().Add("row", row).Add("texts", texts).Add("spoken", spoken).Text());
  }
  Message table;
  table.Add("kind", "rows").Add("sorted", column_).Add("descending", descending_).AddJson("rows", rows);
  table.Add("headings",
            std::vector<std::string>(PuzzleListing::kHeadings.begin(), PuzzleListing::kHeadings.end()));
  draw("Puzzles", table);
}

}  // namespace bivouac
