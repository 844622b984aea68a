// Every deduction, once. A pass of the rater and a rule of the hints bear its name, with Row or Column for
// those that look along a line: FindPinched is PassPinchedRow, PassPinchedColumn and the hints PinchedRow and
// PinchedColumn.
//
// Each looks for the first place where its rule holds, in the order of the cells or lines, and adds the
// fields to an empty find; where there is none it returns false and leaves the find empty. `rows` must be the
// rows of the board, `lines` may be either. Two sides that want a rule differently say so by an argument.
#pragma once

#include "deduction/find.h"
#include "deduction/lines.h"

namespace bivouac {

// One tree, one tent or one field.

/// All open fields that no tree touches: grass. The rater does it before its first pass.
bool FindAwayFromTrees(Lines& rows, Find& find);
/// A tent that touches open fields: they are grass. The rater sweeps all tents at once.
bool FindTentNeighbours(Lines& rows, Find& find);
/// A tree without a tent and with one open neighbour gets its tent there.
bool FindLoneOption(Lines& rows, Find& find);

/// Where the tent of a served tree stands. A hint leaves fields at a right angle, which touch the tent, to
/// TentNeighbours.
enum class ServedFrom { AnySide, Opposite };
/// An open field that only one tree touches, which has its tent already, is grass. The tent must be that
/// tree's for sure.
bool FindServedNeighbour(Lines& rows, ServedFrom from, Find& find);

/// A tree with two options at a right angle: the field that touches both is grass.
bool FindCornerField(Lines& rows, Find& find);

// One line. Errors of each: those of the clues of the lines that it comes to.

/// A line that has all its tents: what is open is grass.
bool FindComplete(Lines& lines, Find& find);

/// A line whose runs of open fields must all be filled.
enum RunsCase : int {
  RunsFull,   ///< Tents in the odd ones.
  RunsBlock,  ///< If there are none: grass beside the even ones, however they fill.
};
bool FindRuns(Lines& lines, Find& find);

/// A line whose missing tents all are claimed by trees that can have theirs in this line only: the rest of it
/// is grass. Two such trees that share the field between them count twice.
bool FindClaimed(Lines& lines, Find& find);

/// A line with room for one tent more than its caption wants: at most one odd place stays empty, so the
/// fields beside the gap between two of them are grass. The two may belong to different runs.
bool FindSpareRun(Lines& lines, Find& find);

/// Trees against tents, from the first line on: where the lines up to one lack as many tents as the next has
/// trees, or have as many too many as the last of them has trees, those trees' tents stand across that
/// boundary.
enum SupplyCase : int {
  SupplyBefore,  ///< In the line before the trees.
  SupplyAfter,   ///< In the line after them.
};
/// Where trees and tents do not balance, the last line may ask for fields of the line after it.
enum class BeyondLastLine {
  IsAnError,
  IsReadAsItLies,  ///< By flat index: below the last row an error, after the last column the next row's
                   ///< start.
};
/// Errors: IndexOutsideArray if trees and tents do not balance at the last line and the rule looks beyond it.
bool FindTreeSupply(Lines& lines, BeyondLastLine beyond, Find& find);

// Two trees that need one field: it is grass.

/// A field between two trees in a line. What is open across would touch a tent on that field, so neither tree
/// has another option that a tent on it would leave.
bool FindPinched(Lines& lines, Find& find);
/// A field between two trees without tents, in a line that lacks one tent. Here only tents count as ways out
/// for the trees, open fields do not. Errors: those of the clues of the lines that it comes to.
bool FindLastTent(Lines& lines, Find& find);
/// A field between two trees at a right angle. Never one of the outer ring.
bool FindPinchedCorner(Lines& rows, Find& find);

// Formations.

/// Clusters: trees and tents that touch each other in a chain, tree to tent to tree. Fields in line beyond a
/// tree of the cluster, seen from a tent of it, are decided.
enum ClusterCase : int {
  ClusterNeedsTents,  ///< It has more trees than tents.
  ClusterIsServed,    ///< It has as many: grass.
};
/// The first cluster, in the order of its first cell, that decides a field.
bool FindCluster(Lines& rows, Find& find);

/// Twins: two trees side by side, shut in at both ends, with open fields on both sides of each. They can be
/// served in two ways only, tents on one diagonal or on the other.
enum TwinCase : int {
  TwinRing,      ///< The fields two lines away that touch both ways are grass.
  TwinOneTent,   ///< A tent on the one field that tells the two ways apart, since there is one solution only.
  TwinTwoTents,  ///< Tents on one diagonal of the twins, for the same reason.
};
/// The first pair that decides a field, line by line from the second to the last but one.
bool FindTwins(Lines& lines, Find& find);

// Wings: see wings.h.

}  // namespace bivouac
