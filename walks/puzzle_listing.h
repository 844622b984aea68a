// The list in which a player chooses a puzzle of the present size: what it says, how it is sorted, and which
// puzzles it shows. A window draws it.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "storage/kept_game.h"
#include "storage/puzzle_list.h"
#include "walks/pack_stats.h"
#include "workbench/workbench.h"

namespace bivouac {

struct ListButtonRow {
  const char* Name;
  const char* Caption;  ///< With "&" before the letter that presses it.
  const char* Description;
};
enum ListButton { kListToday, kListGoOn, kListOpen, kListClose };
/// From left to right.
inline constexpr std::array<ListButtonRow, 4> kListButtons = {{
    {"Today", "&Today's", "Chooses the puzzle of the day"},
    {"GoOn", "&Go On", "Goes on with the kept game of the chosen puzzle"},
    {"Open", "&Open", "Opens the chosen puzzle"},
    {"Close", "&Close", "Closes without opening a puzzle"},
}};

/// The filters, the first choice of those that have several, and what stands beside the table.
inline constexpr const char* kLevelFilter = "&Level";
inline constexpr const char* kEveryLevel = "All";
inline constexpr const char* kRuleFilter = "&Needs";
inline constexpr const char* kAnyRule = "Any";
inline constexpr const char* kUnsolvedFilter = "&Unsolved only";
inline constexpr const char* kNeedsTitle = "&Rules that it needs";
inline constexpr const char* kListPicture = "Picture of the chosen puzzle";

/// What hints need to solve a puzzle; nothing for one that cannot be started.
PuzzleStats NeedsOf(Workbench& bench, const ListedPuzzle& puzzle);

class PuzzleListing {
 public:
  enum Column { kNumber, kLevel, kTrees, kBest, kOwn, kState, kColumns };
  static constexpr std::array<const char*, kColumns> kHeadings = {"Number",    "Level",     "Trees",
                                                                  "Best time", "Your time", "State"};
  static constexpr int kLevels = 5;
  using Puzzles = std::shared_ptr<const std::vector<ListedPuzzle>>;

  explicit PuzzleListing(const Main& main) : main_(main) {}

  /// Lists the puzzles of the present size and player anew, without what they need.
  void Refresh();
  /// Shared with whoever searches for what they need.
  const Puzzles& All() const { return puzzles_; }
  int Count() const { return static_cast<int>(puzzles_->size()); }
  std::string Title() const;

  /// Rows count from 0 in the order of the puzzles' numbers.
  std::string TextOf(int row, int column) const;
  /// The text with what it tells of: of a row a reader says the cells one by one.
  std::string SpokenAt(int row, int column) const;
  /// What a column is sorted by. Where there is no time, it comes after all that there are.
  int SortedBy(int row, int column) const;

  /// Which puzzles are shown.
  struct Filter {
    int Level = 0;          ///< 0: every level.
    bool Unsolved = false;  ///< Only those that are not solved.
    int Rule = 0;           ///< Only those that need this one of HintRules(), from 1; 0: any.
  };
  bool Shows(int row, const Filter& filter) const;

  /// -1 stands for no row.
  bool CanOpen(int row) const { return row >= 0 && main_.cmdOpen.Enabled; }
  /// The player's game of the puzzle was kept, and is not damaged.
  bool CanGoOn(int row) const;
  /// The row of the puzzle of a day, which counts as the Julian day does. Requires: a row.
  int Today(long day) const { return PuzzleOfDay(day, main_.BoardSize, Count()) - 1; }

  /// What a puzzle needs came to light. The next row is meant each time.
  void AddNeeds(const PuzzleStats& needs) { needs_.push_back(needs); }
  void FindNextNeeds() { AddNeeds(NeedsOf(walker_, At(Known()))); }
  /// How many rows that is known of.
  int Known() const { return static_cast<int>(needs_.size()); }
  /// The rules that a row needs, found out where it is not known; one more line where they do not do.
  std::vector<std::string> NeedsText(int row);
  /// A rule, from 1, with how many of the puzzles known need it.
  std::string RuleText(int rule) const;
  /// How many are solved and how fast, and how many are shown.
  std::string Summary(int shown) const;

  /// The row's puzzle as it begins; nullptr for a damaged one. It stands until the next call.
  const Main* Begun(int row);

 private:
  const ListedPuzzle& At(int row) const { return puzzles_->at(static_cast<std::size_t>(row)); }
  bool IsSolved(int row) const { return SolvedTime(main_, At(row)) > 0; }

  const Main& main_;
  std::map<int, std::optional<KeptGame>> kept_;  // By number.
  Puzzles puzzles_ = std::make_shared<std::vector<ListedPuzzle>>();
  std::vector<PuzzleStats> needs_;  // Of the first rows, as far as they are known.
  Workbench bench_;                 // Lays out a puzzle.
  Workbench walker_;                // Walks it.
};

}  // namespace bivouac
