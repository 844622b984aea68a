#include <algorithm>

#include "deduction/finds.h"
#include "game/board.h"

namespace bivouac {
namespace {

using CellList = FixedList<int, kMaxCells>;

/// The open fields of a row that lie straight beyond a tree, seen from a tent on its other side. Tree and
/// tent always are of one cluster.
Positions FieldsBeyond(const Lines& rows, int row) {
  const Positions west = WithBefore(rows.Trees(row) & WithBefore(rows.Tents(row)));
  const Positions east = WithAfter(rows.Trees(row) & WithAfter(rows.Tents(row)));
  const Positions north = rows.Trees(row - 1) & rows.Tents(row - 2);
  const Positions south = rows.Trees(row + 1) & rows.Tents(row + 2);
  return rows.Open(row) & (north | east | south | west);
}

class Clusters {
 public:
  /// `beyond` are the fields of FieldsBeyond, in rising order.
  Clusters(const Lines& rows, const CellList& beyond)
      : board_(rows.Board()), rows_(rows), size_(rows.Size()), beyond_(beyond) {
    clusterOf_.Fill(kNone);
  }

  bool Decide(Find& find) {
    for (int row = 0; row < size_; ++row) {
      const bool found = AnyIn(rows_.Trees(row) | rows_.Tents(row), [&](int col) {
        const int cell = row * size_ + col;
        return clusterOf_[cell] == kNone && DecideCluster(cell, find);
      });
      if (found) return true;
    }
    return false;
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

  bool DecideCluster(int first, Find& find) {
    ++number_;
    Reach(first);
    const Counts counts = Count();
    if (counts.Trees < counts.Tents) return false;
    const bool balanced = counts.Trees == counts.Tents;
    CellList exits;
    TakeExits(balanced ? Neighbours::NoOutsideTree : Neighbours::Any, exits);
    const bool decided = balanced ? !exits.IsEmpty() : exits.Count() == counts.Trees - counts.Tents;
    if (!decided) return false;
    find.Case = balanced ? ClusterIsServed : ClusterNeedsTents;
    for (const int cell : exits) find.Add(cell, balanced ? Role::Grass : Role::Tent);
    for (const int cell : members_) {
      find.Add(cell, board_[cell] == CELL_TREE ? Role::Tree : Role::StandingTent);
    }
    return true;
  }

  /// Collects the members of a cluster from its first cell, in rising order.
  void Reach(int first) {
    members_.Clear();
    const auto take = [&](int cell) {
      clusterOf_[cell] = kReached;
      members_.Add(cell);
    };
    take(first);
    for (int i = 0; i < members_.Count(); ++i) {
      const int cell = members_[i];
      ForEachSide(size_, cell, [&](int side, int) {
        const bool joins = IsMember(board_[side]) && board_[side] != board_[cell];
        if (joins && clusterOf_[side] == kNone) take(side);
      });
    }
    std::sort(members_.begin(), members_.end());
  }

  /// Joins the members in sweeps over them, from the first, until all are in. A cell counts once for every
  /// side on which it touches the cluster at the moment of its visit, so a tent between two trees of the
  /// cluster counts as two.
  Counts Count() {
    const int first = members_[0];
    Counts counts{board_[first] == CELL_TENT ? 1 : 0, board_[first] == CELL_TREE ? 1 : 0};
    clusterOf_[first] = number_;
    for (int left = members_.Count() - 1; left > 0;) {
      for (const int cell : members_) {
        if (clusterOf_[cell] == number_) continue;
        const int code = board_[cell];
        int links = 0;
        ForEachSide(size_, cell, [&](int side, int) {
          if (clusterOf_[side] == number_ && IsMember(board_[side]) && board_[side] != code) ++links;
        });
        if (links == 0) continue;
        clusterOf_[cell] = number_;
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
      clusterOf_[cell] = number_;
      exits.Add(cell);
    }
  }

  bool TouchesOutsideTree(int cell) {
    bool touches = false;
    ForEachSide(size_, cell, [&](int side, int) {
      touches = touches || (board_[side] == CELL_TREE && clusterOf_[side] != number_);
    });
    return touches;
  }

  bool PassesLineTest(int cell) {
    const int row = cell / size_;
    const int col = cell % size_;
    const auto inLine = [&](int step) {
      return clusterOf_[cell + step] == number_ && board_[cell + step] == CELL_TREE &&
             clusterOf_[cell + 2 * step] == number_ && board_[cell + 2 * step] == CELL_TENT;
    };
    // North alone may take a field that another cluster holds.
    if (row > 1 && inLine(-size_)) return true;
    if (clusterOf_[cell] != kNone) return false;
    return (col < size_ - 2 && inLine(1)) || (row < size_ - 2 && inLine(size_)) || (col > 1 && inLine(-1));
  }

  const Array<int>& board_;
  const Lines& rows_;
  const int size_;
  const CellList& beyond_;
  std::int16_t number_ = 0;
  FixedArray<std::int16_t, kMaxCells> clusterOf_;
  CellList members_;
};

}  // namespace

bool FindCluster(Lines& rows, Find& find) {
  CellList beyond;
  for (int row = 0; row < rows.Size(); ++row) {
    ForEachIn(FieldsBeyond(rows, row), [&](int col) { beyond.Add(rows.CellAt(row, col)); });
  }
  // Without such a field no cluster decides anything.
  return !beyond.IsEmpty() && Clusters(rows, beyond).Decide(find);
}

}  // namespace bivouac
