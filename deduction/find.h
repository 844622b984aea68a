// What a deduction finds: fields, what becomes of them, and the fields that explain it. The rater acts on a
// find, a hint explains it.
#pragma once

#include "game/array.h"
#include "game/records.h"

namespace bivouac {

/// What a find says of a field.
enum class Role {
  // Decided.
  Grass,  ///< Becomes grass. It is open, unless the find says otherwise.
  Tent,   ///< Becomes a tent.
  // Explaining.
  Tree,          ///< A tree that the thought starts from.
  StandingTent,  ///< A tent likewise.
  MayBeTent,     ///< Open: a tent may stand here, and whether it does is left open.
  LostToOne,     ///< Open: one of two trees cannot have its tent here; the other may.
  WingTree,      ///< One of the three trees of a wing.
  Claimed,       ///< A field that a wing claims. It may lie off the board.
};

constexpr bool IsDecided(Role role) {
  return role == Role::Grass || role == Role::Tent;
}

struct FoundField {
  int Cell;
  Role Is;

  friend bool operator==(const FoundField&, const FoundField&) = default;
};

/// A field may stand in it more than once. The order is that in which a hint marks the fields.
struct Find {
  int Case = 0;  ///< Which of the deduction's cases it is, of those that have several: see finds.h.
  // The lines that a deduction along lines looked at, counted from 0; none for others.
  int FirstLine = 0;
  int LastLine = -1;
  FixedList<FoundField, kMaxCells> Fields;

  void Add(int cell, Role role) { Fields.Add({cell, role}); }
  void SetLines(int first, int last) {
    FirstLine = first;
    LastLine = last;
  }
  void Clear() {
    Case = 0;
    SetLines(0, -1);
    Fields.Clear();
  }
};

}  // namespace bivouac
