#include "tools/position.h"

#include "tools/pack_access.h"

namespace bivouac {

std::vector<int> CellDigits(const std::string& digits, int cells, int highest, const std::string& what) {
  if (digits.size() != static_cast<std::size_t>(cells)) {
    throw InputError(what + ": " + std::to_string(digits.size()) + " digits, not " + std::to_string(cells));
  }
  std::vector<int> codes;
  for (const char digit : digits) {
    if (digit < '0' || digit > '0' + highest) {
      throw InputError(what + ": '" + digit + "' is not 0 to " + std::to_string(highest));
    }
    codes.push_back(digit - '0');
  }
  return codes;
}

void LayFields(Main& main, const std::string& digits, const std::string& what) {
  const std::vector<int> board = CellDigits(digits, main.CellCount, CELL_TREE, what);
  for (int cell = 0; cell < main.CellCount; ++cell) {
    const int code = board[static_cast<std::size_t>(cell)];
    if ((code == CELL_TREE) != (main.Board[cell] == CELL_TREE)) {
      throw InputError(what + ": not the trees of the puzzle, see cell " + std::to_string(cell));
    }
    main.Board[cell] = code;
  }
}

}  // namespace bivouac
