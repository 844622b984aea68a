#include "guide/guide.h"

#include <gtest/gtest.h>
#include <set>

#include "game/board.h"
#include "hints/evidence.h"
#include "packs/pack_access.h"
#include "tests/support/files.h"
#include "walks/explanation.h"
#include "workbench/position.h"

namespace bivouac {
namespace {

const std::string kGuide = BIVOUAC_SOURCE_DIR "/docs/guide/";

TEST(Guide, EveryPositionGivesItsHint) {
  Workbench bench;
  Main& main = bench.main;
  std::vector<GuidePosition> positions = ReadGuidePositions(kGuide + "positions.tsv");
  const std::vector<GuidePosition> exercises = ReadGuidePositions(kGuide + "exercises.tsv");
  EXPECT_EQ(exercises.size(), 25U);  // Five a stage.
  positions.insert(positions.end(), exercises.begin(), exercises.end());
  for (const GuidePosition& position : positions) {
    SCOPED_TRACE(position.Name);
    LayPosition(main, position.Position);
    main.BoardLive = true;
    main.BlinkTop = -1;
    HintBasic(main);
    const GuideHint hint = LayGuidePosition(main, position);
    EXPECT_EQ(hint.Name(), position.Name);
    EXPECT_EQ(main.lblHint.Caption, hint.Hint.Text());
    EXPECT_EQ(hint.Fields(), position.Fields);

    // What the hint decides is so in the puzzle.
    const std::string directions = Split(position.Position, '\t').at(3);
    for (const FieldChange& change : hint.Changes) {
      bool tent = false;
      ForEachSide(main.BoardSize, change.Cell, [&](int side, int direction) {
        tent = tent || directions[static_cast<std::size_t>(side)] == '0' + OppositeOf(direction);
      });
      EXPECT_EQ(tent, change.Code == CELL_TENT) << FieldNames(main, {change.Cell});
    }
  }
}

TEST(Guide, EveryHintHasItsPosition) {
  // No board gives these: on each, an earlier rule finds a pinched field.
  const std::set<std::string> foreclosed = {"SharedField-1", "SharedField-2", "SharedField-6"};
  std::set<std::string> names;
  for (const GuidePosition& position : ReadGuidePositions(kGuide + "positions.tsv"))
    names.insert(position.Name);
  for (const HintCase& which : HintCases()) {
    const std::string name = NameOf(which);
    EXPECT_EQ(names.count(name), foreclosed.count(name) == 0 ? 1U : 0U) << name;
  }
}

TEST(Guide, PagesRefuseHintsWithoutAPosition) {
  EXPECT_THROW(FillGuidePage("<!-- hint Nonsense-1 -->\n<!-- end -->\n", {}), InputError);
  EXPECT_THROW(FillGuidePage("<!-- passes -->\n", {}), InputError);
}

}  // namespace
}  // namespace bivouac
