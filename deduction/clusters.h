// Clusters: trees and tents that touch each other in a chain, tree to tent to tree.
#pragma once

#include <optional>
#include <vector>

#include "game/game_state.h"

namespace bivouac {

struct ClusterFind {
  int Code;  ///< CELL_TENT or CELL_GRASS: what the cells must be.
  std::vector<int>
      Cells;  ///< Open fields in line beyond a tree of the cluster, seen from a tent of it; in rising order.
};

/// The first cluster, in the order of its first cell, that decides a field.
std::optional<ClusterFind> FindCluster(const Array<int>& board, int size);

}  // namespace bivouac
