// Rows and columns as one thing: a rule that has a row form and a column form is written once over an Axis.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "game/game_state.h"

namespace bivouac {

enum class Direction { Rows, Columns };

/// The lines of a board in one direction. Line and position run from 0 to size - 1.
struct Axis {
  Direction direction;
  int size;

  int At(int line, int position) const {
    return direction == Direction::Rows ? line * size + position : position * size + line;
  }
};

/// A set of positions of one line: bit i stands for position i.
using Positions = std::uint32_t;

constexpr bool Has(Positions positions, int position) {
  return (positions >> position & 1u) != 0;
}

/// The positions of a line that hold a code.
inline Positions PositionsOf(const Array<int>& board, Axis axis, int line, int code) {
  Positions positions = 0;
  for (int i = 0; i < axis.size; ++i) {
    if (board[axis.At(line, i)] == code) positions |= 1u << i;
  }
  return positions;
}

inline int TentsIn(const Array<int>& board, Axis axis, int line) {
  return std::popcount(PositionsOf(board, axis, line, CELL_TENT));
}

}  // namespace bivouac
