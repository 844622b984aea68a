#include <algorithm>
#include <span>

#include "deduction/wings.h"
#include "hints/hint_finds.h"

namespace bivouac {
namespace {

/// Rows down and columns right from the centre tree.
struct Offset {
  int Down;
  int Right;

  friend constexpr bool operator==(const Offset&, const Offset&) = default;
};

constexpr Offset kCentre{0, 0};

/// One formation: its wing trees, and the fields it claims by the number of open neighbours of A and B. In
/// each list the last four are the free sides of the centre and the fields next to them.
struct Formation {
  FixedArray<Offset, 2> Trees;
  FixedArray<Offset, 7> A3B3;
  FixedArray<Offset, 4> A2B2;
  FixedArray<Offset, 6> A2B3;
  FixedArray<Offset, 6> A3B2;
};

// clang-format off
constexpr FixedArray<Formation, 4> kFormations{{
    {{{{-1, 0}, {0, -1}}},
     {{{-2, 0}, {-1, -1}, {0, -2}, {-1, 1}, {0, 1}, {1, -1}, {1, 0}}},
     {{                            {-1, 1}, {0, 1}, {1, -1}, {1, 0}}},
     {{         {-1, -1}, {0, -2}, {-1, 1}, {0, 1}, {1, -1}, {1, 0}}},
     {{{-2, 0}, {-1, -1},          {-1, 1}, {0, 1}, {1, -1}, {1, 0}}}},
    {{{{-1, 0}, {0, 1}}},
     {{{-2, 0}, {-1, 1}, {0, 2}, {-1, -1}, {0, -1}, {1, 0}, {1, 1}}},
     {{                          {-1, -1}, {0, -1}, {1, 0}, {1, 1}}},
     {{         {-1, 1}, {0, 2}, {-1, -1}, {0, -1}, {1, 0}, {1, 1}}},
     {{{-2, 0}, {-1, 1},         {-1, -1}, {0, -1}, {1, 0}, {1, 1}}}},
    {{{{0, -1}, {1, 0}}},
     {{{0, -2}, {1, -1}, {2, 0}, {-1, -1}, {-1, 0}, {0, 1}, {1, 1}}},
     {{                          {-1, -1}, {-1, 0}, {0, 1}, {1, 1}}},
     {{         {1, -1}, {2, 0}, {-1, -1}, {-1, 0}, {0, 1}, {1, 1}}},
     {{{0, -2}, {1, -1},         {-1, -1}, {-1, 0}, {0, 1}, {1, 1}}}},
    {{{{0, 1}, {1, 0}}},
     {{{0, 2}, {1, 1}, {2, 0}, {-1, 0}, {-1, 1}, {0, -1}, {1, -1}}},
     {{                        {-1, 0}, {-1, 1}, {0, -1}, {1, -1}}},
     {{        {1, 1}, {2, 0}, {-1, 0}, {-1, 1}, {0, -1}, {1, -1}}},
     {{{0, 2}, {1, 1},         {-1, 0}, {-1, 1}, {0, -1}, {1, -1}}}},
}};
// clang-format on

/// A list with fewer fields than its length would end in the centre itself.
constexpr bool ListsAreFull() {
  return std::ranges::all_of(kFormations, [](const Formation& formation) {
    return formation.A3B3[6] != kCentre && formation.A2B2[3] != kCentre && formation.A2B3[5] != kCentre &&
           formation.A3B2[5] != kCentre;
  });
}
static_assert(ListsAreFull());

/// The fields that a wing claims, by its counts of open fields.
std::span<const Offset> ClaimedFields(const Formation& formation, const Wing& wing) {
  if (wing.OpenA + wing.OpenB == 6) return formation.A3B3;
  if (wing.OpenA + wing.OpenB == 4) return formation.A2B2;
  if (wing.OpenA == 2) return formation.A2B3;
  if (wing.OpenB == 2) return formation.A3B2;
  return {};
}

/// Claimed fields are marked whether or not they are open, or on the board.
void MarkWing(const Wing& wing, int size, Find& find) {
  const Formation& formation = kFormations[wing.Formation - 1];
  const auto mark = [&](Offset offset, Role role) {
    find.Add(wing.Centre + offset.Down * size + offset.Right, role);
  };
  mark(kCentre, Role::WingTree);
  for (const Offset& tree : formation.Trees) mark(tree, Role::WingTree);
  // This formation alone shows the field two north of the centre in any case.
  if (wing.Formation == 2) mark({-2, 0}, Role::Claimed);
  for (const Offset& field : ClaimedFields(formation, wing)) mark(field, Role::Claimed);
}

}  // namespace

bool FindWingWithClaims(Lines& rows, Find& find) {
  Find own;
  Wing wing;
  if (!FindWing(rows, BothInner::NotInFormation4, own, wing)) return false;
  find.Case = own.Case;
  MarkWing(wing, rows.Size(), find);
  for (const FoundField& field : own.Fields) find.Add(field.Cell, field.Is);
  return true;
}

}  // namespace bivouac
