#include "deduction/shared_fields.h"
#include "hints/hint_finds.h"

namespace bivouac {
namespace {

/// What both kinds of pairs need: the two trees and the field that they share are marked first.
class Pair : protected SharedField {
 public:
  Pair(const SharedField& shared, Find& find) : SharedField(shared), find_(find) {}

 protected:
  void Mark(Role role) { Mark(role, Cell); }
  /// Marks both trees and another field.
  void Mark(Role role, int field) {
    MarkTrees();
    find_.Add(field, role);
  }
  void MarkTrees() {
    find_.Add(First.Tree(), Role::Tree);
    find_.Add(Second.Tree(), Role::Tree);
  }
  void AddTent(int cell) { find_.Add(cell, Role::Tent); }
  void AddGrass(int cell) { find_.Add(cell, Role::Grass); }
  bool Is(SharedFieldCase which) {
    find_.Case = which;
    return true;
  }

  Find& find_;
};

/// Two trees of one line. Requires: neither has four options.
class PairInLine : public Pair {
 public:
  using Pair::Pair;

  bool Decide() {
    const bool firstHasOuter = First[ToFirst];
    const bool secondHasOuter = Second[ToSecond];
    if (firstHasOuter && secondHasOuter) return false;
    if (firstHasOuter) return DecideBarred(First, ToFirst);
    if (secondHasOuter) return DecideBarred(Second, ToSecond);
    Mark(Role::Grass);
    for (const Options* tree : {&First, &Second}) {
      if (tree->Count() == 2) AddTent(tree->Tree() + ToOpenSide(*tree));
    }
    return Is(find_.Fields.Count() > 3 ? NeitherTakesItTents : NeitherTakesIt);
  }

 private:
  /// The tree that has an option beyond it cannot take the field, since the other would be left with nothing.
  bool DecideBarred(const Options& tree, int toOuter) {
    const int outer = tree.Tree() + Step(toOuter);
    if (tree.Count() == 2) {
      Mark(Role::LostToOne);
      AddTent(outer);
      return Is(OneIsLeftItsOnlyOption);
    }
    const int corner = outer + ToOpenSide(tree);
    if (!IsOpen(corner)) return false;
    Mark(Role::LostToOne);
    AddGrass(corner);
    return Is(OneIsLeftTwoOptions);
  }

  /// The step to the option of a tree across the line.
  int ToOpenSide(const Options& tree) const {
    const bool inRow = ToFirst == WEST;
    const int side = inRow ? NORTH : EAST;
    return Step(tree[side] ? side : OppositeOf(side));
  }
};

/// Two trees that touch corner to corner; see the picture in the header. Each case says when it refuses, and
/// else what it marks.
class DiagonalPair : public Pair {
 public:
  using Pair::Pair;

  bool Decide() {
    // A tree with one option was a hint of the first stage.
    switch (First.Count() * 10 + Second.Count()) {
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
  int Beside() const { return At(First, ahead_); }
  int Below() const { return At(First, SOUTH); }
  int CornerOfFirst() const { return At(First, NORTH, back_); }
  int CornerOfSecond() const { return At(Second, SOUTH, ahead_); }

  bool TwoAndTwo() {
    if (First[SOUTH] && First[NORTH] && Second[ahead_]) return false;
    if (First[WEST] && First[EAST] && Second[SOUTH]) return false;
    const bool beside = First[ahead_];
    if (beside && First[back_]) return OneTakes(At(First, back_));
    if (beside && Second[ahead_]) return BothTake(At(First, NORTH), At(Second, ahead_));
    if (beside) return OneTakes(At(Second, SOUTH));
    if (First[NORTH]) return OneTakes(At(First, NORTH));
    if (Second[SOUTH]) return BothTake(At(First, back_), At(Second, SOUTH));
    return OneTakes(At(Second, ahead_));
  }

  bool TwoAndThree() {
    if ((First[EAST] && First[WEST]) || (First[SOUTH] && First[NORTH])) return false;
    if (First[NORTH] || First[back_]) return OneIsLeftTwo(CornerOfSecond());
    if (Second[ahead_]) return TentsAreKnown(Beside(), Below(), At(Second, ahead_));
    return TentsAreKnown(Below(), Beside(), At(Second, SOUTH));
  }

  bool ThreeAndTwo() {
    if ((Second[NORTH] && Second[SOUTH]) || (Second[WEST] && Second[EAST])) return false;
    if (Second[ahead_] || Second[SOUTH]) return OneIsLeftTwo(CornerOfFirst());
    if (First[back_]) return TentsAreKnown(Below(), At(First, back_), Beside());
    return TentsAreKnown(Beside(), At(First, NORTH), Below());
  }

  bool ThreeAndThree() {
    if (!First[ahead_] || !First[SOUTH]) return false;
    if (Second[SOUTH] && First[NORTH])
      return FieldsAreGrass(At(First, NORTH, ahead_), At(Second, SOUTH, back_));
    if (Second[ahead_] && First[back_])
      return FieldsAreGrass(At(First, SOUTH, back_), At(Second, NORTH, ahead_));
    Mark(Role::Grass, First[NORTH] ? Beside() : Below());
    return Is(AllMakeFieldsGrass);
  }

  bool OneTakes(int tent) {
    Mark(Role::LostToOne);
    AddTent(tent);
    return Is(OneTakesItsOther);
  }
  bool BothTake(int firstTent, int secondTent) {
    Mark(Role::Grass);
    AddTent(firstTent);
    AddTent(secondTent);
    return Is(BothTakeTheirOthers);
  }
  bool OneIsLeftTwo(int corner) {
    if (!IsOpen(corner)) return false;
    Mark(Role::LostToOne);
    AddGrass(corner);
    return Is(OneIsLeftTwoOptions);
  }
  bool TentsAreKnown(int grass, int firstTent, int secondTent) {
    Mark(Role::Grass, grass);
    AddTent(firstTent);
    AddTent(secondTent);
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
    if (firstIsOpen) AddGrass(besideFirst);
    if (secondIsOpen) AddGrass(besideSecond);
    return Is(AllMakeFieldsGrass);
  }

  // The way the pair leans, from the first tree to the field beside it.
  const int ahead_ = LeansRight() ? EAST : WEST;
  const int back_ = OppositeOf(ahead_);
};

}  // namespace

bool FindSharedField(Lines& rows, Find& find) {
  return AnySharedField(rows, [&](const SharedField& shared) {
    if (!shared.IsInLine()) return DiagonalPair(shared, find).Decide();
    if (shared.First.Count() == 4 || shared.Second.Count() == 4) return false;
    return PairInLine(shared, find).Decide();
  });
}

}  // namespace bivouac
