#include "deduction/shared_fields.h"
#include "hints/hint_finds.h"

namespace bivouac {
namespace {

/// What both kinds of pairs need: the two trees and the field that they share are marked first.
class Pair {
 public:
  Pair(const Lines& rows, const SharedField& shared, Find& find)
      : board_(rows.Board()),
        size_(rows.Size()),
        shared_(shared),
        first_(shared.First),
        second_(shared.Second),
        find_(find) {}

 protected:
  bool IsOpen(int cell) const { return board_[cell] == CELL_OPEN; }
  int Step(int direction) const { return StepOf(size_, direction); }

  /// Marks both trees and the field that they share, or another.
  void Mark(Role role) { Mark(role, shared_.Cell); }
  void Mark(Role role, int field) {
    MarkTrees();
    find_.Add(field, role);
  }
  void MarkTrees() {
    find_.Add(first_.Tree(), Role::Tree);
    find_.Add(second_.Tree(), Role::Tree);
  }
  void Tent(int cell) { find_.Add(cell, Role::Tent); }
  void Grass(int cell) { find_.Add(cell, Role::Grass); }
  bool Is(SharedFieldCase which) {
    find_.Case = which;
    return true;
  }

  const Array<int>& board_;
  const int size_;
  const SharedField& shared_;
  const Options& first_;
  const Options& second_;
  Find& find_;
};

/// Two trees of one line. Requires: neither has four options.
class PairInLine : public Pair {
 public:
  using Pair::Pair;

  bool Decide() {
    const bool firstHasOuter = first_[shared_.ToFirst];
    const bool secondHasOuter = second_[shared_.ToSecond];
    if (firstHasOuter && secondHasOuter) return false;
    if (firstHasOuter) return DecideBarred(first_, shared_.ToFirst);
    if (secondHasOuter) return DecideBarred(second_, shared_.ToSecond);
    Mark(Role::Grass);
    for (const Options* tree : {&first_, &second_}) {
      if (tree->Count() == 2) Tent(tree->Tree() + ToOpenSide(*tree));
    }
    return Is(find_.Fields.Count() > 3 ? NeitherTakesItTents : NeitherTakesIt);
  }

 private:
  /// The tree that has an option beyond it cannot take the field, since the other would be left with nothing.
  bool DecideBarred(const Options& tree, int toOuter) {
    const int outer = tree.Tree() + Step(toOuter);
    if (tree.Count() == 2) {
      Mark(Role::LostToOne);
      Tent(outer);
      return Is(OneIsLeftItsOnlyOption);
    }
    const int corner = outer + ToOpenSide(tree);
    if (!IsOpen(corner)) return false;
    Mark(Role::LostToOne);
    Grass(corner);
    return Is(OneIsLeftTwoOptions);
  }

  /// The step to the option of a tree across the line.
  int ToOpenSide(const Options& tree) const {
    const bool inRow = shared_.ToFirst == WEST;
    const int side = inRow ? NORTH : EAST;
    return Step(tree[side] ? side : OppositeOf(side));
  }
};

/// Two trees that touch corner to corner; see the picture in the header. Each case says when it refuses, and
/// else what it marks.
class DiagonalPair : public Pair {
 public:
  DiagonalPair(const Lines& rows, const SharedField& shared, Find& find) : Pair(rows, shared, find) {
    const bool leansRight = second_.Tree() - first_.Tree() > size_;
    ahead_ = leansRight ? EAST : WEST;
    back_ = leansRight ? WEST : EAST;
  }

  bool Decide() {
    // A tree with one option was a hint of the first stage.
    switch (first_.Count() * 10 + second_.Count()) {
      case 22:
        return TwoAndTwo();
      case 23:
        return TwoAndThree();
      case 24:
        return OneFieldIsGrass(CornerOfSecond());
      case 32:
        return ThreeAndTwo();
      case 33:
        return ThreeAndThree();
      case 42:
        return OneFieldIsGrass(CornerOfFirst());
      default:
        return false;
    }
  }

 private:
  int At(const Options& tree, int direction) const { return tree.Tree() + Step(direction); }
  int At(const Options& tree, int direction, int andThen) const {
    return At(tree, direction) + Step(andThen);
  }
  int Beside() const { return At(first_, ahead_); }
  int Below() const { return At(first_, SOUTH); }
  int CornerOfFirst() const { return At(first_, NORTH, back_); }
  int CornerOfSecond() const { return At(second_, SOUTH, ahead_); }

  bool TwoAndTwo() {
    if (first_[SOUTH] && first_[NORTH] && second_[ahead_]) return false;
    if (first_[WEST] && first_[EAST] && second_[SOUTH]) return false;
    const bool beside = first_[ahead_];
    if (beside && first_[back_]) return OneTakes(At(first_, back_));
    if (beside && second_[ahead_]) return BothTake(At(first_, NORTH), At(second_, ahead_));
    if (beside) return OneTakes(At(second_, SOUTH));
    if (first_[NORTH]) return OneTakes(At(first_, NORTH));
    if (second_[SOUTH]) return BothTake(At(first_, back_), At(second_, SOUTH));
    return OneTakes(At(second_, ahead_));
  }

  bool TwoAndThree() {
    if ((first_[EAST] && first_[WEST]) || (first_[SOUTH] && first_[NORTH])) return false;
    if (first_[NORTH] || first_[back_]) return OneIsLeftTwo(CornerOfSecond());
    if (second_[ahead_]) return TentsAreKnown(Beside(), Below(), At(second_, ahead_));
    return TentsAreKnown(Below(), Beside(), At(second_, SOUTH));
  }

  bool ThreeAndTwo() {
    if ((second_[NORTH] && second_[SOUTH]) || (second_[WEST] && second_[EAST])) return false;
    if (second_[ahead_] || second_[SOUTH]) return OneIsLeftTwo(CornerOfFirst());
    if (first_[back_]) return TentsAreKnown(Below(), At(first_, back_), Beside());
    return TentsAreKnown(Beside(), At(first_, NORTH), Below());
  }

  bool ThreeAndThree() {
    if (!first_[ahead_] || !first_[SOUTH]) return false;
    if (second_[SOUTH] && first_[NORTH])
      return FieldsAreGrass(At(first_, NORTH, ahead_), At(second_, SOUTH, back_));
    if (second_[ahead_] && first_[back_])
      return FieldsAreGrass(At(first_, SOUTH, back_), At(second_, NORTH, ahead_));
    Mark(Role::Grass, first_[NORTH] ? Beside() : Below());
    return Is(AllMakeFieldsGrass);
  }

  bool OneTakes(int tent) {
    Mark(Role::LostToOne);
    Tent(tent);
    return Is(OneTakesItsOther);
  }
  bool BothTake(int firstTent, int secondTent) {
    Mark(Role::Grass);
    Tent(firstTent);
    Tent(secondTent);
    return Is(BothTakeTheirOthers);
  }
  bool OneIsLeftTwo(int corner) {
    if (!IsOpen(corner)) return false;
    Mark(Role::LostToOne);
    Grass(corner);
    return Is(OneIsLeftTwoOptions);
  }
  bool TentsAreKnown(int grass, int firstTent, int secondTent) {
    Mark(Role::Grass, grass);
    Tent(firstTent);
    Tent(secondTent);
    return Is(BothTentsKnown);
  }
  bool OneFieldIsGrass(int corner) {
    if (!IsOpen(corner)) return false;
    Mark(Role::Grass, corner);
    return Is(AllMakeFieldGrass);
  }
  bool FieldsAreGrass(int besideFirst, int besideSecond) {
    const bool secondIsOpen = IsOpen(besideSecond);
    const bool firstIsOpen = IsOpen(besideFirst);
    if (!firstIsOpen && !secondIsOpen) return false;
    MarkTrees();
    if (firstIsOpen) Grass(besideFirst);
    if (secondIsOpen) Grass(besideSecond);
    return Is(AllMakeFieldsGrass);
  }

  int ahead_;  // The way the pair leans: from the first tree to the field beside it.
  int back_;
};

}  // namespace

bool FindSharedField(Lines& rows, Find& find) {
  return AnySharedField(rows, [&](const SharedField& shared) {
    if (!shared.IsInLine()) return DiagonalPair(rows, shared, find).Decide();
    if (shared.First.Count() == 4 || shared.Second.Count() == 4) return false;
    return PairInLine(rows, shared, find).Decide();
  });
}

}  // namespace bivouac
