#include "deduction/finds.h"

namespace bivouac {
namespace {

/// The open fields of a group: how many, and the first.
struct Group {
  int Count = 0;
  int First = -1;
};

/// First places of the pairs of a line: two trees side by side with open fields on both sides of each, shut
/// in by grass or by the edge before the first and after the second.
Positions PairsIn(const Lines& lines, int line) {
  const Positions twins = lines.Trees(line) & lines.Open(line - 1) & lines.Open(line + 1);
  const Positions first = 1u;
  // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): no board has fewer than two lines.
  const Positions lastButOne = 1u << (lines.Size() - 2);
  const Positions shutBefore = WithBefore(lines.Grass(line)) | first;
  const Positions shutAfter = WithAfter(WithAfter(lines.Grass(line))) | lastButOne;
  return twins & WithAfter(twins) & shutBefore & shutAfter;
}

/// Adds the open fields two lines away from a pair: they touch both ways.
void AddRing(const Lines& lines, int line, int first, Find& find) {
  for (const int away : {line + 2, line - 2}) {
    for (const int position : {first, first + 1}) {
      if (Has(lines.Open(away), position)) find.Add(lines.CellAt(away, position), Role::Grass);
    }
  }
}

/// Adds the tents without which both ways would be solutions, if there are any.
void AddTellingTents(const Lines& lines, int line, int first, Find& find) {
  const int second = first + 1;
  // Group A holds a tent only if the first diagonal (before the first tree, after the second) is wrong,
  // group B only if the other one is.
  Group a;
  Group b;
  const auto count = [&](Group& group, int countedLine, int position) {
    if (!Has(lines.Open(countedLine), position)) return;
    if (group.Count++ == 0) group.First = lines.CellAt(countedLine, position);
  };
  const auto countFlank = [&](Group& before, Group& after, int position) {
    if (position < 0 || position >= lines.Size()) return;
    count(before, line - 2, position);
    count(before, line - 1, position);
    count(after, line + 1, position);
    count(after, line + 2, position);
  };
  countFlank(a, b, first - 1);
  countFlank(b, a, second + 1);

  if (a.Count > 0 && b.Count > 0) return;
  if (a.Count + b.Count == 1) {
    find.Case = TwinOneTent;
    find.Add(a.Count == 1 ? a.First : b.First, Role::Tent);
  } else {
    find.Case = TwinTwoTents;
    const int side = a.Count == 0 ? -1 : 1;
    find.Add(lines.CellAt(line + side, first), Role::Tent);
    find.Add(lines.CellAt(line - side, second), Role::Tent);
  }
}

/// What follows from a pair, if anything does.
bool DecidePair(const Lines& lines, int line, int first, Find& find) {
  find.Case = TwinRing;
  AddRing(lines, line, first, find);
  if (find.Fields.IsEmpty()) AddTellingTents(lines, line, first, find);
  if (find.Fields.IsEmpty()) return false;
  for (const int position : {first, first + 1}) find.Add(lines.CellAt(line, position), Role::Tree);
  return true;
}

}  // namespace

bool FindTwins(Lines& lines, Find& find) {
  for (int line = 1; line < lines.Size() - 1; ++line) {
    if (AnyIn(PairsIn(lines, line), [&](int first) { return DecidePair(lines, line, first, find); }))
      return true;
  }
  return false;
}

}  // namespace bivouac
