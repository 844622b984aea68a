// Finds that only hints know.
#pragma once

#include "deduction/find.h"
#include "deduction/lines.h"

namespace bivouac {

/// The first open field with exactly two trees beside it, neither with a tent, that decides something. The
/// rater's pass of this name, PassSharedField, has its own way with such a field.
///
/// Two trees in a line have the field between them. Two trees that touch corner to corner share two fields,
/// one beside and one below the first tree; leaning right (mirrored when leaning left), with the names that
/// the cases use:
///
///     corner of first   .         .         .
///     .                 first     beside    .
///     .                 below     second    .
///     .                 .         .         corner of second
///
/// Errors: IndexOutsideArray where a corner lies beyond the first or last field of the board. Beyond the left
/// or right edge it is the field where the flat index lands.
bool FindSharedField(Lines& rows, Find& find);

/// What FindSharedField concludes.
enum SharedFieldCase : int {
  // In a line.
  NeitherTakesIt,          ///< The field between them is grass.
  NeitherTakesItTents,     ///< And a tree with one other option takes that.
  OneIsLeftItsOnlyOption,  ///< A tent on the only other option of one tree.
  OneIsLeftTwoOptions,     ///< Grass between the two other options of one tree. Also of a diagonal pair.
  // Diagonally.
  OneTakesItsOther,     ///< A tent on the other option of one tree.
  BothTakeTheirOthers,  ///< Of both.
  BothTentsKnown,       ///< One tree takes the one common field, the other its only other option.
  AllMakeFieldGrass,    ///< Whatever they do, a field is grass.
  AllMakeFieldsGrass,   ///< One field or two.
};

/// FindWing, with the three trees and the fields that they claim before the find's own fields.
bool FindWingWithClaims(Lines& rows, Find& find);

}  // namespace bivouac
