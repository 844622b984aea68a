#include "rating/rating.h"

#include <array>

#include "rating/passes.h"

namespace bivouac {
namespace {

constexpr std::array<PassRow, 23> kPasses{{
    {"PassLoneOption", 1, PassLoneOption},
    {"PassServedNeighbour", 1, PassServedNeighbour},
    {"PassRowComplete", 1, PassRowComplete},
    {"PassColumnComplete", 1, PassColumnComplete},
    {"PassRowRuns", 1, PassRowRuns},
    {"PassColumnRuns", 1, PassColumnRuns},
    {"PassCornerField", 2, PassCornerField},
    {"PassPinchedRow", 2, PassPinchedRow},
    {"PassPinchedColumn", 2, PassPinchedColumn},
    {"PassClaimedRow", 2, PassClaimedRow},
    {"PassClaimedColumn", 2, PassClaimedColumn},
    {"PassPinchedCorner", 3, PassPinchedCorner},
    {"PassSharedField", 3, PassSharedField},
    {"PassLastTentRow", 3, PassLastTentRow},
    {"PassLastTentColumn", 3, PassLastTentColumn},
    {"PassSpareRunRow", 4, PassSpareRunRow},
    {"PassSpareRunColumn", 4, PassSpareRunColumn},
    {"PassCluster", 4, PassCluster},
    {"PassTwinRow", 4, PassTwinRow},
    {"PassTwinColumn", 4, PassTwinColumn},
    {"PassWing", 4, PassWing},
    {"PassTreeSupplyRow", 5, PassTreeSupplyRow},
    {"PassTreeSupplyColumn", 5, PassTreeSupplyColumn},
}};

constexpr double kNothingFound = 2.0;  // What the last cycle of an unfinished puzzle costs.

/// Fields that no tree touches are grass, free of charge.
void GrassAwayFromTrees(Rater& rater) {
  const Lines& rows = rater.rows.lines;
  for (int row = 0; row < rater.size; ++row) {
    rater.SetAll(rows, row, rows.Open(row) & ~SidesOf(rows, CELL_TREE, row).Any(), CELL_GRASS);
  }
}

/// The frame: after every deduction back to the cheapest rule. `trace` may be null. Its FaultyPass is the
/// pass that runs, so that it names the one that throws.
int Rate(Main& main, RatingTrace* trace) {
  main.Difficulty = 0;
  Rater rater(main);
  const float stepWeight = static_cast<float>(1.0 / (2 * rater.size));
  int topTier = 1;
  GrassAwayFromTrees(rater);
  while (true) {
    const PassRow* found = nullptr;
    for (const PassRow& pass : kPasses) {
      if (trace) trace->FaultyPass = static_cast<int>(&pass - kPasses.data());
      if (pass.Run(rater)) {
        found = &pass;
        break;
      }
    }
    if (trace) trace->FaultyPass = -1;
    // The sum is rounded once, from double precision.
    const double price = found ? static_cast<double>(stepWeight) * found->Tier : kNothingFound;
    main.Difficulty = static_cast<float>(static_cast<double>(main.Difficulty) + price);
    if (found) {
      if (trace) trace->Passes.push_back(static_cast<int>(found - kPasses.data()));
      if (topTier < found->Tier) topTier = found->Tier;
    }
    if (rater.wrong == 0) return topTier;
    if (!found) return -1;
  }
}

int RateOrFail(Main& main, RatingTrace* trace) {
  try {
    return Rate(main, trace);
  } catch (const RunTimeError&) {
    return -1;
  }
}

}  // namespace

std::span<const PassRow> PassTable() {
  return kPasses;
}

std::string PassNames(const RatingTrace& trace) {
  std::string names;
  const auto add = [&](const char* mark, int pass) {
    if (!names.empty()) names += ',';
    names += mark;
    names += PassTable()[static_cast<std::size_t>(pass)].Name;
  };
  for (const int pass : trace.Passes) add("", pass);
  if (trace.FaultyPass >= 0) add("!", trace.FaultyPass);
  return names;
}

void RatePuzzle(Main& main, int& result) {
  result = RateOrFail(main, nullptr);
}

void RatePuzzle(Main& main, int& result, RatingTrace& trace) {
  trace = {};
  result = RateOrFail(main, &trace);
}

}  // namespace bivouac
