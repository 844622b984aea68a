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

class Decision : SharedField {
 public:
  Decision(const SharedField& shared, Find& find) : SharedField(shared), find_(find) {}

  bool Decide() {
    if (IsInLine()) return First.Count() != 4 && Second.Count() != 4 && InLine();
    if (First.Count() + Second.Count() >= 7) return false;
    const bool bothOpen = First[SOUTH] && First[LeansRight() ? EAST : WEST];
    return bothOpen ? TwoCommonFields() : OneCommonField();
  }

 private:
  bool AddTents(std::initializer_list<int> cells) {
    for (const int cell : cells) find_.Add(cell, Role::Tent);
    return true;
  }
  /// Grass where it is open. It is a find if one of the fields is; those after it are not looked at here.
  bool AddGrass(std::initializer_list<int> cells) {
    if (std::none_of(cells.begin(), cells.end(), [&](int cell) { return IsOpen(cell); })) return false;
    for (const int cell : cells) find_.Add(cell, Role::Grass);
    return true;
  }

  /// A tree that has an option beyond it cannot take the field between the two if the other has none.
  bool InLine() {
    const bool first = First[ToFirst];
    if (first == Second[ToSecond]) return false;
    const Options& tree = first ? First : Second;
    const int far = first ? ToFirst : ToSecond;
    if (tree.Count() != 3) return AddTents({tree.Tree() + Step(far)});
    const bool inRow = far == EAST || far == WEST;
    const int side = inRow ? (tree[NORTH] ? NORTH : SOUTH) : (tree[EAST] ? EAST : WEST);
    return AddGrass({tree.Tree() + Step(far) + Step(side)});
  }

  bool OneCommonField() {
    if (First.Count() + Second.Count() != 4) return false;
    const DiagonalCase& it = *std::find_if(kDiagonal.begin(), kDiagonal.end(), [&](const DiagonalCase& one) {
      return one.ToFirst == ToFirst && one.ToSecond == ToSecond;
    });
    const bool near1 = First[it.Near1];
    const bool near2 = Second[it.Near2];
    const int other1 = First.Tree() + Step(near1 ? it.Near1 : it.Far1);
    const int other2 = Second.Tree() + Step(near2 ? it.Near2 : it.Far2);
    if (near1 && near2) return AddTents({other1, other2});
    if (near1) return AddTents({other2});
    return near2 && AddTents({other1});
  }

  /// Both fields that touch the two trees are open. One tree will use one of them, and they touch, so the
  /// other tree must use an option of its own.
  bool TwoCommonFields() {
    const int n = Size;
    const int a = First.Tree();
    const int b = Second.Tree();
    const bool right = LeansRight();
    if (First.Count() == 4) return AddGrass({a - n - 1, a - n + 1, right ? a + n - 1 : a + n + 1});
    if (Second.Count() == 4) {
      // Leaning left takes fields around the first tree, though the second has the four options, and without
      // a test of the edge.
      return right ? AddGrass({b - n + 1, b + n - 1, b + n + 1})
                   : AddGrass({a - n - 1, a + n - 1, a + n + 1});
    }
    const bool north = First[NORTH];
    if (First.Count() == 3 && Second.Count() == 3) {
      if (right) return north ? AddGrass({a - n + 1, b + n - 1}) : AddGrass({a + n - 1, b - n + 1});
      return north ? AddGrass({a - n - 1, b + n + 1}) : AddGrass({a + n + 1, b - n - 1});
    }
    if (First.Count() == 3) return north ? AddTents({a - n, a + n}) : AddTents({a - 1, a + 1});
    return Second[right ? EAST : WEST] ? AddTents({b - 1, b + 1}) : AddTents({b - n, b + n});
  }

  Find& find_;
};

}  // namespace

bool FindOtherOptions(Lines& rows, Find& find) {
  return AnySharedField(rows, [&](const SharedField& shared) { return Decision(shared, find).Decide(); });
}

}  // namespace bivouac
