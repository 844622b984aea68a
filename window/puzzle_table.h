// The puzzles of a size as a table, and what of it is shown.
#pragma once

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <memory>
#include <vector>

#include "storage/kept_game.h"
#include "storage/puzzle_list.h"
#include "walks/pack_stats.h"

namespace bivouac {

/// What the table shows; shared with whoever searches for what its puzzles need.
using PuzzlesShown = std::shared_ptr<const std::vector<ListedPuzzle>>;

class PuzzleTable : public QAbstractTableModel {
 public:
  enum Column { kNumber, kLevel, kTrees, kBest, kOwn, kState, kColumns };
  /// What a column is sorted by: an int.
  static constexpr int kSortRole = Qt::UserRole;

  explicit PuzzleTable(const Main& main) : main_(main) {}

  /// Shows the puzzles of the present size and player anew, without what they need.
  void Refresh();
  const PuzzlesShown& Puzzles() const { return puzzles_; }
  bool IsSolved(int row) const;
  /// Whether the player's game of the puzzle was kept, and is not damaged.
  bool IsKept(int row) const;

  /// What a puzzle needs came to light. The next row is meant each time.
  void AddNeeds(const PuzzleStats& needs) { needs_.push_back(needs); }
  /// Nothing as long as it is not known.
  const PuzzleStats* NeedsOf(int row) const;
  /// Puzzles of those known that need one of some cases.
  long CountNeeding(std::uint64_t cases) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString TextOf(int row, int column) const;
  QString SpokenAt(int row, int column) const;
  int SortedBy(int row, int column) const;

  const Main& main_;
  std::map<int, std::optional<KeptGame>> kept_;  // By number.
  PuzzlesShown puzzles_ = std::make_shared<std::vector<ListedPuzzle>>();
  std::vector<PuzzleStats> needs_;  // Of the first rows, as far as they are known.
};

/// Sorts the table and shows those puzzles that a player asks for.
class PuzzleFilter : public QSortFilterProxyModel {
 public:
  explicit PuzzleFilter(PuzzleTable& table);

  int Level = 0;            ///< 0: every level.
  bool Unsolved = false;    ///< Only those that are not solved.
  std::uint64_t Cases = 0;  ///< Only those that need one of them; 0: all.

  /// To be called when one of these, or what puzzles need, has changed.
  void Apply() { invalidateFilter(); }

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  PuzzleTable& table_;
};

}  // namespace bivouac
