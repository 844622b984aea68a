// Clusters: trees and tents that touch each other in a chain, tree to tent to tree.
#pragma once

#include <array>
#include <optional>

#include "deduction/lines.h"

namespace bivouac {

/// Cells in rising order.
class CellList {
 public:
  CellList() {}  // Leaves the unused places as they are.

  void Add(int cell) { cells_[static_cast<std::size_t>(count_++)] = cell; }
  int Count() const { return count_; }
  const int* begin() const { return cells_.data(); }
  const int* end() const { return cells_.data() + count_; }

 private:
  int count_ = 0;
  std::array<int, kMaxCells> cells_;
};

struct ClusterFind {
  int Code;        ///< CELL_TENT or CELL_GRASS: what the cells must be.
  CellList Cells;  ///< Open fields in line beyond a tree of the cluster, seen from a tent of it.
};

/// The first cluster, in the order of its first cell, that decides a field.
std::optional<ClusterFind> FindCluster(const Array<int>& board, int size);
/// The same for a board whose rows are kept. Requires: `rows` are the rows of `board`.
std::optional<ClusterFind> FindCluster(const Array<int>& board, const Lines& rows);

}  // namespace bivouac
