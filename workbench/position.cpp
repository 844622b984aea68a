#include "workbench/position.h"

#include <charconv>
#include <sstream>

#include "game/error.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

/// Reads a whole number from lowest to highest. Errors: InputError.
int NumberIn(const std::string& text, int lowest, int highest, const std::string& what) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < lowest || number > highest) {
    throw InputError(what + " '" + text + "' is not " + std::to_string(lowest) + " to " +
                     std::to_string(highest));
  }
  return number;
}

void LayClues(FixedArray<Label, kMaxSize>& labels, const std::string& column, int size,
              const std::string& what) {
  const std::vector<std::string> clues = Split(column, ',');
  if (clues.size() != static_cast<std::size_t>(size)) {
    throw InputError("there are " + std::to_string(clues.size()) + ' ' + what + "s, not " +
                     std::to_string(size));
  }
  int line = 0;
  for (const std::string& clue : clues) {
    labels[line++].Caption = std::to_string(NumberIn(clue, -32768, 32767, "the " + what));
  }
}

}  // namespace

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

std::string DigitsOf(const Main& main) {
  std::string digits;
  for (int cell = 0; cell < main.CellCount; ++cell) digits += std::to_string(main.Board[cell]);
  return digits;
}

Array<int> CellDigits(const std::string& digits, int cells, int highest, const std::string& what) {
  if (digits.size() != static_cast<std::size_t>(cells)) {
    throw InputError(what + ": " + std::to_string(digits.size()) + " digits, not " + std::to_string(cells));
  }
  Array<int> codes;
  codes.Redim(cells - 1);
  int cell = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '0' + highest) {
      throw InputError(what + ": '" + digit + "' is not 0 to " + std::to_string(highest));
    }
    codes[cell++] = digit - '0';
  }
  return codes;
}

void LayFields(Main& main, const std::string& digits, const std::string& what) {
  const Array<int> board = CellDigits(digits, main.CellCount, CELL_TREE, what);
  for (int cell = 0; cell < main.CellCount; ++cell) {
    const int code = board[cell];
    if ((code == CELL_TREE) != (main.Board[cell] == CELL_TREE)) {
      throw InputError(what + ": not the trees of the puzzle, see cell " + std::to_string(cell));
    }
    main.Board[cell] = code;
  }
}

WrongFields LayPosition(Main& main, const std::string& line) {
  const std::vector<std::string> columns = Split(line, '\t');
  if (columns.size() < 5) {
    throw InputError("there are " + std::to_string(columns.size()) +
                     " columns, not size, row clues, column clues, tent directions and board");
  }
  LayOutSize(main, NumberIn(columns[0], kMinSize, kMaxSize, "the size"));
  LayClues(main.RowCnt, columns[1], main.BoardSize, "row clue");
  LayClues(main.ColCnt, columns[2], main.BoardSize, "column clue");
  const Array<int> board = CellDigits(columns[4], main.CellCount, CELL_TREE, "the board");
  main.TreeCount = 0;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.Board[cell] = board[cell];
    main.TreeCount += main.Board[cell] == CELL_TREE;
  }
  if (columns[3] == "-") return WrongFields::Skip;
  const Array<int> directions = CellDigits(columns[3], main.CellCount, WEST, "the tent directions");
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.TentDir[cell] = directions[cell];
  }
  return WrongFields::Look;
}

}  // namespace bivouac
