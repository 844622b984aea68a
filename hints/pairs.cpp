// Stage 3: two trees that want the same field, and the last tent of a line.
#include <array>

#include "game/blinking.h"
#include "game/board.h"
#include "hints/frame.h"
#include "hints/hints.h"
#include "hints/two_trees.h"

namespace bivouac {
namespace {

constexpr HintRule kFieldAtInnerCorner{
    15, Sound::Hint,
    "None of the two blanking trees can have the blinking open field to place his tent without leaving the "
    "other tree any possibility to place his tent, therefore this field must be grass! Click HERE to "
    "continue..."};

/// An open field with trees on two sides at a right angle, neither of which has a field or tent beyond it.
bool FieldAtInnerCorner(Main& main) {
  struct Corner {
    int First;
    int Second;
  };
  constexpr std::array<Corner, 4> kCorners{{{NORTH, EAST}, {EAST, SOUTH}, {SOUTH, WEST}, {WEST, NORTH}}};
  const int last = main.BoardSize - 1;
  for (int row = 1; row < last; ++row) {
    for (int col = 1; col < last; ++col) {
      const int field = row * main.BoardSize + col;
      if (main.Board[field] != CELL_OPEN) continue;
      const auto isTree = [&](int direction) {
        return main.Board[field + StepOf(main, direction)] == CELL_TREE;
      };
      const auto isClosedBeyond = [&](int direction) {
        const bool onBoard = direction == NORTH   ? row > 1
                             : direction == EAST  ? col < last - 1
                             : direction == SOUTH ? row < last - 1
                                                  : col > 1;
        if (!onBoard) return true;
        const int code = main.Board[field + 2 * StepOf(main, direction)];
        return code != CELL_OPEN && code != CELL_TENT;
      };
      for (const Corner& corner : kCorners) {
        if (!isTree(corner.First) || !isTree(corner.Second)) continue;
        if (!isClosedBeyond(corner.First) || !isClosedBeyond(corner.Second)) continue;
        AddBlink(main, field, -CELL_GRASS);
        AddBlink(main, field + StepOf(main, corner.First), CELL_TREE);
        AddBlink(main, field + StepOf(main, corner.Second), CELL_TREE);
        ReportFind(main, kFieldAtInnerCorner);
        return true;
      }
    }
  }
  return false;
}

constexpr HintLineRule kLastTentOfLine{
    {15, Sound::Hint,
     "The placement for the last tent in this row makes it impossible for the blinking field to be a tent, "
     "so it must be grass! Click HERE to continue..."},
    {15, Sound::Hint,
     "The placement for the last tent in this column makes it impossible for the blinking field to be a "
     "tent, so it must be grass! Click HERE to continue..."}};

/// A field between two trees of its line, both without a tent, while the line has one tent left: a tent there
/// would leave one of the trees without any.
bool LastTentOfLine(Main& main, Axis axis) {
  const int last = axis.size - 1;
  for (int line = 0; line <= last; ++line) {
    if (ClueOf(main, axis, line) != TentsIn(main.Board, axis, line) + 1) continue;
    const auto isTent = [&](int atLine, int position) {
      return atLine >= 0 && atLine <= last && position >= 0 && position <= last &&
             main.Board[axis.At(atLine, position)] == CELL_TENT;
    };
    const auto isTreeWithoutTent = [&](int position, int beyond) {
      return main.Board[axis.At(line, position)] == CELL_TREE && !isTent(line, beyond) &&
             !isTent(line - 1, position) && !isTent(line + 1, position);
    };
    for (int i = 1; i < last; ++i) {
      if (main.Board[axis.At(line, i)] != CELL_OPEN) continue;
      if (!isTreeWithoutTent(i - 1, i - 2) || !isTreeWithoutTent(i + 1, i + 2)) continue;
      AddBlink(main, axis.At(line, i), -CELL_GRASS);
      ReportFind(main, kLastTentOfLine.Of(axis));
      return true;
    }
  }
  return false;
}

}  // namespace

void HintPairs(Main& main) {
  const bool found = FieldAtInnerCorner(main) || TwoTreesAroundField(main) ||
                     LastTentOfLine(main, RowsOf(main)) || LastTentOfLine(main, ColumnsOf(main));
  if (!found) HintPatterns(main);
}

}  // namespace bivouac
