#include "deduction/clusters.h"

#include <algorithm>

namespace bivouac {
namespace {

/// The open fields of a row that lie straight beyond a tree, seen from a tent behind that tree. Tree and tent
/// always are of one cluster.
Positions FieldsBeyond(const Lines& rows, int row) {
  const Positions west = WithBefore(rows.Trees(row) & WithBefore(rows.Tents(row)));
  const Positions east = WithBehind(rows.Trees(row) & WithBehind(rows.Tents(row)));
  const Positions north = rows.Trees(row - 1) & rows.Tents(row - 2);
  const Positions south = rows.Trees(row + 1) & rows.Tents(row + 2);
  return rows.Open(row) & (north | east | south | west);
}

class Clusters {
 public:
  Clusters(const Array<int>& board, const Lines& rows) : board_(board), rows_(rows), size_(rows.axis.size) {
    clusterOf_.fill(kNone);
  }

  std::optional<ClusterFind> Find() {
    for (int row = 0; row < size_; ++row) {
      AnyIn(FieldsBeyond(rows_, row), [&](int col) {
        beyond_.Add(row * size_ + col);
        return false;
      });
    }
    // Without such a field no cluster decides anything.
    if (beyond_.Count() == 0) return {};
    for (int row = 0; row < size_; ++row) {
      std::optional<ClusterFind> find;
      const bool found = AnyIn(rows_.Trees(row) | rows_.Tents(row), [&](int col) {
        const int cell = row * size_ + col;
        if (ClusterOf(cell) == kNone) find = Decide(cell);
        return find.has_value();
      });
      if (found) return find;
    }
    return {};
  }

 private:
  static constexpr std::int16_t kNone = -1;
  static constexpr std::int16_t kReached = -2;
  enum class Neighbours { Any, NoOutsideTree };
  struct Counts {
    int Tents;
    int Trees;
  };

  static bool IsMember(int code) { return code == CELL_TREE || code == CELL_TENT; }
  std::int16_t& ClusterOf(int cell) { return clusterOf_[static_cast<std::size_t>(cell)]; }

  template <class Visit>
  void ForEachSide(int cell, Visit visit) const {
    const int row = cell / size_;
    const int col = cell % size_;
    if (row > 0) visit(cell - size_);
    if (col < size_ - 1) visit(cell + 1);
    if (row < size_ - 1) visit(cell + size_);
    if (col > 0) visit(cell - 1);
  }

  std::optional<ClusterFind> Decide(int first) {
    ++number_;
    Reach(first);
    const Counts counts = Count();
    if (counts.Trees < counts.Tents) return {};
    const bool balanced = counts.Trees == counts.Tents;
    ClusterFind find{balanced ? CELL_GRASS : CELL_TENT, {}};
    TakeExits(balanced ? Neighbours::NoOutsideTree : Neighbours::Any, find.Cells);
    const bool decided =
        balanced ? find.Cells.Count() > 0 : find.Cells.Count() == counts.Trees - counts.Tents;
    return decided ? std::optional(find) : std::nullopt;
  }

  /// Collects the members of a cluster from its first cell, in rising order.
  void Reach(int first) {
    memberCount_ = 0;
    const auto take = [&](int cell) {
      ClusterOf(cell) = kReached;
      members_[static_cast<std::size_t>(memberCount_++)] = cell;
    };
    take(first);
    for (int i = 0; i < memberCount_; ++i) {
      const int cell = members_[static_cast<std::size_t>(i)];
      ForEachSide(cell, [&](int side) {
        const bool joins = IsMember(board_[side]) && board_[side] != board_[cell];
        if (joins && ClusterOf(side) == kNone) take(side);
      });
    }
    std::sort(members_.begin(), members_.begin() + memberCount_);
  }

  /// Joins the members in sweeps over them, from the first, until all are in. A cell counts once for every
  /// side on which it touches the cluster at the moment of its visit, so a tent between two trees of the
  /// cluster counts as two.
  Counts Count() {
    const int first = members_[0];
    Counts counts{board_[first] == CELL_TENT ? 1 : 0, board_[first] == CELL_TREE ? 1 : 0};
    ClusterOf(first) = number_;
    for (int left = memberCount_ - 1; left > 0;) {
      for (int i = 1; i < memberCount_; ++i) {
        const int cell = members_[static_cast<std::size_t>(i)];
        if (ClusterOf(cell) == number_) continue;
        const int code = board_[cell];
        int links = 0;
        ForEachSide(cell, [&](int side) {
          if (ClusterOf(side) == number_ && IsMember(board_[side]) && board_[side] != code) ++links;
        });
        if (links == 0) continue;
        ClusterOf(cell) = number_;
        (code == CELL_TENT ? counts.Tents : counts.Trees) += links;
        --left;
      }
    }
    return counts;
  }

  /// The open fields that pass the line test, in rising order. They take the cluster's number and keep it,
  /// also when the cluster yields nothing, so that later clusters find them taken.
  void TakeExits(Neighbours neighbours, CellList& exits) {
    for (const int cell : beyond_) {
      if (!PassesLineTest(cell)) continue;
      if (neighbours == Neighbours::NoOutsideTree && TouchesOutsideTree(cell)) continue;
      ClusterOf(cell) = number_;
      exits.Add(cell);
    }
  }

  bool TouchesOutsideTree(int cell) {
    bool touches = false;
    ForEachSide(cell, [&](int side) {
      touches = touches || (board_[side] == CELL_TREE && ClusterOf(side) != number_);
    });
    return touches;
  }

  bool PassesLineTest(int cell) {
    const int row = cell / size_;
    const int col = cell % size_;
    const auto inLine = [&](int step) {
      return ClusterOf(cell + step) == number_ && board_[cell + step] == CELL_TREE &&
             ClusterOf(cell + 2 * step) == number_ && board_[cell + 2 * step] == CELL_TENT;
    };
    // North alone may take a field that another cluster holds.
    if (row > 1 && inLine(-size_)) return true;
    if (ClusterOf(cell) != kNone) return false;
    return (col < size_ - 2 && inLine(1)) || (row < size_ - 2 && inLine(size_)) || (col > 1 && inLine(-1));
  }

  const Array<int>& board_;
  const Lines& rows_;
  int size_;
  CellList beyond_;
  std::int16_t number_ = 0;
  std::array<std::int16_t, kMaxCells> clusterOf_;
  int memberCount_ = 0;
  std::array<int, kMaxCells> members_;
};

}  // namespace

std::optional<ClusterFind> FindCluster(const Array<int>& board, const Lines& rows) {
  return Clusters(board, rows).Find();
}

std::optional<ClusterFind> FindCluster(const Array<int>& board, int size) {
  return FindCluster(board, Lines(board, {Direction::Rows, size}));
}

}  // namespace bivouac
