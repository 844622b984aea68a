#include "walks/puzzle_listing.h"

#include <algorithm>
#include <cctype>
#include <limits>

#include "game/play.h"

namespace bivouac {
namespace {

std::string TimeOrNothing(int seconds) {
  return seconds > 0 ? TimeText(seconds) : std::string();
}

int TimeOrLast(int seconds) {
  return seconds > 0 ? seconds : std::numeric_limits<int>::max();
}

}  // namespace

PuzzleStats NeedsOf(Workbench& bench, const ListedPuzzle& puzzle) {
  try {
    if (puzzle.Readable) return StatsOfPuzzle(bench.main, puzzle.Record);
  } catch (const RunTimeError&) {
  }
  return {};
}

void PuzzleListing::Refresh() {
  puzzles_ = std::make_shared<std::vector<ListedPuzzle>>(ListPuzzles(main_));
  kept_ = FindKeptGames(main_);
  needs_.clear();
}

std::string PuzzleListing::Title() const {
  const std::string size = std::to_string(main_.BoardSize);
  return "Puzzles " + size + "x" + size;
}

bool PuzzleListing::CanGoOn(int row) const {
  const auto kept = kept_.find(row + 1);
  return CanOpen(row) && kept != kept_.end() && kept->second.has_value();
}

std::string PuzzleListing::TextOf(int row, int column) const {
  const ListedPuzzle& puzzle = At(row);
  if (column == kNumber) return std::to_string(row + 1);
  if (!puzzle.Readable) return column == kState ? "cannot be read" : "";
  const int level = LevelOf(puzzle.Record.LevelSize);
  switch (column) {
    case kLevel:
      return level == 0 ? "not rated" : std::to_string(level);
    case kTrees:
      return std::to_string(puzzle.Trees);
    case kBest:
      return TimeOrNothing(puzzle.BestTime) +
             (puzzle.BestTime <= 0 || puzzle.BestBy.empty() ? "" : " by " + puzzle.BestBy);
    case kOwn:
      return TimeOrNothing(puzzle.OwnTime);
    default:
      const auto kept = kept_.find(row + 1);
      if (kept == kept_.end()) return IsSolved(row) ? "solved" : "new";
      return kept->second ? KeptText(*kept->second) : "kept, but damaged";
  }
}

std::string PuzzleListing::SpokenAt(int row, int column) const {
  std::string text = TextOf(row, column);
  if (text.empty()) return text;
  switch (column) {
    case kNumber:
      return "Puzzle " + text;
    case kLevel:
      return std::isdigit(static_cast<unsigned char>(text[0])) ? "level " + text : text;
    case kTrees:
      return text + " trees";
    case kBest:
      return "best time " + text;
    case kOwn:
      return "your time " + text;
    default:
      return text;
  }
}

int PuzzleListing::SortedBy(int row, int column) const {
  const ListedPuzzle& puzzle = At(row);
  switch (column) {
    case kLevel:
      return LevelOf(puzzle.Record.LevelSize);
    case kTrees:
      return puzzle.Trees;
    case kBest:
      return TimeOrLast(puzzle.BestTime);
    case kOwn:
      return TimeOrLast(puzzle.OwnTime);
    case kState:
      return kept_.contains(row + 1) ? 1 : 2 * IsSolved(row);
    default:
      return row;
  }
}

bool PuzzleListing::Shows(int row, const Filter& filter) const {
  if (filter.Level != 0 && LevelOf(At(row).Record.LevelSize) != filter.Level) return false;
  if (filter.Unsolved && IsSolved(row)) return false;
  if (filter.Rule == 0) return true;
  return row < Known() &&
         (needs_[static_cast<std::size_t>(row)].Cases & CasesOf(HintRules()[filter.Rule - 1])) != 0;
}

std::vector<std::string> PuzzleListing::NeedsText(int row) {
  const PuzzleStats needs = row < Known() ? needs_[static_cast<std::size_t>(row)] : NeedsOf(walker_, At(row));
  std::vector<std::string> lines;
  for (const HintRule& rule : HintRules()) {
    if ((needs.Cases & CasesOf(rule)) != 0) lines.emplace_back(rule.Title);
  }
  if (!needs.Finished) lines.emplace_back("Hints end before the solution.");
  return lines;
}

std::string PuzzleListing::RuleText(int rule) const {
  const HintRule& row = HintRules()[rule - 1];
  if (needs_.empty()) return std::string(row.Title);
  const auto count = std::count_if(needs_.begin(), needs_.end(), [&](const PuzzleStats& needs) {
    return (needs.Cases & CasesOf(row)) != 0;
  });
  return std::string(row.Title) + ", " + std::to_string(count) + (count == 1 ? " puzzle" : " puzzles");
}

std::string PuzzleListing::Summary(int shown) const {
  std::string text = SolvedText(main_, *puzzles_);
  if (shown != Count()) text += "; " + std::to_string(shown) + " shown";
  return main_.cmdOpen.Enabled ? text : text + ". For looking only now";
}

const Main* PuzzleListing::Begun(int row) {
  if (row < 0 || !At(row).Readable) return nullptr;
  try {
    LayOutRecord(bench_.main, At(row).Record);
    StartPuzzle(bench_.main);
    return &bench_.main;
  } catch (const RunTimeError&) {
    return nullptr;
  }
}

}  // namespace bivouac
