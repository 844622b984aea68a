// A board as sets of positions, line by line: rules then look at a whole line at once.
#pragma once

#include "deduction/axis.h"

namespace bivouac {

/// The positions that have one of a set right before them, right behind them. Positions beyond the line's end
/// may come out, too: meet the result with a set of the line.
constexpr Positions WithBefore(Positions set) {
  return set << 1;
}
constexpr Positions WithBehind(Positions set) {
  return set >> 1;
}

/// Calls visit(position) for each position of a set, in rising order, until one visit returns true. Returns
/// whether one did.
template <class Visit>
bool AnyIn(Positions set, Visit visit) {
  for (; set != 0; set &= set - 1) {
    if (visit(std::countr_zero(set))) return true;
  }
  return false;
}

/// The lines of a board in one direction. Two lines beyond either end exist and are empty, so that rules
/// which look across lines need no test of the edge.
class Lines {
 public:
  explicit Lines(Axis axis_) : axis(axis_) {}
  /// The lines of a board as it stands. Cells with a code that is none belong to no set.
  Lines(const Array<int>& board, Axis axis_) : axis(axis_) {
    for (int line = 0; line < axis.size; ++line) {
      for (int position = 0; position < axis.size; ++position) {
        const int code = board[axis.At(line, position)];
        if (code >= CELL_OPEN && code <= CELL_TREE) Add(code, line, position);
      }
    }
  }

  const Axis axis;

  /// The positions of a line that hold a code. Requires: line -2 to size + 1.
  Positions Of(int code, int line) const { return sets_[Index(code)][Index(line + kBeyond)]; }
  Positions Open(int line) const { return Of(CELL_OPEN, line); }
  Positions Grass(int line) const { return Of(CELL_GRASS, line); }
  Positions Tents(int line) const { return Of(CELL_TENT, line); }
  Positions Trees(int line) const { return Of(CELL_TREE, line); }
  Positions OpenOrTents(int line) const { return Open(line) | Tents(line); }

  /// All positions but the first and the last.
  Positions Interior() const { return (1u << (axis.size - 1)) - 2u; }

  /// Requires: a line and a position of the board.
  void Add(int code, int line, int position) { Set(code, line) |= 1u << position; }
  void Remove(int code, int line, int position) { Set(code, line) &= ~(1u << position); }

 private:
  static constexpr int kBeyond = 2;
  static constexpr std::size_t Index(int value) { return static_cast<std::size_t>(value); }
  Positions& Set(int code, int line) { return sets_[Index(code)][Index(line + kBeyond)]; }

  std::array<std::array<Positions, kMaxSize + 2 * kBeyond>, 4> sets_{};
};

/// Which positions of a row have something north, east, south and west of them.
struct Sides {
  Positions North;
  Positions East;
  Positions South;
  Positions West;

  Positions Any() const { return North | East | South | West; }
  Positions AtLeastTwo() const { return (North & South) | (East & West) | ((North | South) & (East | West)); }
  Positions ExactlyOne() const { return Any() & ~AtLeastTwo(); }
  Positions ExactlyTwo() const {
    const Positions odd = North ^ East ^ South ^ West;
    return AtLeastTwo() & ~odd & ~(North & East & South & West);
  }
};

inline Sides SidesOf(const Lines& rows, int code, int row) {
  const Positions own = rows.Of(code, row);
  return {rows.Of(code, row - 1), WithBehind(own), rows.Of(code, row + 1), WithBefore(own)};
}

}  // namespace bivouac
