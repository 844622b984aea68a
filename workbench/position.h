// Positions as digits, one a cell, row by row: 0 open, 1 grass, 2 tent, 3 tree.
#pragma once

#include <string>
#include <vector>

#include "game/game_state.h"

namespace bivouac {

/// The board as digits.
std::string DigitsOf(const Main& main);
/// Reads digits from 0 to `highest`, one a cell. Errors: InputError, which begins with `what`.
Array<int> CellDigits(const std::string& digits, int cells, int highest, const std::string& what);

std::vector<std::string> Split(const std::string& text, char separator);

/// Whether a hint looks for wrong fields first.
enum class WrongFields { Look, Skip };

/// Lays out a position from the columns of a table: size, clues of the rows, of the columns, directions of
/// the tents (or -, which leaves out the look for wrong fields), board. Further columns are not read. Errors:
/// InputError.
WrongFields LayPosition(Main& main, const std::string& line);

/// Puts the player's fields on a board that has the trees of a puzzle. Errors: InputError if the digits have
/// others.
void LayFields(Main& main, const std::string& digits, const std::string& what);

}  // namespace bivouac
