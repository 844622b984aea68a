// Stage 4: placements of a line, clusters, two solutions and wings.
#include <array>

#include "deduction/clusters.h"
#include "deduction/runs.h"
#include "deduction/twins.h"
#include "deduction/wings.h"
#include "game/blinking.h"
#include "hints/frame.h"
#include "hints/hints.h"
#include "hints/mark_wing.h"

namespace bivouac {
namespace {

constexpr HintLineRule kGapsOfFullLine{
    {25, Sound::Hint,
     "All possible placements in the row points out that all fields with a blinking tent make it impossible "
     "for the blinking fields in the near by rows to contain tents, and must be grass! Click HERE to "
     "continue..."},
    {25, Sound::Hint,
     "All possible placements in the column points out that all fields with a blinking tent make it "
     "impossible for the blinking fields in the near by columns to contain tents, and must be grass! Click "
     "HERE to continue..."}};

/// A line whose runs hold one tent more than it needs. Every placement then takes one of two odd places that
/// stand two apart, and either touches the fields beside the gap. A field may be marked several times.
bool GapsOfFullLine(Main& main, Axis axis) {
  for (int line = 0; line < axis.size; ++line) {
    const int need = ClueOf(main, axis, line) - TentsIn(main.Board, axis, line);
    if (need <= 0) continue;
    const LineRuns runs = CutRuns(PositionsOf(main.Board, axis, line, CELL_OPEN));
    if (runs.Capacity != need + 1) continue;
    for (int i = 0; i + 2 < axis.size; ++i) {
      if (!Has(runs.Odd, i) || !Has(runs.Odd, i + 2)) continue;
      for (const int beside : {line - 1, line + 1}) {
        if (beside < 0 || beside >= axis.size) continue;
        const int field = axis.At(beside, i + 1);
        if (main.Board[field] != CELL_OPEN) continue;
        AddBlink(main, field, -CELL_GRASS);
        AddBlink(main, axis.At(line, i), -CELL_TENT);
        AddBlink(main, axis.At(line, i + 2), -CELL_TENT);
      }
    }
    if (main.BlinkTop == -1) continue;
    ReportFind(main, kGapsOfFullLine.Of(axis));
    return true;
  }
  return false;
}

constexpr HintRule kClusterNeedsTents{
    40, Sound::Hint,
    "All possible placements for a cluster of Trees and Tents points out that the blinking cell(s) must be a "
    "Tent! Click HERE to continue..."};

constexpr HintRule kClusterIsServed{
    40, Sound::Hint,
    "All possible placements for a cluster of Trees and Tents points out that the blinking cell(s) must be "
    "grass! Click HERE to continue..."};

bool ClusterOfTreesAndTents(Main& main) {
  const auto find = FindCluster(main.Board, main.BoardSize);
  if (!find) return false;
  for (const int cell : find->Cells) AddBlink(main, cell, -find->Code);
  ReportFind(main, find->Code == CELL_TENT ? kClusterNeedsTents : kClusterIsServed);
  return true;
}

/// By TwinOutcome.
constexpr std::array<HintRule, 3> kTwins{{
    {40, Sound::Error,
     "All possibilities for both blinking trees to place their tents, results in grass for the blinking "
     "open field(s)! Click HERE to continue..."},
    {40, Sound::Error,
     "The blinking open field must contain a tent to avoid two solutions for the blinking trees! Click HERE "
     "to continue..."},
    {40, Sound::Error,
     "The blinking open fields must contain a tent to avoid two solutions for the blinking trees! Click HERE "
     "to continue..."},
}};

bool TwinTrees(Main& main, Axis axis) {
  const auto find = FindTwins(main.Board, axis);
  if (!find) return false;
  const int tile = find->Outcome == TwinOutcome::Ring ? -CELL_GRASS : -CELL_TENT;
  for (int i = 0; i < find->Count; ++i) AddBlink(main, find->Cells[static_cast<std::size_t>(i)], tile);
  AddBlink(main, find->FirstTree, CELL_TREE);
  AddBlink(main, find->SecondTree, CELL_TREE);
  ReportFind(main, kTwins[static_cast<std::size_t>(find->Outcome)]);
  return true;
}

/// By WingMessage.
constexpr std::array<HintRule, 5> kWings{{
    {40, Sound::Error,
     "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. Therefore any "
     "other possibility for the other blinking tree to place his tent forces the blinking open field to be "
     "grass. Click HERE to continue!"},
    {40, Sound::Error,
     "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. This leaves only "
     "one possibility for the other blinking tree to place his tent. Click HERE to continue!"},
    {40, Sound::Error,
     "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. Therefore the "
     "other blinking trees have no other choice to place their tents on the fields with the blinking tents. "
     "Click HERE to continue!"},
    {40, Sound::Error,
     "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. Therefore a tent "
     "must be on the field with the blinking tent. Also, any open field blinking with grass, must be grass "
     "(if any). Click HERE to continue!"},
    {40, Sound::Error,
     "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. Therefore, any "
     "open field blinking with grass, must be grass. Click HERE to continue!"},
}};

bool WingOfTrees(Main& main) {
  const auto find = FindWing(main.Board, main.BoardSize, TwoTreesRule::NotInFormation4);
  if (!find) return false;
  MarkWing(main, find->Formation);
  for (int i = 0; i < find->Count; ++i) {
    const WingMark& mark = find->Marks[static_cast<std::size_t>(i)];
    AddBlink(main, mark.Cell, mark.Tile);
  }
  ReportFind(main, kWings[static_cast<std::size_t>(find->Message)]);
  return true;
}

}  // namespace

void HintPatterns(Main& main) {
  const Axis rows = RowsOf(main);
  const Axis columns = ColumnsOf(main);
  const bool found = GapsOfFullLine(main, rows) || GapsOfFullLine(main, columns) ||
                     ClusterOfTreesAndTents(main) || TwinTrees(main, rows) || TwinTrees(main, columns) ||
                     WingOfTrees(main);
  if (!found) HintCounts(main);
}

}  // namespace bivouac
