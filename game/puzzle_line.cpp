#include "game/puzzle_line.h"

#include <charconv>
#include <limits>
#include <sstream>
#include <string_view>

#include "game/error.h"
#include "game/game_state.h"

namespace bivouac {
namespace {

constexpr std::string_view kMark = "Bivouac";
constexpr int kLeastClue =
    std::numeric_limits<std::int16_t>::min();  // As a record holds them, whether good or not.
constexpr int kMostClue = std::numeric_limits<std::int16_t>::max();

/// Such as "10x10".
std::string SizeWord(int size) {
  std::string word = std::to_string(size);
  return word.append("x").append(std::to_string(size));
}

std::string RowOf(const PackRecord& puzzle, int size, int row) {
  std::string text;
  int fields = 0;
  const auto putFields = [&] {
    if (fields > 0) text += std::to_string(fields);
    fields = 0;
  };
  for (int col = 0; col < size; ++col) {
    if (puzzle.Layout[row * size + col] != CELL_TREE) {
      ++fields;
      continue;
    }
    putFields();
    text += 'T';
  }
  putFields();
  return text;
}

using Clues = FixedArray<std::int16_t, kMaxSize>;

std::string CluesText(const Clues& clues, int size) {
  std::string text;
  for (int line = 0; line < size; ++line) {
    if (line > 0) text += ',';
    text += std::to_string(clues[line]);
  }
  return text;
}

/// Takes a whole number off the front of a text. Errors: InputError if there is none from lowest to highest.
int TakeNumber(std::string_view& text, int lowest, int highest, const std::string& what) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < lowest || number > highest)
    throw InputError(what + " is not " + std::to_string(lowest) + " to " + std::to_string(highest));
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

bool Take(std::string_view& text, char sign) {
  if (text.empty() || text.front() != sign) return false;
  text.remove_prefix(1);
  return true;
}

int TakeSize(std::string_view text) {
  std::string_view rest = text;
  const int size = TakeNumber(rest, kMinSize, kMaxSize, "the size");
  if (text != SizeWord(size)) throw InputError("the size is not such as " + SizeWord(size));
  return size;
}

void TakeRows(std::string_view text, int size, PackRecord& puzzle) {
  for (int row = 0; row < size; ++row) {
    if (row > 0 && !Take(text, '/'))
      throw InputError("row " + std::to_string(row) + " does not end after " + std::to_string(size) +
                       " fields");
    for (int col = 0; col < size;) {
      if (Take(text, 'T')) {
        puzzle.Layout[row * size + col++] = CELL_TREE;
      } else {
        col += TakeNumber(text, 1, size - col, "the fields of row " + std::to_string(row + 1) + ": a number");
      }
    }
  }
  if (!text.empty()) throw InputError("there are more than " + std::to_string(size) + " rows");
}

void TakeClues(std::string_view text, int size, const char* of, Clues& clues) {
  for (int line = 0; line < size; ++line) {
    if (line > 0 && !Take(text, ','))
      throw InputError(std::string("there are not ") + std::to_string(size) + " clues of the " + of);
    clues[line] = static_cast<std::int16_t>(
        TakeNumber(text, kLeastClue, kMostClue, std::string("a clue of the ") + of));
  }
  if (!text.empty())
    throw InputError(std::string("there are more than ") + std::to_string(size) + " clues of the " + of);
}

}  // namespace

std::string PuzzleLineOf(const PackRecord& puzzle) {
  const int size = SizeOf(puzzle.LevelSize);
  std::string text = std::string(kMark) + ' ' + SizeWord(size) + ' ';
  for (int row = 0; row < size; ++row) {
    if (row > 0) text += '/';
    text += RowOf(puzzle, size, row);
  }
  return text + ' ' + CluesText(puzzle.RowCounts, size) + ' ' + CluesText(puzzle.ColCounts, size);
}

PackRecord ReadPuzzleLine(const std::string& text) {
  std::istringstream words(text);
  std::string mark, size, rows, rowClues, colClues, more;
  words >> mark >> size >> rows >> rowClues >> colClues >> more;
  if (mark != kMark) throw InputError("this is no line of a puzzle, which begins with \"Bivouac\"");
  if (colClues.empty() || !more.empty())
    throw InputError("the line has not five words: Bivouac, size, rows, clues of rows, clues of columns");
  PackRecord puzzle;
  const int lines = TakeSize(size);
  puzzle.LevelSize = LevelSizeOf(0, lines);
  TakeRows(rows, lines, puzzle);
  TakeClues(rowClues, lines, "rows", puzzle.RowCounts);
  TakeClues(colClues, lines, "columns", puzzle.ColCounts);
  return puzzle;
}

}  // namespace bivouac
