// Cells of a board as rows of bits.
#pragma once

#include <array>
#include <cstdint>

#include "game/records.h"

namespace bivouac {

/// The cells of one row, one bit a column.
using RowBits = std::uint32_t;

/// The cells of a board, row by row. Rows and columns count from 1, and there is an empty one beyond each
/// edge, so that nobody asks for edges: a neighbour off the board is a bit that is never set.
class BitRows {
 public:
  RowBits& operator[](int row) { return rows_[row]; }
  RowBits operator[](int row) const { return rows_[row]; }

 private:
  RowBits rows_[kMaxSize + 2] = {};  // Not checked: the fast loops of the generator run over them.
};

/// A cell by its row and the bit of its column.
struct BitCell {
  int Row;
  RowBits Bit;
};

/// The neighbours of a cell: north, east, south, west.
inline std::array<BitCell, 4> NeighboursOf(BitCell cell) {
  return {{{cell.Row - 1, cell.Bit},
           {cell.Row, cell.Bit << 1},
           {cell.Row + 1, cell.Bit},
           {cell.Row, cell.Bit >> 1}}};
}

/// The cells themselves and those beside them in their row.
inline RowBits Widened(RowBits cells) {
  return cells << 1 | cells | cells >> 1;
}

inline RowBits LowestOf(RowBits cells) {
  return cells & (~cells + 1);
}

}  // namespace bivouac
