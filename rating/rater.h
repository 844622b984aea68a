// The working state of one rating, for the passes.
#pragma once

#include <array>
#include <optional>

#include "deduction/lines.h"
#include "deduction/runs.h"

namespace bivouac {

/// The lines of the board in one direction, with what a pass asks of a line.
class LineView {
 public:
  LineView(Axis axis, const FixedArray<std::int16_t, kMaxSize>& needs,
           const FixedArray<Label, kMaxSize>& labels)
      : lines(axis), needs_(needs), labels_(labels) {}

  Lines lines;

  int Size() const { return lines.axis.size; }
  int Tents(int line) const { return tents_[Index(line)]; }
  /// Tents that the puzzle wants in the line.
  int Need(int line) const { return needs_[line]; }
  /// What the label of the line says, which may be of another puzzle.
  /// Errors: NotANumber, Overflow if the caption is no number of 16 bits.
  int Clue(int line);
  const LineRuns& Runs(int line);

  void Change(int line, int position, int from, int to) {
    lines.Remove(from, line, position);
    lines.Add(to, line, position);
    tents_[Index(line)] += (to == CELL_TENT) - (from == CELL_TENT);
  }

 private:
  /// The runs of a line while its open positions are these.
  struct KnownRuns {
    Positions Open = 0;
    LineRuns Runs;
  };

  static std::size_t Index(int line) { return static_cast<std::size_t>(line); }

  const FixedArray<std::int16_t, kMaxSize>& needs_;
  const FixedArray<Label, kMaxSize>& labels_;
  std::array<int, kMaxSize> tents_{};
  std::array<std::optional<int>, kMaxSize> clues_{};
  std::array<KnownRuns, kMaxSize> runs_{};
};

/// The state that the passes of one rating share. Board holds the cells; rows and columns follow it.
struct Rater {
  /// Sets Board up from the trees of PuzzleRec; all other cells are open.
  /// Errors: IndexOutsideArray if Board is not laid out for BoardSize.
  explicit Rater(Main& main_);

  Main& main;
  const int size;   ///< Lines of the board.
  const int cells;  ///< Cells of the board.
  LineView rows;
  LineView columns;
  int wrong = 0;  ///< Cells that differ from the finished puzzle.

  int Content(int cell) const { return main.Board[cell]; }
  bool IsOpen(int cell) const { return Content(cell) == CELL_OPEN; }
  /// The flat distance to the neighbour in a direction, NORTH to WEST.
  int Step(int direction) const {
    const int step = direction == NORTH || direction == SOUTH ? size : 1;
    return direction == NORTH || direction == WEST ? -step : step;
  }

  /// Errors: IndexOutsideArray for a cell off the board, as for each of the following.
  void Set(int cell, int code);
  /// Returns whether the cell was open.
  bool GrassIfOpen(int cell);
  /// Gives positions of a line a code.
  void SetAll(const Lines& lines, int line, Positions positions, int code);
};

}  // namespace bivouac
