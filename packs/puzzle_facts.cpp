#include "packs/puzzle_facts.h"

#include <cstdio>

#include "rating/rating.h"
#include "workbench/workbench.h"

namespace bivouac {

PuzzleFacts FactsOf(Main& main, const PackRecord& record) {
  LayOutRecord(main, record);
  PuzzleFacts facts{main.BoardSize, LevelOf(record.LevelSize), 0};
  int level = 0;
  RatePuzzle(main, level);
  if (facts.Level == 0) facts.Level = level;
  facts.Difficulty = main.Difficulty;
  return facts;
}

std::string FactsText(const PuzzleFacts& facts) {
  if (facts.Level < 1) return SizeText(facts.Size) + ", beyond the rater's rules";
  char text[60];
  std::snprintf(text, sizeof text, ", level %d, difficulty %.2f", facts.Level,
                static_cast<double>(facts.Difficulty));
  return SizeText(facts.Size) + text;
}

}  // namespace bivouac
