#include "deduction/clusters.h"

#include <set>
#include <utility>

namespace bivouac {
namespace {

struct Cluster {
  int Number;
  int Tents = 0;
  int Trees = 0;
};

class Clusters {
 public:
  Clusters(const Array<int>& board, int size) : board_(board), size_(size), cells_(size * size) {
    clusterOf_.assign(static_cast<std::size_t>(cells_), kNone);
    for (int cell = 0; cell < cells_; ++cell) {
      if (board_[cell] == CELL_OPEN) open_.push_back(cell);
    }
  }

  std::optional<ClusterFind> Find() {
    for (int cell = 0; cell < cells_; ++cell) {
      if (!IsMember(board_[cell]) || ClusterOf(cell) != kNone) continue;
      const Cluster cluster = Grow(cell);
      // The line test asks for a tree and a tent of the cluster.
      if (cluster.Trees == 0 || cluster.Tents == 0) continue;
      if (cluster.Trees > cluster.Tents) {
        std::vector<int> exits = Exits(cluster.Number, Neighbours::Any);
        if (static_cast<int>(exits.size()) == cluster.Trees - cluster.Tents) {
          return ClusterFind{CELL_TENT, std::move(exits)};
        }
      } else if (cluster.Trees == cluster.Tents) {
        std::vector<int> exits = Exits(cluster.Number, Neighbours::NoOutsideTree);
        if (!exits.empty()) return ClusterFind{CELL_GRASS, std::move(exits)};
      }
    }
    return {};
  }

 private:
  static constexpr int kNone = -1;
  enum class Neighbours { Any, NoOutsideTree };

  static bool IsMember(int code) { return code == CELL_TREE || code == CELL_TENT; }
  int& ClusterOf(int cell) { return clusterOf_[static_cast<std::size_t>(cell)]; }

  template <class Visit>
  void ForEachSide(int cell, Visit visit) const {
    const int row = cell / size_;
    const int col = cell % size_;
    if (row > 0) visit(cell - size_);
    if (col < size_ - 1) visit(cell + 1);
    if (row < size_ - 1) visit(cell + size_);
    if (col > 0) visit(cell - 1);
  }

  /// Sweeps over the board until nothing joins. A cell counts once for every side on which it touches the
  /// cluster at the moment of its visit, so a tent between two trees of the cluster counts as two. Only cells
  /// that touch the cluster need a visit, in the order in which the sweeps come to them.
  Cluster Grow(int first) {
    Cluster cluster{++count_, board_[first] == CELL_TENT ? 1 : 0, board_[first] == CELL_TREE ? 1 : 0};
    std::set<std::pair<int, int>> visits;  // Sweep and cell.
    const auto isPartner = [&](int cell, int side) {
      return IsMember(board_[side]) && board_[side] != board_[cell];
    };
    const auto join = [&](int sweep, int cell) {
      ClusterOf(cell) = cluster.Number;
      ForEachSide(cell, [&](int side) {
        if (!isPartner(cell, side) || ClusterOf(side) != kNone) return;
        visits.emplace(side > cell ? sweep : sweep + 1, side);
      });
    };
    join(0, first);
    while (!visits.empty()) {
      const auto [sweep, cell] = *visits.begin();
      visits.erase(visits.begin());
      if (ClusterOf(cell) != kNone) continue;
      int& count = board_[cell] == CELL_TENT ? cluster.Tents : cluster.Trees;
      ForEachSide(cell, [&](int side) {
        if (isPartner(cell, side) && ClusterOf(side) == cluster.Number) ++count;
      });
      join(sweep, cell);
    }
    return cluster;
  }

  /// The open fields that pass the line test, in rising order. They take the cluster's number and keep it,
  /// also when the cluster yields nothing, so that later clusters find them taken.
  std::vector<int> Exits(int number, Neighbours neighbours) {
    std::vector<int> exits;
    for (const int cell : open_) {
      if (neighbours == Neighbours::NoOutsideTree && TouchesOutsideTree(cell, number)) continue;
      if (!PassesLineTest(cell, number)) continue;
      ClusterOf(cell) = number;
      exits.push_back(cell);
    }
    return exits;
  }

  bool TouchesOutsideTree(int cell, int number) {
    bool touches = false;
    ForEachSide(cell, [&](int side) {
      touches = touches || (board_[side] == CELL_TREE && ClusterOf(side) != number);
    });
    return touches;
  }

  bool PassesLineTest(int cell, int number) {
    const int row = cell / size_;
    const int col = cell % size_;
    const auto inLine = [&](int step) {
      return ClusterOf(cell + step) == number && board_[cell + step] == CELL_TREE &&
             ClusterOf(cell + 2 * step) == number && board_[cell + 2 * step] == CELL_TENT;
    };
    // North alone may take a field that another cluster holds.
    if (row > 1 && inLine(-size_)) return true;
    if (ClusterOf(cell) != kNone) return false;
    return (col < size_ - 2 && inLine(1)) || (row < size_ - 2 && inLine(size_)) || (col > 1 && inLine(-1));
  }

  const Array<int>& board_;
  int size_;
  int cells_;
  int count_ = 0;
  std::vector<int> clusterOf_;
  std::vector<int> open_;  // In rising order.
};

}  // namespace

std::optional<ClusterFind> FindCluster(const Array<int>& board, int size) {
  return Clusters(board, size).Find();
}

}  // namespace bivouac
