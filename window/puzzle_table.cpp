#include "window/puzzle_table.h"

namespace bivouac {

void PuzzleTable::Refresh() {
  beginResetModel();
  listing_.Refresh();
  endResetModel();
}

int PuzzleTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : listing_.Count();
}

int PuzzleTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : PuzzleListing::kColumns;
}

QVariant PuzzleTable::data(const QModelIndex& index, int role) const {
  const int row = index.row(), column = index.column();
  if (role == Qt::DisplayRole) return QString::fromStdString(listing_.TextOf(row, column));
  if (role == Qt::AccessibleTextRole) return QString::fromStdString(listing_.SpokenAt(row, column));
  if (role == kSortRole) return listing_.SortedBy(row, column);
  const bool isFigure = column <= PuzzleListing::kTrees;
  if (role == Qt::TextAlignmentRole && isFigure) return int{Qt::AlignCenter};
  return {};
}

QVariant PuzzleTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal || section >= PuzzleListing::kColumns)
    return {};
  return QString::fromLatin1(PuzzleListing::kHeadings[static_cast<std::size_t>(section)]);
}

PuzzleFilter::PuzzleFilter(PuzzleTable& table) : table_(table) {
  setSourceModel(&table);
  setSortRole(PuzzleTable::kSortRole);
}

bool PuzzleFilter::filterAcceptsRow(int row, const QModelIndex&) const {
  return table_.Listing().Shows(row, Wanted);
}

}  // namespace bivouac
