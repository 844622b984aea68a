#include "deduction/wings.h"

namespace bivouac {
namespace {

// Fields are named by a tree of the wing and an offset of rows and columns from it, as flat indexes.
enum class From { Centre, A, B };

struct Field {
  From Tree;
  int Rows;
  int Cols;
};

struct Offset {
  int Rows;
  int Cols;
};

/// A test of a tree's row or column against the edge of the board.
enum class Edge { None, RowAbove, RowBelow, ColBefore, ColBehind };

enum class Side { X, Y };

enum class CountTest { None, A3, B3 };

/// W1, W2, W3, W5 and W6: a further tree T has two sides X and Y left.
struct CornerRow {
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
  std::array<CornerRow, 4> Rows;  // By formation.
};

using enum Edge;
using enum From;

constexpr Offset kNorth{-1, 0};
constexpr Offset kEast{0, 1};
constexpr Offset kSouth{1, 0};
constexpr Offset kWest{0, -1};

// The rows do not all mirror each other, and are meant as they stand.
// clang-format off
constexpr CornerRule kW1{CountTest::A3, {{
    {{A, -1,  1}, kNorth, kEast, RowAbove, ColBehind, RowAbove, Side::Y},
    {{A, -1, -1}, kNorth, kWest, RowAbove, ColBefore, RowAbove, Side::Y},
    {{A, -1, -1}, kNorth, kWest, RowAbove, ColBefore, RowAbove, Side::Y},
    {{A, -1,  1}, kNorth, kEast, RowAbove, ColBehind, RowAbove, Side::Y},
}}};
constexpr CornerRule kW2{CountTest::None, {{
    {{Centre,  1,  1}, kSouth, kEast, RowBelow, ColBehind, RowBelow, Side::Y},
    {{Centre,  1, -1}, kSouth, kWest, RowBelow, ColBefore, RowBelow, Side::Y},
    {{Centre, -1,  1}, kNorth, kEast, RowAbove, ColBehind, RowAbove, Side::Y},
    {{Centre, -1, -1}, kNorth, kWest, RowAbove, ColBefore, RowBelow, Side::Y},
}}};
constexpr CornerRule kW3{CountTest::B3, {{
    {{B, 1, -1}, kSouth, kWest, RowBelow, ColBefore, RowBelow, Side::Y},
    {{B, 1,  1}, kSouth, kEast, RowBelow, ColBehind, RowBelow, Side::Y},
    {{B, 1,  1}, kSouth, kEast, RowBelow, ColBefore, RowBelow, Side::Y},
    {{B, 1, -1}, kSouth, kWest, RowBelow, ColBefore, RowBelow, Side::Y},
}}};
constexpr CornerRule kW5{CountTest::B3, {{
    {{B, -1, -1}, kNorth, kWest, ColBefore, None, None, Side::X},
    {{B, -1,  1}, kNorth, kEast, ColBehind, None, None, Side::X},
    {{B,  1, -1}, kSouth, kWest, ColBefore, None, None, Side::X},
    {{B,  1,  1}, kSouth, kEast, ColBehind, None, None, Side::X},
}}};
constexpr CornerRule kW6{CountTest::A3, {{
    {{A, -1, -1}, kNorth, kWest, RowAbove, None, None, Side::Y},
    {{A, -1,  1}, kNorth, kEast, RowAbove, None, None, Side::Y},
    {{A,  1, -1}, kSouth, kWest, RowAbove, None, None, Side::Y},
    {{A,  1,  1}, kSouth, kEast, RowBelow, None, None, Side::Y},
}}};

/// W4: two further trees, each with one field left.
struct TwoTreesRow { Field T1, Tent1, T2, Tent2; };
constexpr std::array<TwoTreesRow, 4> kW4{{
    {{A, -1, -1}, {A, -2, -1}, {B, -1, -1}, {B, -1, -2}},
    {{A, -1,  1}, {A, -2,  1}, {B, -1,  1}, {B, -1,  2}},
    {{A,  1, -1}, {A,  1, -2}, {B,  1, -1}, {B,  2, -1}},
    {{A,  1,  1}, {A,  1,  2}, {B,  1,  1}, {B,  2,  1}},
}};

/// Two fields side by side that become grass, if the guard holds at the row or column of the centre.
enum class Guard { RowsAbove, RowsBelow, ColsBefore, ColsBehind };
struct PairRow { Guard If; Field First, Second; };

/// The pair two steps from A and the centre, away from the other field of A; likewise for B.
constexpr std::array<PairRow, 4> kPairOfA{{
    {Guard::ColsBehind, {A,  0,  2}, {Centre,  0,  2}},
    {Guard::ColsBefore, {A,  0, -2}, {Centre,  0, -2}},
    {Guard::RowsAbove,  {A, -2,  0}, {Centre, -2,  0}},
    {Guard::RowsAbove,  {A, -2,  0}, {Centre, -2,  0}},
}};
constexpr std::array<PairRow, 4> kPairOfB{{
    {Guard::RowsBelow,  {B, 2,  0}, {Centre, 2,  0}},
    {Guard::RowsBelow,  {B, 2,  0}, {Centre, 2,  0}},
    {Guard::ColsBehind, {B, 0,  2}, {Centre, 0,  2}},
    {Guard::ColsBefore, {B, 0, -2}, {Centre, 0, -2}},
}};

/// W7: the three fields that must be open, and the one among them that takes the tent.
struct TentRow { Field Open1, Open2, Open3, Tent; };
constexpr std::array<TentRow, 4> kW7{{
    {{A,  0, -1}, {A, 0, 1}, {B, 1,  0}, {A, 0, -1}},
    {{A,  0, -1}, {A, 0, 1}, {B, 1,  0}, {A, 0,  1}},
    {{A, -1,  0}, {A, 1, 0}, {B, 0,  1}, {A, 1,  0}},
    {{A, -1,  0}, {A, 1, 0}, {B, 0, -1}, {A, 1,  0}},
}};

/// W8 and W9: the two fields that must be open.
struct OpenRow { Field Open1, Open2; };
constexpr std::array<OpenRow, 4> kW8{{
    {{A,  0, -1}, {A, 0, 1}},
    {{A,  0, -1}, {A, 0, 1}},
    {{A, -1,  0}, {A, 1, 0}},
    {{A, -1,  0}, {A, 1, 0}},
}};
constexpr std::array<OpenRow, 4> kW9{{
    {{B, -1,  0}, {B, 1, 0}},
    {{B, -1,  0}, {B, 1, 0}},
    {{B,  0, -1}, {B, 0, 1}},
    {{B,  0, -1}, {B, 0, 1}},
}};
// clang-format on

/// The nine rules on one wing. Each reads from left to right and no further than it takes to settle it.
class Rules {
 public:
  Rules(const Array<int>& board, int size, const Wing& wing)
      : board_(board), size_(size), wing_(wing), row_(static_cast<std::size_t>(wing.Formation - 1)) {
    find_.Formation = wing;
  }

  std::optional<WingFind> Run(TwoTreesRule twoTrees) {
    const bool hit = Corner(kW1) || Corner(kW2) || Corner(kW3) || TwoTrees(twoTrees) || Corner(kW5) ||
                     LastCorner() || Tent() || Grass(2, 3, kW8[row_], kPairOfA[row_]) ||
                     Grass(3, 2, kW9[row_], kPairOfB[row_]);
    if (hit) return find_;
    return {};
  }

 private:
  int CellOf(Field field) const {
    const int tree = field.Tree == Centre ? wing_.Centre : field.Tree == A ? wing_.A : wing_.B;
    return tree + field.Rows * size_ + field.Cols;
  }
  int CellOf(int cell, Offset offset) const { return cell + offset.Rows * size_ + offset.Cols; }
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
      case ColBehind:
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
      case Guard::ColsBehind:
        return col < size_ - 2;
    }
    return false;
  }
  bool Holds(CountTest test) const {
    return test == CountTest::None || (test == CountTest::A3 ? wing_.OpenA : wing_.OpenB) == 3;
  }

  void Mark(int cell, int tile) { find_.Marks[static_cast<std::size_t>(find_.Count++)] = {cell, tile}; }
  bool Hit(WingMessage message) {
    find_.Message = message;
    return true;
  }

  /// The tree is read before the counts are tested, so that a tree beyond the board is an error in any case.
  bool Applies(const CornerRule& rule) const {
    const bool tree = board_[CellOf(rule.Rows[row_].T)] == CELL_TREE;
    return Holds(rule.Count) && tree;
  }

  bool Corner(const CornerRule& rule) {
    if (!Applies(rule)) return false;
    const CornerRow& row = rule.Rows[row_];
    const int tree = CellOf(row.T);
    const int x = CellOf(tree, row.X);
    const int y = CellOf(tree, row.Y);
    if (Holds(row.First, tree) && Holds(row.Second, tree)) {
      const int corner = x + y - tree;
      if (!(IsOpen(x) && IsOpen(y) && IsOpen(corner))) return false;
      Mark(tree, CELL_TREE);
      Mark(x, -CELL_TENT);
      Mark(y, -CELL_TENT);
      Mark(corner, -CELL_GRASS);
      return Hit(WingMessage::TA);
    }
    const bool takeX = row.Fallback == None ? row.Otherwise == Side::X : Holds(row.Fallback, tree);
    const int left = takeX ? x : y;
    if (!IsOpen(left)) return false;
    Mark(tree, CELL_TREE);
    Mark(left, -CELL_TENT);
    return Hit(WingMessage::TB);
  }

  /// W6. In formation 2 its second tent mark goes to the field west of the tree last looked at, whichever it
  /// was.
  bool LastCorner() {
    if (!Corner(kW6)) return false;
    if (wing_.Formation == 2 && find_.Message == WingMessage::TA) {
      int tree = wing_.B;
      if (Applies(kW2)) {
        tree = CellOf(kW2.Rows[row_].T);
      } else if (Applies(kW1)) {
        tree = CellOf(kW1.Rows[row_].T);
      }
      find_.Marks[2].Cell = tree - 1;
    }
    return true;
  }

  bool TwoTrees(TwoTreesRule twoTrees) {
    const TwoTreesRow& row = kW4[row_];
    const bool first = board_[CellOf(row.T1)] == CELL_TREE;
    const bool second = board_[CellOf(row.T2)] == CELL_TREE;
    const bool never = wing_.Formation == 4 && twoTrees == TwoTreesRule::NotInFormation4;
    if (never || wing_.OpenA + wing_.OpenB != 6 || !first || !second) return false;
    Mark(CellOf(row.T1), CELL_TREE);
    Mark(CellOf(row.Tent1), -CELL_TENT);
    Mark(CellOf(row.T2), CELL_TREE);
    Mark(CellOf(row.Tent2), -CELL_TENT);
    return Hit(WingMessage::TC);
  }

  void MarkOpen(const PairRow& pair) {
    if (!Holds(pair.If)) return;
    if (IsOpen(pair.First)) Mark(CellOf(pair.First), -CELL_GRASS);
    if (IsOpen(pair.Second)) Mark(CellOf(pair.Second), -CELL_GRASS);
  }

  bool Tent() {
    const TentRow& row = kW7[row_];
    if (!(wing_.OpenA + wing_.OpenB == 4 && IsOpen(row.Open1) && IsOpen(row.Open2) && IsOpen(row.Open3)))
      return false;
    Mark(CellOf(row.Tent), -CELL_TENT);
    MarkOpen(kPairOfA[row_]);
    MarkOpen(kPairOfB[row_]);
    return Hit(WingMessage::TD);
  }

  bool Grass(int openA, int openB, const OpenRow& row, const PairRow& pair) {
    if (!(wing_.OpenA == openA && wing_.OpenB == openB && IsOpen(row.Open1) && IsOpen(row.Open2)))
      return false;
    MarkOpen(pair);
    return find_.Count > 0 && Hit(WingMessage::TE);
  }

  const Array<int>& board_;
  int size_;
  Wing wing_;
  std::size_t row_;
  WingFind find_{};
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
  return rows.Trees(row) & rows.Interior() & corner & ~SidesOf(rows, CELL_TENT, row).Any();
}

/// The wing around such a tree, if its wing trees are fit.
std::optional<Wing> WingAt(const Array<int>& board, int size, int centre) {
  const bool north = board[centre - size] == CELL_TREE;
  const bool west = board[centre - 1] == CELL_TREE;
  const int side = west ? centre - 1 : centre + 1;
  Wing wing{};
  wing.Centre = centre;
  wing.Formation = north ? (west ? 1 : 2) : (west ? 3 : 4);
  wing.A = north ? centre - size : side;
  wing.B = north ? side : centre + size;
  const Survey a = SurveyOf(board, size, wing.A);
  const Survey b = SurveyOf(board, size, wing.B);
  wing.OpenA = a.Open;
  wing.OpenB = b.Open;
  // Each wing tree touches the centre and no other tree.
  const bool stands = a.Trees + b.Trees == 2 && a.Open > 1 && b.Open > 1 && a.Tents + b.Tents == 0;
  return stands ? std::optional(wing) : std::nullopt;
}

}  // namespace

std::optional<WingFind> FindWing(const Array<int>& board, const Lines& rows, TwoTreesRule twoTrees) {
  const int size = rows.axis.size;
  std::optional<WingFind> find;
  for (int row = 1; row < size - 1; ++row) {
    const bool found = AnyIn(CentresIn(rows, row), [&](int col) {
      const std::optional<Wing> wing = WingAt(board, size, row * size + col);
      if (wing) find = Rules(board, size, *wing).Run(twoTrees);
      return find.has_value();
    });
    if (found) break;
  }
  return find;
}

std::optional<WingFind> FindWing(const Array<int>& board, int size, TwoTreesRule twoTrees) {
  return FindWing(board, Lines(board, {Direction::Rows, size}), twoTrees);
}

}  // namespace bivouac
