#include "deduction/twins.h"

namespace bivouac {
namespace {

/// The open fields of a group: how many, and the first.
struct Group {
  int Count = 0;
  int First = -1;
};

/// First places of the pairs of a line: two trees side by side with open fields on both sides of each, shut
/// in by grass or by the edge before the first and behind the second.
Positions PairsIn(const Lines& lines, int line) {
  const Positions twins = lines.Trees(line) & lines.Open(line - 1) & lines.Open(line + 1);
  const Positions first = 1u;
  // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): no board has fewer than two lines.
  const Positions lastButOne = 1u << (lines.axis.size - 2);
  const Positions shutBefore = WithBefore(lines.Grass(line)) | first;
  const Positions shutBehind = WithBehind(WithBehind(lines.Grass(line))) | lastButOne;
  return twins & WithBehind(twins) & shutBefore & shutBehind;
}

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

std::optional<TwinFind> FindTwins(const Array<int>& board, const Lines& lines) {
  std::optional<TwinFind> find;
  for (int line = 1; line < lines.axis.size - 1; ++line) {
    const bool found = AnyIn(PairsIn(lines, line), [&](int first) {
      find = DecidePair(board, lines.axis, line, first);
      return find.has_value();
    });
    if (found) break;
  }
  return find;
}

std::optional<TwinFind> FindTwins(const Array<int>& board, Axis axis) {
  return FindTwins(board, Lines(board, axis));
}

}  // namespace bivouac
