// Stage 5: trees and tents counted line by line from the first.
#include <bit>

#include "game/blinking.h"
#include "game/layout.h"
#include "hints/frame.h"
#include "hints/hints.h"

namespace bivouac {
namespace {

constexpr HintLineRule kTentsBefore{
    {40, Sound::Hint,
     "Since there are not enough trees to provide the needed tents in the rows above the row with one or "
     "more blinking trees, their tents must be in the row above them! Click HERE to continue..."},
    {40, Sound::Hint,
     "Since there are not enough trees to provide the needed tents in the columns before the column with one "
     "or more blinking trees, their tents must be in the column before them! Click HERE to continue..."}};

constexpr HintLineRule kTentsBehind{
    {40, Sound::Hint,
     "Since there are not enough trees to provide the needed tents in the rows below the row with one or "
     "more blinking trees, their tents must be in the row below them! Click HERE to continue..."},
    {40, Sound::Hint,
     "Since there are not enough trees to provide the needed tents in the columns after the column with one "
     "or more blinking trees, their tents must be in the column after them! Click HERE to continue..."}};

/// Marks the trees of a line that have an open field in the line beside it, each with that field.
bool MarkTreesTowards(Main& main, Axis axis, int line, int towards) {
  for (int i = 0; i < axis.size; ++i) {
    const int tree = axis.At(line, i);
    if (main.Board[tree] != CELL_TREE) continue;
    const int field = axis.At(towards, i);
    if (main.Board[field] != CELL_OPEN) continue;
    AddBlink(main, tree, CELL_TREE);
    AddBlink(main, field, -CELL_TENT);
  }
  return main.BlinkTop != -1;
}

/// Where the trees so far exceed or fall short of the tents so far by exactly the trees of the line at the
/// boundary, these place their tents across it.
bool TreesAcrossBoundary(Main& main, Axis axis) {
  Array<int> treesIn;
  treesIn.Redim(axis.size - 1);
  for (int line = 0; line < axis.size; ++line) {
    treesIn[line] = std::popcount(PositionsOf(main.Board, axis, line, CELL_TREE));
  }
  int surplus = 0;
  for (int line = 0; line < axis.size; ++line) {
    surplus += treesIn[line] - ClueOf(main, axis, line);
    // Trees and clues that disagree leave a difference at the last line, and the search leaves the arrays.
    if (surplus < 0 && treesIn[line + 1] == -surplus && MarkTreesTowards(main, axis, line + 1, line)) {
      ReportFind(main, kTentsBefore.Of(axis));
      return true;
    }
    if (surplus > 0 && treesIn[line] == surplus && MarkTreesTowards(main, axis, line, line + 1)) {
      ReportFind(main, kTentsBehind.Of(axis));
      return true;
    }
  }
  return false;
}

}  // namespace

void HintCounts(Main& main) {
  if (TreesAcrossBoundary(main, RowsOf(main)) || TreesAcrossBoundary(main, ColumnsOf(main))) return;
  RefreshButtons(main);
  main.lblHint.Caption = kNoMoreHints;
}

}  // namespace bivouac
