#include "packs/puzzle_facts.h"

#include <cstdio>

#include "workbench/workbench.h"

namespace bivouac {

Rating Rate(Main& main, const PackRecord& record) {
  LayOutRecord(main, record);
  Rating rating;
  RatePuzzle(main, rating.Level, rating.Trace);
  rating.Difficulty = main.Difficulty;
  return rating;
}

PuzzleFacts FactsOf(Main& main, const PackRecord& record) {
  const Rating rating = Rate(main, record);
  const int stored = LevelOf(record.LevelSize);
  return {main.BoardSize, stored != 0 ? stored : rating.Level, rating.Difficulty};
}

std::string FactsText(const PuzzleFacts& facts) {
  if (facts.Level < 1) return SizeText(facts.Size) + ", beyond the rater's rules";
  char text[60];
  std::snprintf(text, sizeof text, ", level %d, difficulty %.2f", facts.Level,
                static_cast<double>(facts.Difficulty));
  return SizeText(facts.Size) + text;
}

}  // namespace bivouac
