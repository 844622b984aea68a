// A puzzle as a line of text, to be sent and pasted:
//
//   Bivouac 6x6 T2T2/6/1T4/6/4T1/T5 2,0,1,1,1,1 1,1,1,1,1,1
//
// The size; the rows, with a T for a tree and a number for so many fields without one; the clues of the rows,
// and those of the columns.
#pragma once

#include <string>

#include "game/records.h"

namespace bivouac {

/// Requires: the record's size is 6 to 18.
std::string PuzzleLineOf(const PackRecord& puzzle);

/// Reads such a line; blanks around it are allowed. The record has size, trees and clues, and nothing else:
/// no tents, no level, no times. Errors: InputError, which says what is wrong.
PackRecord ReadPuzzleLine(const std::string& text);

}  // namespace bivouac
