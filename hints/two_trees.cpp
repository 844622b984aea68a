#include "hints/two_trees.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "game/blinking.h"
#include "game/board.h"
#include "hints/frame.h"

namespace bivouac {
namespace {

/// A tree and its neighbours on the board, by direction.
struct PairTree {
  int Cell = 0;
  int OpenCount = 0;
  int TentCount = 0;
  std::array<bool, 5> Open{};

  bool operator[](int direction) const { return Open[static_cast<std::size_t>(direction)]; }
};

PairTree LookAround(const Main& main, int cell) {
  PairTree tree;
  tree.Cell = cell;
  ForEachSide(main, cell, [&](int side, int direction) {
    if (main.Board[side] == CELL_OPEN) {
      tree.Open[static_cast<std::size_t>(direction)] = true;
      ++tree.OpenCount;
    } else if (main.Board[side] == CELL_TENT) {
      ++tree.TentCount;
    }
  });
  return tree;
}

// The caption is put together from these pieces.
constexpr int kTwoTreesSeconds = 30;
constexpr Sound kTwoTreesSound = Sound::Hint;
constexpr char kNeither[] =
    "None of the blinking trees can place their tent on the blinking field between them without causing the "
    "other tree loosing the possibility to place his tent, therefore that field between those trees must be "
    "grass!";
constexpr char kOne[] =
    "One of the blinking trees can't place his tent on the blinking field between them without causing the "
    "other tree loosing the possibility to place his tent.";
constexpr char kBoth[] =
    "Both blinking trees can't place their tent on the blinking field between them without causing the "
    "other tree loosing the possibility to place his tent.";
constexpr char kAllField[] =
    "All possibilities for both blinking trees to place their tents, results in grass for the blinking open "
    "field!";
constexpr char kAllFields[] =
    "All possibilities for both blinking trees to place their tents, results in grass for the blinking open "
    "field(s)!";
constexpr char kTentsOnMarks[] = " Tents can be placed on the fields with a blinking tent!";
constexpr char kOnlyOption[] =
    " Since the field with the blinking tent is the only other option for that tree to place his tent, that "
    "field must be a tent!";
constexpr char kFieldBetweenOptions[] =
    " As a result of that, the other two fields where the tent of that tree can be placed, the blinking "
    "field between those two other options must be grass!";
constexpr char kTentOnEveryMark[] = " You can place a tent on every field with a blinking tent.";
constexpr char kKnownPositions[] =
    " As a result of that, we can know the position of the tents for both trees.";
constexpr char kClickHere[] = " Click HERE to continue...";

/// The directions of a line, seen from its two trees.
struct LineSides {
  int OuterOfFirst;
  int OuterOfSecond;
  int Side;  ///< Tested first.
  int OtherSide;
};

constexpr LineSides kRowSides{WEST, EAST, NORTH, SOUTH};
constexpr LineSides kColumnSides{NORTH, SOUTH, EAST, WEST};

/// The field between two trees of one line. Returns the text, with the marks made, if the pair decides
/// something. Requires: neither tree has four open neighbours.
std::optional<std::string> ExplainLinePair(Main& main, const PairTree& first, const PairTree& second,
                                           int field, const LineSides& sides) {
  const bool outerOfFirst = first[sides.OuterOfFirst];
  const bool outerOfSecond = second[sides.OuterOfSecond];
  if (outerOfFirst && outerOfSecond) return {};

  const auto openSideOf = [&](const PairTree& tree) {
    return tree.Cell + StepOf(main, tree[sides.Side] ? sides.Side : sides.OtherSide);
  };
  if (!outerOfFirst && !outerOfSecond) {
    AddBlinkTriple(main, first.Cell, second.Cell, field);
    std::string text = kNeither;
    if (first.OpenCount == 2) AddBlink(main, openSideOf(first), -CELL_TENT);
    if (second.OpenCount == 2) AddBlink(main, openSideOf(second), -CELL_TENT);
    if (first.OpenCount == 2 || second.OpenCount == 2) text += kTentsOnMarks;
    return text + kClickHere;
  }

  // One tree has an outer field left: that tree is barred from the field between them.
  const PairTree& barred = outerOfFirst ? first : second;
  const int outer = barred.Cell + StepOf(main, outerOfFirst ? sides.OuterOfFirst : sides.OuterOfSecond);
  const int corner = outer + openSideOf(barred) - barred.Cell;
  if (barred.OpenCount == 3 && main.Board[corner] != CELL_OPEN) return {};
  AddBlinkTriple(main, first.Cell, second.Cell, field);
  std::string text = kOne;
  if (barred.OpenCount == 2) {
    AddBlink(main, outer, -CELL_TENT);
    text += kOnlyOption;
  } else if (barred.OpenCount == 3) {
    AddBlink(main, corner, -CELL_GRASS);
    text += kFieldBetweenOptions;
  }
  return text + kClickHere;
}

/// Two trees that touch corner to corner, and the names for what lies around them. With lean +1 the second
/// tree stands south-east of the first, with -1 south-west.
struct Diagonal {
  const PairTree& o1;
  const PairTree& o2;
  int n;
  int s;  ///< The lean.
  int T1;
  int T2;
  int P;   ///< The common field beside T1.
  int Q;   ///< The common field below T1.
  int p;   ///< Direction from T1 to P.
  int u;   ///< Direction from T1 away from P.
  int v;   ///< Direction from T2 away from Q.
  int K1;  ///< Far corners. They may lie off the board.
  int K2;
};

Diagonal DiagonalOf(const Main& main, const PairTree& first, const PairTree& second) {
  const int n = main.BoardSize;
  const int s = second.Cell - first.Cell > n ? 1 : -1;
  const int t1 = first.Cell;
  const int t2 = second.Cell;
  const int ahead = s > 0 ? EAST : WEST;
  const int back = s > 0 ? WEST : EAST;
  return {first, second, n, s, t1, t2, t1 + s, t1 + n, ahead, back, ahead, t1 - n - s, t2 + n + s};
}

bool DecidesDiagonal(const Main& main, const Diagonal& d) {
  const auto counts = [&](int c1, int c2) { return d.o1.OpenCount == c1 && d.o2.OpenCount == c2; };
  const auto open = [&](int cell) { return main.Board[cell] == CELL_OPEN; };
  const auto& [o1, o2, n, s, T1, T2, P, Q, p, u, v, K1, K2] = d;

  if (o1.OpenCount == 4 && o2.OpenCount != 2) return false;
  if (o1.OpenCount != 2 && o2.OpenCount == 4) return false;
  if (counts(2, 2)) return !((o1[SOUTH] && o1[NORTH] && o2[v]) || (o1[WEST] && o1[EAST] && o2[SOUTH]));
  if (counts(2, 3))
    return !((o1[EAST] && o1[WEST]) || (o1[SOUTH] && o1[NORTH]) || ((o1[NORTH] || o1[u]) && !open(K2)));
  if (counts(3, 2))
    return !((o2[NORTH] && o2[SOUTH]) || (o2[WEST] && o2[EAST]) || ((o2[v] || o2[SOUTH]) && !open(K1)));
  if (counts(3, 3)) {
    if (!o1[p] || !o1[SOUTH]) return false;
    if (o2[SOUTH] && o1[NORTH]) return open(T2 + n - s) || open(T1 - n + s);
    if (o2[v] && o1[u]) return open(T2 - n + s) || open(T1 + n - s);
    return true;
  }
  if (counts(2, 4)) return open(K2);
  if (counts(4, 2)) return open(K1);
  return true;
}

/// The marks and the text of a diagonal pair that decides something, after the mark of its field. A tree
/// with one field is left to an earlier stage; the label then keeps its text.
std::string ExplainDiagonal(Main& main, const Diagonal& d) {
  const auto counts = [&](int c1, int c2) { return d.o1.OpenCount == c1 && d.o2.OpenCount == c2; };
  const auto tent = [&](int cell) { AddBlink(main, cell, -CELL_TENT); };
  const auto grass = [&](int cell) { AddBlink(main, cell, -CELL_GRASS); };
  const auto grassIfOpen = [&](int cell) {
    if (main.Board[cell] == CELL_OPEN) grass(cell);
  };
  const auto moveThirdMark = [&](int cell) { main.BlinkCell[main.BlinkTop] = cell; };
  const auto removeThirdMark = [&] { --main.BlinkTop; };
  const auto& [o1, o2, n, s, T1, T2, P, Q, p, u, v, K1, K2] = d;

  std::string text;
  if (counts(2, 2)) {
    text = kOne;
    if (o1[p] && o1[u]) {
      tent(T1 - s);
    } else if (o1[p] && o2[v]) {
      text = kBoth;
      tent(T1 - n);
      tent(T2 + s);
    } else if (o1[p]) {
      tent(T2 + n);
    } else if (o1[NORTH]) {
      tent(T1 - n);
    } else if (o2[SOUTH]) {
      text = kBoth;
      tent(T1 - s);
      tent(T2 + n);
    } else {
      tent(T2 + s);
    }
    text += kTentOnEveryMark;
  } else if (counts(2, 3)) {
    text = kOne;
    if (o1[NORTH] || o1[u]) {
      grass(K2);
      text += kFieldBetweenOptions;
    } else {
      moveThirdMark(o2[v] ? P : Q);
      tent(o2[v] ? Q : P);
      tent(o2[v] ? T2 + s : T2 + n);
      text += kKnownPositions;
      text += kTentOnEveryMark;
    }
  } else if (counts(2, 4)) {
    text = kAllField;
    moveThirdMark(K2);
  } else if (counts(3, 2)) {
    text = kOne;
    if (o2[v] || o2[SOUTH]) {
      grass(K1);
      text += kFieldBetweenOptions;
    } else {
      moveThirdMark(o1[u] ? Q : P);
      tent(o1[u] ? T1 - s : T1 - n);
      tent(o1[u] ? P : Q);
      text += kKnownPositions;
      text += kTentOnEveryMark;
    }
  } else if (counts(3, 3)) {
    text = kAllFields;
    if (o2[SOUTH] && o1[NORTH]) {
      removeThirdMark();
      grassIfOpen(T1 - n + s);
      grassIfOpen(T2 + n - s);
    } else if (o2[v] && o1[u]) {
      removeThirdMark();
      grassIfOpen(T1 + n - s);
      grassIfOpen(T2 - n + s);
    } else {
      moveThirdMark(o1[NORTH] ? P : Q);
    }
  } else if (counts(4, 2)) {
    text = kAllField;
    moveThirdMark(K1);
  } else {
    return main.lblHint.Caption;
  }
  return text + kClickHere;
}

std::optional<std::string> ExplainDiagonalPair(Main& main, const PairTree& first, const PairTree& second,
                                               int field) {
  const Diagonal diagonal = DiagonalOf(main, first, second);
  if (!DecidesDiagonal(main, diagonal)) return {};
  AddBlinkTriple(main, first.Cell, second.Cell, field);
  return ExplainDiagonal(main, diagonal);
}

/// The two trees beside a field, the lower index first, if there are exactly two.
std::optional<std::array<int, 2>> TwoTreesBeside(const Main& main, int field) {
  std::array<int, 4> trees{};
  std::size_t count = 0;
  // North, west, east, south is the rising order.
  ForEachSide(main, field, [&](int side, int) {
    if (main.Board[side] == CELL_TREE) trees[count++] = side;
  });
  if (count != 2) return {};
  return std::array<int, 2>{std::min(trees[0], trees[1]), std::max(trees[0], trees[1])};
}

}  // namespace

bool TwoTreesAroundField(Main& main) {
  for (int field = 0; field < main.CellCount; ++field) {
    if (main.Board[field] != CELL_OPEN) continue;
    const auto trees = TwoTreesBeside(main, field);
    if (!trees) continue;
    const PairTree first = LookAround(main, (*trees)[0]);
    const PairTree second = LookAround(main, (*trees)[1]);
    if (first.TentCount + second.TentCount != 0) continue;

    const bool sameRow = RowOf(main, first.Cell) == RowOf(main, second.Cell);
    const bool sameColumn = ColOf(main, first.Cell) == ColOf(main, second.Cell);
    std::optional<std::string> text;
    if (!sameRow && !sameColumn) {
      text = ExplainDiagonalPair(main, first, second, field);
    } else if (first.OpenCount != 4 && second.OpenCount != 4) {
      text = ExplainLinePair(main, first, second, field, sameRow ? kRowSides : kColumnSides);
    }
    if (!text) continue;
    ReportFind(main, {kTwoTreesSeconds, kTwoTreesSound, *text});
    return true;
  }
  return false;
}

}  // namespace bivouac
