#include "window/puzzle_table.h"

#include <algorithm>
#include <array>
#include <limits>

namespace bivouac {
namespace {

constexpr std::array<const char*, PuzzleTable::kColumns> kHeadings = {"Number",    "Level",     "Trees",
                                                                      "Best time", "Your time", "State"};

}  // namespace

void PuzzleTable::Refresh() {
  beginResetModel();
  puzzles_ = std::make_shared<std::vector<ListedPuzzle>>(ListPuzzles(main_));
  kept_ = FindKeptGames(main_);
  needs_.clear();
  endResetModel();
}

bool PuzzleTable::IsSolved(int row) const {
  return SolvedTime(main_, puzzles_->at(static_cast<std::size_t>(row))) > 0;
}

bool PuzzleTable::IsKept(int row) const {
  const auto kept = kept_.find(row + 1);
  return kept != kept_.end() && kept->second.has_value();
}

const PuzzleStats* PuzzleTable::NeedsOf(int row) const {
  const auto place = static_cast<std::size_t>(row);
  return place < needs_.size() ? &needs_[place] : nullptr;
}

long PuzzleTable::CountNeeding(std::uint64_t cases) const {
  return std::count_if(needs_.begin(), needs_.end(),
                       [&](const PuzzleStats& needs) { return (needs.Cases & cases) != 0; });
}

int PuzzleTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(puzzles_->size());
}

int PuzzleTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant PuzzleTable::data(const QModelIndex& index, int role) const {
  if (role == Qt::DisplayRole) return TextOf(index.row(), index.column());
  if (role == Qt::AccessibleTextRole) return SpokenAt(index.row(), index.column());
  if (role == kSortRole) return SortedBy(index.row(), index.column());
  const bool isFigure = index.column() <= kTrees;
  if (role == Qt::TextAlignmentRole && isFigure) return int{Qt::AlignCenter};
  return {};
}

QVariant PuzzleTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal || section >= kColumns) return {};
  return QString::fromLatin1(kHeadings[static_cast<std::size_t>(section)]);
}

QString PuzzleTable::TextOf(int row, int column) const {
  const ListedPuzzle& puzzle = puzzles_->at(static_cast<std::size_t>(row));
  if (column == kNumber) return QString::number(row + 1);
  if (!puzzle.Readable) return column == kState ? QStringLiteral("cannot be read") : QString();
  const auto time = [](int seconds) {
    return seconds > 0 ? QString::fromStdString(TimeText(seconds)) : QString();
  };
  const int level = LevelOf(puzzle.Record.LevelSize);
  switch (column) {
    case kLevel:
      return level == 0 ? QStringLiteral("not rated") : QString::number(level);
    case kTrees:
      return QString::number(puzzle.Trees);
    case kBest:
      if (puzzle.BestTime <= 0 || puzzle.BestBy.empty()) return time(puzzle.BestTime);
      return QStringLiteral("%1 by %2").arg(time(puzzle.BestTime), QString::fromStdString(puzzle.BestBy));
    case kOwn:
      return time(puzzle.OwnTime);
    default:
      if (IsKept(row)) return QString::fromStdString(KeptText(*kept_.at(row + 1)));
      if (kept_.contains(row + 1)) return QStringLiteral("kept, but damaged");
      return IsSolved(row) ? QStringLiteral("solved") : QStringLiteral("new");
  }
}

/// The text with what it tells of: of a row a reader says the cells one by one.
QString PuzzleTable::SpokenAt(int row, int column) const {
  QString text = TextOf(row, column);
  if (text.isEmpty()) return text;
  switch (column) {
    case kNumber:
      return QStringLiteral("Puzzle ") + text;
    case kLevel:
      return text.at(0).isLetter() ? text : QStringLiteral("level ") + text;
    case kTrees:
      return text + QStringLiteral(" trees");
    case kBest:
      return QStringLiteral("best time ") + text;
    case kOwn:
      return QStringLiteral("your time ") + text;
    default:
      return text;
  }
}

/// Where there is no time, it comes after all that there are.
int PuzzleTable::SortedBy(int row, int column) const {
  const ListedPuzzle& puzzle = puzzles_->at(static_cast<std::size_t>(row));
  const auto time = [](int seconds) { return seconds > 0 ? seconds : std::numeric_limits<int>::max(); };
  switch (column) {
    case kLevel:
      return LevelOf(puzzle.Record.LevelSize);
    case kTrees:
      return puzzle.Trees;
    case kBest:
      return time(puzzle.BestTime);
    case kOwn:
      return time(puzzle.OwnTime);
    case kState:
      return kept_.contains(row + 1) ? 1 : 2 * IsSolved(row);
    default:
      return row;
  }
}

PuzzleFilter::PuzzleFilter(PuzzleTable& table) : table_(table) {
  setSourceModel(&table);
  setSortRole(PuzzleTable::kSortRole);
}

bool PuzzleFilter::filterAcceptsRow(int row, const QModelIndex&) const {
  const ListedPuzzle& puzzle = table_.Puzzles()->at(static_cast<std::size_t>(row));
  if (Level != 0 && LevelOf(puzzle.Record.LevelSize) != Level) return false;
  if (Unsolved && table_.IsSolved(row)) return false;
  if (Cases == 0) return true;
  const PuzzleStats* needs = table_.NeedsOf(row);
  return needs != nullptr && (needs->Cases & Cases) != 0;
}

}  // namespace bivouac
