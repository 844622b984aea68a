// The list of puzzles as the toolkit's table, sorted and with what a player asks for.
#pragma once

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include "walks/puzzle_listing.h"

namespace bivouac {

class PuzzleTable : public QAbstractTableModel {
 public:
  /// What a column is sorted by: an int.
  static constexpr int kSortRole = Qt::UserRole;

  explicit PuzzleTable(PuzzleListing& listing) : listing_(listing) {}

  /// Shows the puzzles of the present size and player anew.
  void Refresh();
  const PuzzleListing& Listing() const { return listing_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  PuzzleListing& listing_;
};

class PuzzleFilter : public QSortFilterProxyModel {
 public:
  explicit PuzzleFilter(PuzzleTable& table);

  PuzzleListing::Filter Wanted;

  /// To be called when that, or what puzzles need, has changed.
  void Apply() { invalidateFilter(); }

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  PuzzleTable& table_;
};

}  // namespace bivouac
