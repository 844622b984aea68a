#include "rating/shared_field.h"

#include <algorithm>
#include <initializer_list>

#include "deduction/shared_fields.h"

namespace bivouac {
namespace {

/// The options besides the shared field of two trees that stand diagonally, when the other field that touches
/// both is not open: near touches the shared field, far does not.
struct DiagonalCase {
  int ToFirst;
  int ToSecond;
  int Near1, Far1;
  int Near2, Far2;
};
constexpr FixedArray<DiagonalCase, 4> kDiagonal{{
    {WEST, SOUTH, NORTH, WEST, EAST, SOUTH},
    {NORTH, EAST, WEST, NORTH, SOUTH, EAST},
    {EAST, SOUTH, NORTH, EAST, WEST, SOUTH},
    {NORTH, WEST, EAST, NORTH, SOUTH, WEST},
}};

class Decision {
 public:
  Decision(const Lines& rows, const SharedField& shared, Find& find)
      : board_(rows.Board()),
        size_(rows.Size()),
        shared_(shared),
        first_(shared.First),
        second_(shared.Second),
        find_(find) {}

  bool Decide() {
    if (shared_.IsInLine()) return first_.Count() != 4 && second_.Count() != 4 && InLine();
    if (first_.Count() + second_.Count() >= 7) return false;
    const bool bothOpen = first_[SOUTH] && first_[LeansRight() ? EAST : WEST];
    return bothOpen ? TwoCommonFields() : OneCommonField();
  }

 private:
  int Step(int direction) const { return StepOf(size_, direction); }
  bool LeansRight() const { return second_.Tree() - first_.Tree() > size_; }

  bool Tents(std::initializer_list<int> cells) {
    for (const int cell : cells) find_.Add(cell, Role::Tent);
    return true;
  }
  /// Grass where it is open. It is a find if one of the fields is; those after it are not looked at here.
  bool Grass(std::initializer_list<int> cells) {
    if (std::none_of(cells.begin(), cells.end(), [&](int cell) { return board_[cell] == CELL_OPEN; }))
      return false;
    for (const int cell : cells) find_.Add(cell, Role::Grass);
    return true;
  }

  /// A tree that has an option beyond it cannot take the field between the two if the other has none.
  bool InLine() {
    const bool first = first_[shared_.ToFirst];
    if (first == second_[shared_.ToSecond]) return false;
    const Options& tree = first ? first_ : second_;
    const int far = first ? shared_.ToFirst : shared_.ToSecond;
    if (tree.Count() != 3) return Tents({tree.Tree() + Step(far)});
    const bool inRow = far == EAST || far == WEST;
    const int side = inRow ? (tree[NORTH] ? NORTH : SOUTH) : (tree[EAST] ? EAST : WEST);
    return Grass({tree.Tree() + Step(far) + Step(side)});
  }

  bool OneCommonField() {
    if (first_.Count() + second_.Count() != 4) return false;
    const DiagonalCase& it = *std::find_if(kDiagonal.begin(), kDiagonal.end(), [&](const DiagonalCase& one) {
      return one.ToFirst == shared_.ToFirst && one.ToSecond == shared_.ToSecond;
    });
    const bool near1 = first_[it.Near1];
    const bool near2 = second_[it.Near2];
    const int other1 = first_.Tree() + Step(near1 ? it.Near1 : it.Far1);
    const int other2 = second_.Tree() + Step(near2 ? it.Near2 : it.Far2);
    if (near1 && near2) return Tents({other1, other2});
    if (near1) return Tents({other2});
    return near2 && Tents({other1});
  }

  /// Both fields that touch the two trees are open. One tree will use one of them, and they touch, so the
  /// other tree must use an option of its own.
  bool TwoCommonFields() {
    const int n = size_;
    const int a = first_.Tree();
    const int b = second_.Tree();
    const bool right = LeansRight();
    if (first_.Count() == 4) return Grass({a - n - 1, a - n + 1, right ? a + n - 1 : a + n + 1});
    if (second_.Count() == 4) {
      // Leaning left takes fields around the first tree, though the second has the four options, and without
      // a test of the edge.
      return right ? Grass({b - n + 1, b + n - 1, b + n + 1}) : Grass({a - n - 1, a + n - 1, a + n + 1});
    }
    const bool north = first_[NORTH];
    if (first_.Count() == 3 && second_.Count() == 3) {
      if (right) return north ? Grass({a - n + 1, b + n - 1}) : Grass({a + n - 1, b - n + 1});
      return north ? Grass({a - n - 1, b + n + 1}) : Grass({a + n + 1, b - n - 1});
    }
    if (first_.Count() == 3) return north ? Tents({a - n, a + n}) : Tents({a - 1, a + 1});
    return second_[right ? EAST : WEST] ? Tents({b - 1, b + 1}) : Tents({b - n, b + n});
  }

  const Array<int>& board_;
  const int size_;
  const SharedField& shared_;
  const Options& first_;
  const Options& second_;
  Find& find_;
};

}  // namespace

bool FindOtherOptions(Lines& rows, Find& find) {
  return AnySharedField(rows,
                        [&](const SharedField& shared) { return Decision(rows, shared, find).Decide(); });
}

}  // namespace bivouac
