#include "deduction/twins.h"

namespace bivouac {
namespace {

/// The open fields of a group: how many, and the first.
struct Group {
  int Count = 0;
  int First = -1;
};

/// The state of the scanner along one line. 4 and 5 stand for a complete pair: behind it at 4, on its second
/// tree, in the last place, at 5.
class Scanner {
 public:
  Scanner(const Array<int>& board, Axis axis, int line) : board_(board), axis_(axis), line_(line) {}

  /// Takes the next position in. True if a pair is complete.
  bool Step(int position) {
    const bool grass = board_[axis_.At(line_, position)] == CELL_GRASS;
    if (position == 0) {
      state_ = grass ? 1 : IsFreeTree(position) ? 2 : 0;
    } else if (position == axis_.size - 1) {
      if (state_ == 2) {
        state_ = IsFreeTree(position) ? 5 : 0;
      } else if (state_ == 3 && grass) {
        state_ = 4;
      }
    } else {
      switch (state_) {
        case 0:
          state_ = grass ? 1 : 0;
          break;
        case 1:
          state_ = IsFreeTree(position) ? 2 : grass ? 1 : 0;
          break;
        case 2:
          state_ = IsFreeTree(position) ? 3 : grass ? 1 : 0;
          break;
        case 3:
          state_ = grass ? 4 : 0;
          break;
        default:
          break;
      }
    }
    return state_ >= 4;
  }

  /// Position of the first tree of a complete pair whose last step was at `position`.
  int FirstTree(int position) const { return position + state_ - 6; }

  /// The pair decided nothing: the scanner stands on grass.
  void GoOn() { state_ = 1; }

 private:
  bool IsFreeTree(int position) const {
    return board_[axis_.At(line_, position)] == CELL_TREE &&
           board_[axis_.At(line_ - 1, position)] == CELL_OPEN &&
           board_[axis_.At(line_ + 1, position)] == CELL_OPEN;
  }

  const Array<int>& board_;
  Axis axis_;
  int line_;
  int state_ = 0;
};

std::optional<TwinFind> DecidePair(const Array<int>& board, Axis axis, int line, int first) {
  const int second = first + 1;
  const int last = axis.size - 1;
  TwinFind find{TwinOutcome::Ring, axis.At(line, first), axis.At(line, second), 0, {}};
  const auto take = [&](int takenLine, int position) {
    find.Cells[static_cast<std::size_t>(find.Count++)] = axis.At(takenLine, position);
  };
  const auto takeIfOpen = [&](int takenLine, int position) {
    if (board[axis.At(takenLine, position)] == CELL_OPEN) take(takenLine, position);
  };

  if (line < last - 1) {
    takeIfOpen(line + 2, first);
    takeIfOpen(line + 2, second);
  }
  if (line > 1) {
    takeIfOpen(line - 2, first);
    takeIfOpen(line - 2, second);
  }
  if (find.Count > 0) return find;

  // Group A holds a tent only if the first diagonal (before the first tree, behind the second) is wrong,
  // group B only if the other one is.
  Group a;
  Group b;
  const auto count = [&](Group& group, int countedLine, int position) {
    if (countedLine < 0 || countedLine > last) return;
    const int cell = axis.At(countedLine, position);
    if (board[cell] != CELL_OPEN) return;
    if (group.Count++ == 0) group.First = cell;
  };
  const auto countFlank = [&](Group& before, Group& behind, int position) {
    if (position < 0 || position > last) return;
    count(before, line - 2, position);
    count(before, line - 1, position);
    count(behind, line + 1, position);
    count(behind, line + 2, position);
  };
  countFlank(a, b, first - 1);
  countFlank(b, a, second + 1);

  if (a.Count > 0 && b.Count > 0) return {};
  if (a.Count + b.Count == 1) {
    find.Outcome = TwinOutcome::OneTent;
    find.Cells[static_cast<std::size_t>(find.Count++)] = a.Count == 1 ? a.First : b.First;
  } else {
    find.Outcome = TwinOutcome::TwoTents;
    const int side = a.Count == 0 ? -1 : 1;
    take(line + side, first);
    take(line - side, second);
  }
  return find;
}

}  // namespace

std::optional<TwinFind> FindTwins(const Array<int>& board, Axis axis) {
  for (int line = 1; line < axis.size - 1; ++line) {
    Scanner scanner(board, axis, line);
    for (int position = 0; position < axis.size; ++position) {
      if (!scanner.Step(position)) continue;
      if (const auto find = DecidePair(board, axis, line, scanner.FirstTree(position))) return find;
      scanner.GoOn();
    }
  }
  return {};
}

}  // namespace bivouac
