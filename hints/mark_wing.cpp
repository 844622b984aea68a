#include <algorithm>
#include <array>

#include "deduction/wings.h"
#include "hints/hint_finds.h"

namespace bivouac {
namespace {

/// Marks the three trees of a wing and the fields that it claims, whether or not these are open, or on the
/// board: the field beyond each wing tree that has three open neighbours, the field that both touch if either
/// has three, and the fields at the free sides of the centre with those next to them, in rising order.
void MarkWing(const Wing& wing, int size, Find& find) {
  for (const int tree : {wing.Centre, wing.A, wing.B}) find.Add(tree, Role::WingTree);
  const auto claim = [&](int cell) { find.Add(cell, Role::Claimed); };
  // This formation alone shows the field two north of the centre in any case.
  if (wing.Formation == 2) claim(wing.Centre - 2 * size);

  const int toA = wing.A - wing.Centre;
  const int toB = wing.B - wing.Centre;
  if (wing.OpenA == 3) claim(wing.A + toA);
  if (wing.OpenA == 3 || wing.OpenB == 3) claim(wing.A + toB);
  if (wing.OpenB == 3) claim(wing.B + toB);
  std::array sides{wing.Centre - toA, wing.Centre - toB, wing.A - toB, wing.B - toA};
  std::sort(sides.begin(), sides.end());
  for (const int cell : sides) claim(cell);
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
