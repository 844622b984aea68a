// Boards as text pictures, one character a cell: '.' open, 'g' grass, 't' tent, and 'T' a tree.
// A tree whose tent's direction matters is written '^' (north), '>' (east), 'v' (south) or '<' (west).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "game/game_state.h"

namespace bivouac {

/// A window with its own globals, in the state that the opening of a puzzle leaves.
struct Game {
  explicit Game(Desktop& desktop) : main(global, desktop) {}
  Global global;
  Main main;
};

/// Lays the picture out as the board, sizes included; blanks and line ends around rows are ignored. A number
/// at the end of a row is its clue; a last line of numbers holds the clues of the columns. Where clues are
/// missing, each is the number of tents that the directions of the trees give. The state becomes Playing,
/// with Solution built.
void LayBoard(Main& main, std::string_view picture);

/// The board as such a picture, one line a row, trees as 'T', without clues.
std::string DrawBoard(const Main& main);

/// Board digits in reading order: 0 open, 1 grass, 2 tent, 3 tree.
std::string BoardDigits(const Main& main);

/// A picture without blanks in front of its rows and empty lines around it, to compare with DrawBoard.
std::string Tidy(std::string_view picture);

/// The blink marks as "cell:tile", joined by commas.
std::string Marks(const Main& main);

}  // namespace bivouac
