// Wings: three trees in an L. The fields around them are so entangled that some are spoken for whatever the
// three trees do, and other trees nearby lose those fields.
//
// C is the centre, A and B are the wing trees, K is the field that both wing trees touch. Formation 1, of
// which the others are turned forms:
//
//     column   -3  -2  -1   0  +1  +2
//     row -3    .   .   t   .   .   .        a, b  the inner neighbours of A and B
//         -2    .   .   a   .   x   .        x, y  their outer neighbours
//         -1    t   b   K   A   e   p        o     the field opposite K
//          0    .   .   B   C   .   p        e, f  the third sides of A and B
//         +1    .   y   f   .   o   .        p, q  the pairs beyond e and f
//         +2    .   .   q   q   .   .        t     tents of trees on a and b
//
// Trees on a, b, x, y and o lose fields to the wing; see the rules in wings.cpp.
#pragma once

#include "deduction/find.h"
#include "deduction/lines.h"

namespace bivouac {

/// Formation 1: wing trees north and west of the centre; 2: north and east; 3: west and south; 4: east and
/// south.
struct Wing {
  int Centre;
  int Formation;
  int A;
  int B;
  int OpenA;  ///< Open neighbours of A, 2 or 3.
  int OpenB;
};

/// What a rule concludes.
enum WingCase : int {
  WingCorner,       ///< Two sides of another tree are left, the field between them is grass.
  WingOneSide,      ///< Another tree has one side left.
  WingBothInner,    ///< The trees on a and b have one side left each.
  WingCommonField,  ///< A tent on K, and grass on the pairs beyond, if any.
  WingPair,         ///< Grass on the pair beyond one wing tree.
};

/// The hint never uses the rule of trees on both a and b in formation 4; the rater does.
enum class BothInner { NotInFormation4, InAllFormations };

/// The first wing, row by row, and in it the first of the nine rules, that decides something. Fields of the
/// find may lie off the board. `wing` is set if there is one. Errors: IndexOutsideArray where a rule reads a
/// field beyond the first or last of the board. Beyond the left or right edge the index lands in the
/// neighbouring row, and that field decides.
bool FindWing(Lines& rows, BothInner bothInner, Find& find, Wing& wing);

}  // namespace bivouac
