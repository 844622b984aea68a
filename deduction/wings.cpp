#include "deduction/wings.h"

namespace bivouac {
namespace {

// Fields are named by a tree of the wing and an offset from it, as flat indexes.
enum class From { Centre, A, B };

struct Field {
  From Tree;
  int Down;
  int Right;
};

struct Offset {
  int Down;
  int Right;
};

/// What a rule says of a formation, by its number less 1.
template <class Case>
using ByFormation = FixedArray<Case, 4>;

/// A test of a tree's row or column against the edge of the board.
enum class Edge { None, RowAbove, RowBelow, ColBefore, ColAfter };

enum class Side { X, Y };

enum class CountTest { None, A3, B3 };

/// Another tree T has two sides X and Y left.
struct CornerCase {
  Field T;
  Offset X;
  Offset Y;
  Edge First;  // With both edge tests true, X, Y and the corner between them must be open.
  Edge Second;
  Edge Fallback;  // Otherwise X if this test holds, else Y. None: always `Otherwise`.
  Side Otherwise;
};

struct CornerRule {
  CountTest Count;
  ByFormation<CornerCase> Cases;
};

using enum Edge;
using enum From;

constexpr Offset kNorth{-1, 0};
constexpr Offset kEast{0, 1};
constexpr Offset kSouth{1, 0};
constexpr Offset kWest{0, -1};

// The formations do not all mirror each other, and are meant as they stand.
// clang-format off
/// The tree on x.
constexpr CornerRule kOuterA{CountTest::A3, {{
    {{A, -1,  1}, kNorth, kEast, RowAbove, ColAfter, RowAbove, Side::Y},
    {{A, -1, -1}, kNorth, kWest, RowAbove, ColBefore, RowAbove, Side::Y},
    {{A, -1, -1}, kNorth, kWest, RowAbove, ColBefore, RowAbove, Side::Y},
    {{A, -1,  1}, kNorth, kEast, RowAbove, ColAfter, RowAbove, Side::Y},
}}};
/// The tree on o. It asks nothing of the counts.
constexpr CornerRule kOpposite{CountTest::None, {{
    {{Centre,  1,  1}, kSouth, kEast, RowBelow, ColAfter, RowBelow, Side::Y},
    {{Centre,  1, -1}, kSouth, kWest, RowBelow, ColBefore, RowBelow, Side::Y},
    {{Centre, -1,  1}, kNorth, kEast, RowAbove, ColAfter, RowAbove, Side::Y},
    {{Centre, -1, -1}, kNorth, kWest, RowAbove, ColBefore, RowBelow, Side::Y},
}}};
/// The tree on y.
constexpr CornerRule kOuterB{CountTest::B3, {{
    {{B, 1, -1}, kSouth, kWest, RowBelow, ColBefore, RowBelow, Side::Y},
    {{B, 1,  1}, kSouth, kEast, RowBelow, ColAfter, RowBelow, Side::Y},
    {{B, 1,  1}, kSouth, kEast, RowBelow, ColBefore, RowBelow, Side::Y},
    {{B, 1, -1}, kSouth, kWest, RowBelow, ColBefore, RowBelow, Side::Y},
}}};
/// The tree on b.
constexpr CornerRule kInnerB{CountTest::B3, {{
    {{B, -1, -1}, kNorth, kWest, ColBefore, None, None, Side::X},
    {{B, -1,  1}, kNorth, kEast, ColAfter, None, None, Side::X},
    {{B,  1, -1}, kSouth, kWest, ColBefore, None, None, Side::X},
    {{B,  1,  1}, kSouth, kEast, ColAfter, None, None, Side::X},
}}};
/// The tree on a.
constexpr CornerRule kInnerA{CountTest::A3, {{
    {{A, -1, -1}, kNorth, kWest, RowAbove, None, None, Side::Y},
    {{A, -1,  1}, kNorth, kEast, RowAbove, None, None, Side::Y},
    {{A,  1, -1}, kSouth, kWest, RowAbove, None, None, Side::Y},
    {{A,  1,  1}, kSouth, kEast, RowBelow, None, None, Side::Y},
}}};

/// Trees on both a and b: each has one field left.
struct BothInnerCase { Field First, FirstTent, Second, SecondTent; };
constexpr ByFormation<BothInnerCase> kBothInner{{
    {{A, -1, -1}, {A, -2, -1}, {B, -1, -1}, {B, -1, -2}},
    {{A, -1,  1}, {A, -2,  1}, {B, -1,  1}, {B, -1,  2}},
    {{A,  1, -1}, {A,  1, -2}, {B,  1, -1}, {B,  2, -1}},
    {{A,  1,  1}, {A,  1,  2}, {B,  1,  1}, {B,  2,  1}},
}};

/// Two fields side by side that become grass, if the guard holds at the row or column of the centre.
enum class Guard { RowsAbove, RowsBelow, ColsBefore, ColsAfter };
struct PairCase { Guard If; Field First, Second; };

/// The pair p, two steps from A and the centre; q likewise.
constexpr ByFormation<PairCase> kPairOfA{{
    {Guard::ColsAfter, {A,  0,  2}, {Centre,  0,  2}},
    {Guard::ColsBefore, {A,  0, -2}, {Centre,  0, -2}},
    {Guard::RowsAbove,  {A, -2,  0}, {Centre, -2,  0}},
    {Guard::RowsAbove,  {A, -2,  0}, {Centre, -2,  0}},
}};
constexpr ByFormation<PairCase> kPairOfB{{
    {Guard::RowsBelow,  {B, 2,  0}, {Centre, 2,  0}},
    {Guard::RowsBelow,  {B, 2,  0}, {Centre, 2,  0}},
    {Guard::ColsAfter, {B, 0,  2}, {Centre, 0,  2}},
    {Guard::ColsBefore, {B, 0, -2}, {Centre, 0, -2}},
}};

/// K takes a tent: the three fields that must be open, and K among them.
struct CommonFieldCase { Field Open1, Open2, Open3, Tent; };
constexpr ByFormation<CommonFieldCase> kCommonField{{
    {{A,  0, -1}, {A, 0, 1}, {B, 1,  0}, {A, 0, -1}},
    {{A,  0, -1}, {A, 0, 1}, {B, 1,  0}, {A, 0,  1}},
    {{A, -1,  0}, {A, 1, 0}, {B, 0,  1}, {A, 1,  0}},
    {{A, -1,  0}, {A, 1, 0}, {B, 0, -1}, {A, 1,  0}},
}};

/// A pair becomes grass: the two fields of its wing tree that must be open, K and the third side.
struct OpenCase { Field Open1, Open2; };
constexpr ByFormation<OpenCase> kOpenOfA{{
    {{A,  0, -1}, {A, 0, 1}},
    {{A,  0, -1}, {A, 0, 1}},
    {{A, -1,  0}, {A, 1, 0}},
    {{A, -1,  0}, {A, 1, 0}},
}};
constexpr ByFormation<OpenCase> kOpenOfB{{
    {{B, -1,  0}, {B, 1, 0}},
    {{B, -1,  0}, {B, 1, 0}},
    {{B,  0, -1}, {B, 0, 1}},
    {{B,  0, -1}, {B, 0, 1}},
}};
// clang-format on

/// The nine rules on one wing. The trees that a rule asks for are read even where its counts do not fit; open
/// fields are read from left to right and no further than it takes to settle the rule.
class Rules {
 public:
  Rules(const Lines& rows, const Wing& wing, Find& find)
      : board_(rows.Board()), size_(rows.Size()), wing_(wing), index_(wing.Formation - 1), find_(find) {}

  bool Decide(BothInner bothInner) {
    return Corner(kOuterA) || Corner(kOpposite) || Corner(kOuterB) || BothInnerTrees(bothInner) ||
           Corner(kInnerB) || CornerOfInnerA() || CommonField() ||
           Pair(2, 3, kOpenOfA[index_], kPairOfA[index_]) || Pair(3, 2, kOpenOfB[index_], kPairOfB[index_]);
  }

 private:
  int CellOf(Field field) const {
    const int tree = field.Tree == Centre ? wing_.Centre : field.Tree == A ? wing_.A : wing_.B;
    return tree + field.Down * size_ + field.Right;
  }
  int CellOf(int cell, Offset offset) const { return cell + offset.Down * size_ + offset.Right; }
  bool IsOpen(int cell) const { return board_[cell] == CELL_OPEN; }
  bool IsOpen(Field field) const { return IsOpen(CellOf(field)); }

  bool Holds(Edge edge, int cell) const {
    switch (edge) {
      case RowAbove:
        return cell / size_ > 0;
      case RowBelow:
        return cell / size_ < size_ - 1;
      case ColBefore:
        return cell % size_ > 0;
      case ColAfter:
        return cell % size_ < size_ - 1;
      case None:
        break;
    }
    return true;
  }
  bool Holds(Guard guard) const {
    const int row = wing_.Centre / size_;
    const int col = wing_.Centre % size_;
    switch (guard) {
      case Guard::RowsAbove:
        return row > 1;
      case Guard::RowsBelow:
        return row < size_ - 2;
      case Guard::ColsBefore:
        return col > 1;
      case Guard::ColsAfter:
        return col < size_ - 2;
    }
    return false;
  }
  bool Holds(CountTest test) const {
    return test == CountTest::None || (test == CountTest::A3 ? wing_.OpenA : wing_.OpenB) == 3;
  }

  bool Hit(WingCase which) {
    find_.Case = which;
    return true;
  }

  /// The tree is read before the counts are tested, so that a tree beyond the board is an error in any case.
  bool Applies(const CornerRule& rule) const {
    const bool tree = board_[CellOf(rule.Cases[index_].T)] == CELL_TREE;
    return Holds(rule.Count) && tree;
  }

  bool Corner(const CornerRule& rule) {
    if (!Applies(rule)) return false;
    const CornerCase& it = rule.Cases[index_];
    const int tree = CellOf(it.T);
    const int x = CellOf(tree, it.X);
    const int y = CellOf(tree, it.Y);
    if (Holds(it.First, tree) && Holds(it.Second, tree)) {
      const int corner = x + y - tree;
      if (!(IsOpen(x) && IsOpen(y) && IsOpen(corner))) return false;
      find_.Add(tree, Role::Tree);
      find_.Add(x, Role::MayBeTent);
      find_.Add(y, Role::MayBeTent);
      find_.Add(corner, Role::Grass);
      return Hit(WingCorner);
    }
    const bool takeX = it.Fallback == None ? it.Otherwise == Side::X : Holds(it.Fallback, tree);
    const int left = takeX ? x : y;
    if (!IsOpen(left)) return false;
    find_.Add(tree, Role::Tree);
    find_.Add(left, Role::Tent);
    return Hit(WingOneSide);
  }

  /// In formation 2 the second field that may be a tent is the one west of the tree last looked at, whichever
  /// it was.
  bool CornerOfInnerA() {
    if (!Corner(kInnerA)) return false;
    if (wing_.Formation == 2 && find_.Case == WingCorner) {
      int tree = wing_.B;
      if (Applies(kOpposite)) {
        tree = CellOf(kOpposite.Cases[index_].T);
      } else if (Applies(kOuterA)) {
        tree = CellOf(kOuterA.Cases[index_].T);
      }
      find_.Fields[2].Cell = tree - 1;
    }
    return true;
  }

  bool BothInnerTrees(BothInner bothInner) {
    const BothInnerCase& it = kBothInner[index_];
    const bool first = board_[CellOf(it.First)] == CELL_TREE;
    const bool second = board_[CellOf(it.Second)] == CELL_TREE;
    const bool never = wing_.Formation == 4 && bothInner == BothInner::NotInFormation4;
    if (never || wing_.OpenA + wing_.OpenB != 6 || !first || !second) return false;
    find_.Add(CellOf(it.First), Role::Tree);
    find_.Add(CellOf(it.FirstTent), Role::Tent);
    find_.Add(CellOf(it.Second), Role::Tree);
    find_.Add(CellOf(it.SecondTent), Role::Tent);
    return Hit(WingBothInner);
  }

  void AddOpen(const PairCase& pair) {
    if (!Holds(pair.If)) return;
    if (IsOpen(pair.First)) find_.Add(CellOf(pair.First), Role::Grass);
    if (IsOpen(pair.Second)) find_.Add(CellOf(pair.Second), Role::Grass);
  }

  bool CommonField() {
    const CommonFieldCase& it = kCommonField[index_];
    if (!(wing_.OpenA + wing_.OpenB == 4 && IsOpen(it.Open1) && IsOpen(it.Open2) && IsOpen(it.Open3)))
      return false;
    find_.Add(CellOf(it.Tent), Role::Tent);
    AddOpen(kPairOfA[index_]);
    AddOpen(kPairOfB[index_]);
    return Hit(WingCommonField);
  }

  bool Pair(int openA, int openB, const OpenCase& it, const PairCase& pair) {
    if (!(wing_.OpenA == openA && wing_.OpenB == openB && IsOpen(it.Open1) && IsOpen(it.Open2))) return false;
    AddOpen(pair);
    return !find_.Fields.IsEmpty() && Hit(WingPair);
  }

  const Array<int>& board_;
  const int size_;
  const Wing& wing_;
  const int index_;  // Of the formation in the tables.
  Find& find_;
};

/// The neighbours of a wing tree.
struct Survey {
  int Open = 0;
  int Tents = 0;
  int Trees = 0;
};

/// The west neighbour is looked at in column 0 too, where it is the last field of the row before.
Survey SurveyOf(const Array<int>& board, int size, int tree) {
  Survey survey;
  const auto look = [&](int cell) {
    const int code = board[cell];
    if (code == CELL_OPEN) ++survey.Open;
    if (code == CELL_TENT) ++survey.Tents;
    if (code == CELL_TREE) ++survey.Trees;
  };
  if (tree / size > 0) look(tree - size);
  look(tree - 1);
  if (tree % size < size - 1) look(tree + 1);
  if (tree / size < size - 1) look(tree + size);
  return survey;
}

/// The trees of an inner row that have one tree beside them in the row, one in the column, and no tent.
Positions CentresIn(const Lines& rows, int row) {
  const Sides trees = SidesOf(rows, CELL_TREE, row);
  const Positions corner = (trees.North ^ trees.South) & (trees.East ^ trees.West);
  return TreesWithoutTent(rows, row) & rows.Interior() & corner;
}

/// Sets `wing` to the one around such a tree. Returns whether its wing trees are fit.
bool WingAt(const Lines& rows, int row, int col, Wing& wing) {
  const Array<int>& board = rows.Board();
  const int size = rows.Size();
  const int centre = rows.CellAt(row, col);
  const bool north = Has(rows.Trees(row - 1), col);
  const bool west = Has(rows.Trees(row), col - 1);
  const int side = west ? centre - 1 : centre + 1;
  wing.Centre = centre;
  wing.Formation = north ? (west ? 1 : 2) : (west ? 3 : 4);
  wing.A = north ? centre - size : side;
  wing.B = north ? side : centre + size;
  const Survey a = SurveyOf(board, size, wing.A);
  const Survey b = SurveyOf(board, size, wing.B);
  wing.OpenA = a.Open;
  wing.OpenB = b.Open;
  // Each wing tree touches the centre and no other tree.
  return a.Trees + b.Trees == 2 && a.Open > 1 && b.Open > 1 && a.Tents + b.Tents == 0;
}

}  // namespace

bool FindWing(Lines& rows, BothInner bothInner, Find& find, Wing& wing) {
  for (int row = 1; row < rows.Size() - 1; ++row) {
    const bool found = AnyIn(CentresIn(rows, row), [&](int col) {
      return WingAt(rows, row, col, wing) && Rules(rows, wing, find).Decide(bothInner);
    });
    if (found) return true;
  }
  return false;
}

}  // namespace bivouac
