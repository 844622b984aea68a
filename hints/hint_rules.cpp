// The rules of the chain and what each says, in their order. What a rule looks for is told with its find, in
// deduction/finds.h, wings.h and hint_finds.h; the pass of the rater that acts on the same find stands in the
// table of rating/rating.cpp, under the rule's name with "Pass" before it. The texts are fixed, slips and
// double blanks included.
#include "deduction/finds.h"
#include "hints/hint_finds.h"
#include "hints/hints.h"

namespace bivouac {
namespace {

constexpr LineKind kRow = LineKind::Row;
constexpr LineKind kColumn = LineKind::Column;

bool FindServedAcross(Lines& rows, Find& find) {
  return FindServedNeighbour(rows, ServedFrom::Opposite, find);
}
bool FindTreeSupplyAsItLies(Lines& lines, Find& find) {
  return FindTreeSupply(lines, BeyondLastLine::IsReadAsItLies, find);
}

// Texts that rows and columns share.

constexpr std::string_view kPinched =
    "None of the two blanking trees can have the blinking open field to place his tent without leaving the "
    "other tree any possibility to place his tent, therefore this field must be grass! Click HERE to "
    "continue...";

constexpr FixedArray<std::string_view, 9> kTwins{{
    // TwinRing
    "All possibilities for both blinking trees to place their tents, results in grass for the blinking open "
    "field(s)! Click HERE to continue...",
    // TwinOneTent
    "The blinking open field must contain a tent to avoid two solutions for the blinking trees! Click HERE "
    "to continue...",
    // TwinTwoTents
    "The blinking open fields must contain a tent to avoid two solutions for the blinking trees! Click HERE "
    "to continue...",
}};

constexpr FixedArray<HintRule, kHintRuleCount> kRules{{
    {"AwayFromTrees",
     "A field away from trees",
     1,
     kRow,
     FindAwayFromTrees,
     Blinking::All,
     5,
     Sound::Error,
     {{"The blinking field is not next to a tree, it must be grass! Click HERE to continue..."}}},
    {"TentNeighbours",
     "The fields around a tent",
     1,
     kRow,
     FindTentNeighbours,
     Blinking::Explaining,
     10,
     Sound::Giggle,
     {{"All open fields surrounding the blinking tent must be grass! Click HERE to continue..."}}},
    {"LoneOption",
     "A tree with one field left",
     1,
     kRow,
     FindLoneOption,
     Blinking::Explaining,
     15,
     Sound::Hint,
     {{"The blinking tree has only one possible field for a tent! Click HERE to continue..."}}},
    {"ServedNeighbour",
     "A field beside served trees only",
     1,
     kRow,
     FindServedAcross,
     Blinking::Decided,
     15,
     Sound::Hint,
     {{"The blinking field is only located next to a tree that already has his tent, so this field must be "
       "grass! Click HERE to continue..."}}},
    {"RowComplete",
     "A row that has all its tents",
     1,
     kRow,
     FindComplete,
     Blinking::All,
     15,
     Sound::Giggle,
     {{"All tents are placed in the row, so all blinking open fields must contain grass! Click HERE to "
       "continue..."}}},
    {"ColumnComplete",
     "A column that has all its tents",
     1,
     kColumn,
     FindComplete,
     Blinking::All,
     15,
     Sound::Giggle,
     {{"All tents are placed in the column, so all blinking open fields must contain grass! Click HERE to "
       "continue..."}}},
    {"RowRuns",
     "A row that must be filled",
     1,
     kRow,
     FindRuns,
     Blinking::All,
     20,
     Sound::Hint,
     {{// RunsFull
       "All possible placements in the row points out that all blinking fields must contain a tent! Click "
       "HERE to continue...",
       // RunsBlock
       "All possible placements of tents in the row  with the blinking tents points out that all blinking "
       "open fields in the neighbour rows must contain grass! Click HERE to continue..."}}},
    {"ColumnRuns",
     "A column that must be filled",
     1,
     kColumn,
     FindRuns,
     Blinking::All,
     20,
     Sound::Hint,
     {{"All possible placements in the column points out that all blinking fields must contain a tent! Click "
       "HERE to continue...",
       "All possible placements of tents in the column with the blinking tents points out that all blinking "
       "open fields in the neighbour columns must contain grass! Click HERE to continue..."}}},

    {"CornerField",
     "The corner between two options",
     2,
     kRow,
     FindCornerField,
     Blinking::All,
     15,
     Sound::Hint,
     {{"All possible tent placements for the blinking Tree, points out that the blinking open field must be "
       "grass! Click HERE to continue..."}}},
    {"PinchedRow",
     "A field pinched in a row",
     2,
     kRow,
     FindPinched,
     Blinking::All,
     15,
     Sound::Hint,
     {{kPinched}}},
    {"PinchedColumn",
     "A field pinched in a column",
     2,
     kColumn,
     FindPinched,
     Blinking::All,
     15,
     Sound::Hint,
     {{kPinched}}},
    {"ClaimedRow",
     "Trees that need a row",
     2,
     kRow,
     FindClaimed,
     Blinking::All,
     15,
     Sound::Hint,
     {{"All possible tent placements for the blinking Tree(s) in that row, points out that any blinking open "
       "field must be grass! Click HERE to continue..."}}},
    {"ClaimedColumn",
     "Trees that need a column",
     2,
     kColumn,
     FindClaimed,
     Blinking::All,
     15,
     Sound::Hint,
     {{"All possible tent placements for the blinking Tree(s) in that column, points out that any blinking "
       "open field must be grass! Click HERE to continue..."}}},

    {"PinchedCorner",
     "A field pinched in a corner",
     3,
     kRow,
     FindPinchedCorner,
     Blinking::All,
     15,
     Sound::Hint,
     {{kPinched}}},
    {"SharedField",
     "Two trees that share a field",
     3,
     kRow,
     FindSharedField,
     Blinking::All,
     30,
     Sound::Hint,
     {{// NeitherTakesIt
       "None of the blinking trees can place their tent on the blinking field between them without causing "
       "the other tree loosing the possibility to place his tent, therefore that field between those trees "
       "must be grass! Click HERE to continue...",
       // NeitherTakesItTents
       "None of the blinking trees can place their tent on the blinking field between them without causing "
       "the other tree loosing the possibility to place his tent, therefore that field between those trees "
       "must be grass! Tents can be placed on the fields with a blinking tent! Click HERE to continue...",
       // OneIsLeftItsOnlyOption
       "One of the blinking trees can't place his tent on the blinking field between them without causing "
       "the other tree loosing the possibility to place his tent. Since the field with the blinking tent is "
       "the only other option for that tree to place his tent, that field must be a tent! Click HERE to "
       "continue...",
       // OneIsLeftTwoOptions
       "One of the blinking trees can't place his tent on the blinking field between them without causing "
       "the other tree loosing the possibility to place his tent. As a result of that, the other two fields "
       "where the tent of that tree can be placed, the blinking field between those two other options must "
       "be grass! Click HERE to continue...",
       // OneTakesItsOther
       "One of the blinking trees can't place his tent on the blinking field between them without causing "
       "the other tree loosing the possibility to place his tent. You can place a tent on every field with a "
       "blinking tent. Click HERE to continue...",
       // BothTakeTheirOthers
       "Both blinking trees can't place their tent on the blinking field between them without causing the "
       "other tree loosing the possibility to place his tent. You can place a tent on every field with a "
       "blinking tent. Click HERE to continue...",
       // BothTentsKnown
       "One of the blinking trees can't place his tent on the blinking field between them without causing "
       "the other tree loosing the possibility to place his tent. As a result of that, we can know the "
       "position of the tents for both trees. You can place a tent on every field with a blinking tent. "
       "Click HERE to continue...",
       // AllMakeFieldGrass
       "All possibilities for both blinking trees to place their tents, results in grass for the blinking "
       "open field! Click HERE to continue...",
       // AllMakeFieldsGrass
       "All possibilities for both blinking trees to place their tents, results in grass for the blinking "
       "open field(s)! Click HERE to continue..."}}},
    {"LastTentRow",
     "The last tent of a row",
     3,
     kRow,
     FindLastTent,
     Blinking::Decided,
     15,
     Sound::Hint,
     {{"The placement for the last tent in this row makes it impossible for the blinking field to be a tent, "
       "so it must be grass! Click HERE to continue..."}}},
    {"LastTentColumn",
     "The last tent of a column",
     3,
     kColumn,
     FindLastTent,
     Blinking::Decided,
     15,
     Sound::Hint,
     {{"The placement for the last tent in this column makes it impossible for the blinking field to be a "
       "tent, so it must be grass! Click HERE to continue..."}}},

    {"SpareRunRow",
     "A row with one place to spare",
     4,
     kRow,
     FindSpareRun,
     Blinking::All,
     25,
     Sound::Hint,
     {{"All possible placements in the row points out that all fields with a blinking tent make it "
       "impossible for the blinking fields in the near by rows to contain tents, and must be grass! Click "
       "HERE to continue..."}}},
    {"SpareRunColumn",
     "A column with one place to spare",
     4,
     kColumn,
     FindSpareRun,
     Blinking::All,
     25,
     Sound::Hint,
     {{"All possible placements in the column points out that all fields with a blinking tent make it "
       "impossible for the blinking fields in the near by columns to contain tents, and must be grass! Click "
       "HERE to continue..."}}},
    {"Cluster",
     "A cluster",
     4,
     kRow,
     FindCluster,
     Blinking::Decided,
     40,
     Sound::Hint,
     {{// ClusterNeedsTents
       "All possible placements for a cluster of Trees and Tents points out that the blinking cell(s) must "
       "be a Tent! Click HERE to continue...",
       // ClusterIsServed
       "All possible placements for a cluster of Trees and Tents points out that the blinking cell(s) must "
       "be grass! Click HERE to continue..."}}},
    {"TwinRow", "Twins in a row", 4, kRow, FindTwins, Blinking::All, 40, Sound::Error, kTwins},
    {"TwinColumn", "Twins in a column", 4, kColumn, FindTwins, Blinking::All, 40, Sound::Error, kTwins},
    {"Wing",
     "A wing",
     4,
     kRow,
     FindWingWithClaims,
     Blinking::All,
     40,
     Sound::Error,
     {{// WingCorner
       "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. Therefore any "
       "other possibility for the other blinking tree to place his tent forces the blinking open field to be "
       "grass. Click HERE to continue!",
       // WingOneSide
       "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. This leaves "
       "only one possibility for the other blinking tree to place his tent. Click HERE to continue!",
       // WingBothInner
       "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. Therefore the "
       "other blinking trees have no other choice to place their tents on the fields with the blinking "
       "tents. Click HERE to continue!",
       // WingCommonField
       "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. Therefore a "
       "tent must be on the field with the blinking tent. Also, any open field blinking with grass, must be "
       "grass (if any). Click HERE to continue!",
       // WingPair
       "The 'Wing' formation of red blinking trees are claiming the red blinking open fields. Therefore, any "
       "open field blinking with grass, must be grass. Click HERE to continue!"}}},

    {"TreeSupplyRow",
     "The supply of trees by rows",
     5,
     kRow,
     FindTreeSupplyAsItLies,
     Blinking::All,
     40,
     Sound::Hint,
     {{// SupplyBefore
       "Since there are not enough trees to provide the needed tents in the rows above the row with one or "
       "more blinking trees, their tents must be in the row above them! Click HERE to continue...",
       // SupplyAfter
       "Since there are not enough trees to provide the needed tents in the rows below the row with one or "
       "more blinking trees, their tents must be in the row below them! Click HERE to continue..."}}},
    {"TreeSupplyColumn",
     "The supply of trees by columns",
     5,
     kColumn,
     FindTreeSupplyAsItLies,
     Blinking::All,
     40,
     Sound::Hint,
     {{"Since there are not enough trees to provide the needed tents in the columns before the column with "
       "one or more blinking trees, their tents must be in the column before them! Click HERE to "
       "continue...",
       "Since there are not enough trees to provide the needed tents in the columns after the column with "
       "one or more blinking trees, their tents must be in the column after them! Click HERE to "
       "continue..."}}},
}};
static_assert(kRules[kHintRuleCount - 1].Look != nullptr, "a row is missing");

}  // namespace

const FixedArray<HintRule, kHintRuleCount>& HintRules() {
  return kRules;
}

}  // namespace bivouac
