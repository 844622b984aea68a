// What the rater makes of a field that two trees compete for. Hints have a way of their own: see
// hints/hint_finds.h.
#pragma once

#include "deduction/find.h"
#include "deduction/lines.h"

namespace bivouac {

/// A field between two trees without tents: what their other options must be. The find names fields that are
/// grass already, or lie off the board, if one before them is open.
/// Errors: IndexOutsideArray where the first of the fields that it looks at lies off the board.
bool FindOtherOptions(Lines& rows, Find& find);

}  // namespace bivouac
