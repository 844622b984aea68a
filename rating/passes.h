// The passes of the rater, a source for each tier. Each applies its rule at the first place where it holds,
// in the order of the cells or lines, and says whether it changed the board. A pass that places tents sweeps
// their neighbours before it ends.
#pragma once

#include "rating/rater.h"

namespace bivouac {

// Tier 1: one tree or one line at a time.

/// A tree without a tent and with one open neighbour gets its tent there.
bool PassLoneOption(Rater& rater);
/// An open field that only one tree touches, which has its tent already, is grass.
bool PassServedNeighbour(Rater& rater);
/// A line that has all its tents: what is open is grass.
bool PassRowComplete(Rater& rater);
bool PassColumnComplete(Rater& rater);
/// A line whose runs of open fields must all be filled: tents in the odd ones, else grass beside the even
/// ones.
bool PassRowRuns(Rater& rater);
bool PassColumnRuns(Rater& rater);

// Tier 2: the options that one or two trees still have. Grass only.

/// A tree with two options at a right angle: the field that touches both.
bool PassCornerField(Rater& rater);
/// A field between two trees in a line, neither of which has another option that a tent on it would leave.
bool PassPinchedRow(Rater& rater);
bool PassPinchedColumn(Rater& rater);
/// A line whose missing tents all are claimed by trees that can have theirs in this line only: the rest.
bool PassClaimedRow(Rater& rater);
bool PassClaimedColumn(Rater& rater);

// Tier 3: two trees that compete for one field.

/// A field between two trees at a right angle, pinched in the same way. Never one of the outer ring.
bool PassPinchedCorner(Rater& rater);
/// A field between two trees without tents: what their other options must be.
bool PassSharedField(Rater& rater);
/// A line that lacks one tent: a field of it between two trees without tents is grass.
bool PassLastTentRow(Rater& rater);
bool PassLastTentColumn(Rater& rater);

// Tier 4: formations.

/// A line with room for one tent more than its label wants: grass beside the gaps of its odd runs.
/// Errors: NotANumber, Overflow for the label of a line that it comes to.
bool PassSpareRunRow(Rater& rater);
bool PassSpareRunColumn(Rater& rater);
/// See deduction/clusters.h, twins.h and wings.h.
bool PassCluster(Rater& rater);
bool PassTwinRow(Rater& rater);
bool PassTwinColumn(Rater& rater);
/// Errors: IndexOutsideArray as FindWing.
bool PassWing(Rater& rater);

// Tier 5: trees against tents, from the first line on.

/// Where the lines up to one lack as many tents as the next has trees, or have as many too many as the last
/// of them has trees, those trees' tents stand across that boundary.
/// Errors: IndexOutsideArray if trees and tents do not balance at the last line and a rule looks beyond it.
bool PassTreeSupplyRow(Rater& rater);
bool PassTreeSupplyColumn(Rater& rater);

}  // namespace bivouac
