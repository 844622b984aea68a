// A board as sets of positions, line by line: rules then look at a whole line at once. Rows and columns are
// one thing here, so that a rule which has a row form and a column form is written once.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>

#include "game/game_state.h"
#include "game/sides.h"

namespace bivouac {

enum class LineKind { Row, Column };

/// The lines of one kind. Line and position run from 0 to Size - 1.
struct Axis {
  LineKind Kind;
  int Size;

  int At(int line, int position) const {
    return Kind == LineKind::Row ? line * Size + position : position * Size + line;
  }
};

/// A set of positions of one line: bit i stands for position i.
using Positions = std::uint32_t;

constexpr bool Has(Positions positions, int position) {
  return (positions >> position & 1u) != 0;
}

/// The positions that have one of a set right before them, right after them. Positions beyond the line's end
/// may come out, too: meet the result with a set of the line.
constexpr Positions WithBefore(Positions set) {
  return set << 1;
}
constexpr Positions WithAfter(Positions set) {
  return set >> 1;
}

/// Calls visit(position) for each position of a set, in rising order.
template <class Visit>
void ForEachIn(Positions set, Visit visit) {
  for (; set != 0; set &= set - 1) visit(std::countr_zero(set));
}

/// The same until one visit returns true. Returns whether one did.
template <class Visit>
bool AnyIn(Positions set, Visit visit) {
  for (; set != 0; set &= set - 1) {
    if (visit(std::countr_zero(set))) return true;
  }
  return false;
}

/// The runs of adjacent open fields of a line, and how many tents they can hold.
struct Runs {
  int Capacity = 0;    ///< The most tents that the runs hold: half of each length, rounded up.
  Positions Odd = 0;   ///< First, third, fifth and so on place of every run of odd length.
  Positions Even = 0;  ///< All places of every run of even length.
};

/// Cuts a line into its runs. Both ends of the line close a run.
Runs CutRuns(Positions open);

/// What the lines of one kind want: tents, by line.
class Clues {
 public:
  /// Numbers of a puzzle's record.
  explicit Clues(const FixedArray<std::int16_t, kMaxSize>& counts);
  /// What labels say. A caption is read when its line is first asked for.
  explicit Clues(const FixedArray<Label, kMaxSize>& labels) : labels_(&labels) { clues_.Fill(kUnread); }

  /// Errors: NotANumber, Overflow if the caption is no number of 16 bits.
  int Of(int line) {
    const int clue = clues_[line];
    return clue == kUnread ? Read(line) : clue;
  }

 private:
  static constexpr int kUnread = std::numeric_limits<int>::min();  // Clues have 16 bits.

  int Read(int line);

  const FixedArray<Label, kMaxSize>* labels_ = nullptr;
  FixedArray<int, kMaxSize> clues_;
};

/// A board, line by line. Two lines beyond either end exist and are empty, so that rules which look across
/// lines need no test of the edge.
class Lines {
 public:
  /// Without a cell yet. `need` is what the lines want, `captions` what their labels say, which may be of
  /// another puzzle. The board must outlive the lines.
  Lines(const Array<int>& board, Axis axis, const Clues& need, const Clues& captions)
      : board_(board), axis_(axis), need_(need), captions_(captions) {}

  int Size() const { return axis_.Size; }
  const Array<int>& Board() const { return board_; }
  int CellAt(int line, int position) const { return axis_.At(line, position); }

  /// The positions of a line that hold a code. Requires: line -2 to size + 1.
  Positions Of(int code, int line) const { return sets_[line + kBeyond][code]; }
  Positions Open(int line) const { return Of(CELL_OPEN, line); }
  Positions Grass(int line) const { return Of(CELL_GRASS, line); }
  Positions Tents(int line) const { return Of(CELL_TENT, line); }
  Positions Trees(int line) const { return Of(CELL_TREE, line); }
  Positions OpenOrTents(int line) const { return Open(line) | Tents(line); }
  int TentCount(int line) const { return tents_[line]; }
  int TreeCount(int line) const { return std::popcount(Trees(line)); }

  /// All positions but the first and the last.
  Positions Interior() const { return (1u << (axis_.Size - 1)) - 2u; }

  /// Errors: those of the clues.
  int Need(int line) { return need_.Of(line); }
  int Caption(int line) { return captions_.Of(line); }
  const Runs& RunsOf(int line) {
    KnownRuns& known = runs_[line];
    if (known.Open != Open(line)) known = {Open(line), CutRuns(Open(line))};
    return known.Cut;
  }

  /// Reads the whole board. Cells with a code that is none belong to no set. Requires: no cell was added yet.
  void ReadBoard();
  /// Requires, as Change: a line and a position of the board.
  void Add(int code, int line, int position) {
    Set(code, line) |= 1u << position;
    tents_[line] += code == CELL_TENT;
  }
  void Change(int line, int position, int from, int to) {
    Set(from, line) &= ~(1u << position);
    tents_[line] -= from == CELL_TENT;
    Add(to, line, position);
  }

 private:
  static constexpr int kBeyond = 2;
  static constexpr int kCodes = 4;
  using Sets = FixedArray<Positions, kCodes>;
  /// The runs of a line while its open positions are these.
  struct KnownRuns {
    Positions Open = 0;
    Runs Cut;
  };

  Positions& Set(int code, int line) { return sets_[line + kBeyond][code]; }

  const Array<int>& board_;
  Axis axis_;
  FixedArray<Sets, kMaxSize + 2 * kBeyond> sets_;
  FixedArray<int, kMaxSize> tents_;
  Clues need_;
  Clues captions_;
  FixedArray<KnownRuns, kMaxSize> runs_;
};

/// What the positions of a row have beside them.
inline Sides SidesOf(const Lines& rows, int code, int row) {
  const Positions own = rows.Of(code, row);
  return {rows.Of(code, row - 1), WithAfter(own), rows.Of(code, row + 1), WithBefore(own)};
}

/// The trees of a row that touch no tent.
inline Positions TreesWithoutTent(const Lines& rows, int row) {
  return rows.Trees(row) & ~SidesOf(rows, CELL_TENT, row).Any();
}

/// The positions of a line that touch a cell of that code, diagonally too.
inline Positions Around(const Lines& lines, int code, int line) {
  const Positions own = lines.Of(code, line);
  const Positions across = lines.Of(code, line - 1) | lines.Of(code, line + 1);
  return across | WithBefore(own | across) | WithAfter(own | across);
}

}  // namespace bivouac
