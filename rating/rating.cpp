#include "rating/rating.h"

#include "deduction/finds.h"
#include "deduction/wings.h"
#include "rating/rater.h"
#include "rating/shared_field.h"

namespace bivouac {
namespace {

constexpr LineKind kRow = LineKind::Row;
constexpr LineKind kColumn = LineKind::Column;

bool FindServed(Lines& rows, Find& find) {
  return FindServedNeighbour(rows, ServedFrom::AnySide, find);
}
bool FindAnyWing(Lines& rows, Find& find) {
  Wing wing;
  return FindWing(rows, BothInner::InAllFormations, find, wing);
}
bool FindSupply(Lines& lines, Find& find) {
  return FindTreeSupply(lines, BeyondLastLine::IsAnError, find);
}

// What a pass looks for is told with its find, in deduction/finds.h, wings.h and shared_field.h; the sentence
// that explains it stands in hints/hint_rules.cpp, under the pass's name without "Pass".
constexpr FixedArray<Pass, kPassCount> kPasses{{
    {"PassLoneOption", 1, kRow, FindLoneOption, AlsoDoes::LeavesOneMark},
    {"PassServedNeighbour", 1, kRow, FindServed},
    {"PassRowComplete", 1, kRow, FindComplete},
    {"PassColumnComplete", 1, kColumn, FindComplete},
    {"PassRowRuns", 1, kRow, FindRuns},
    {"PassColumnRuns", 1, kColumn, FindRuns},
    {"PassCornerField", 2, kRow, FindCornerField},
    {"PassPinchedRow", 2, kRow, FindPinched},
    {"PassPinchedColumn", 2, kColumn, FindPinched},
    {"PassClaimedRow", 2, kRow, FindClaimed},
    {"PassClaimedColumn", 2, kColumn, FindClaimed},
    {"PassPinchedCorner", 3, kRow, FindPinchedCorner},
    {"PassSharedField", 3, kRow, FindOtherOptions},
    {"PassLastTentRow", 3, kRow, FindLastTent},
    {"PassLastTentColumn", 3, kColumn, FindLastTent},
    {"PassSpareRunRow", 4, kRow, FindSpareRun},
    {"PassSpareRunColumn", 4, kColumn, FindSpareRun},
    {"PassCluster", 4, kRow, FindCluster, AlsoDoes::ClearsMarks},
    {"PassTwinRow", 4, kRow, FindTwins},
    {"PassTwinColumn", 4, kColumn, FindTwins},
    {"PassWing", 4, kRow, FindAnyWing, AlsoDoes::SweepsInAnyCase},
    {"PassTreeSupplyRow", 5, kRow, FindSupply},
    {"PassTreeSupplyColumn", 5, kColumn, FindSupply},
}};
static_assert(kPasses[kPassCount - 1].Look != nullptr, "a row is missing");

constexpr double kNothingFound = 2.0;  // What the last cycle of an unfinished puzzle costs.

/// The frame: after every deduction back to the cheapest rule. `trace` may be null. Its FaultyPass is the
/// pass that runs, so that it names the one that throws.
int Rate(Main& main, RatingTrace* trace) {
  main.Difficulty = 0;
  Rater rater(main);
  const float stepWeight = static_cast<float>(1.0 / (2 * rater.Size));
  int topTier = 1;
  // Fields that no tree touches are grass, free of charge.
  if (FindAwayFromTrees(rater.Rows, rater.Found)) rater.Act();
  while (true) {
    const Pass* found = nullptr;
    for (const Pass& pass : kPasses) {
      if (trace) trace->FaultyPass = static_cast<int>(&pass - kPasses.begin());
      if (RunPass(rater, pass)) {
        found = &pass;
        break;
      }
    }
    if (trace) trace->FaultyPass = -1;
    // The sum is rounded once, from double precision.
    const double price = found ? static_cast<double>(stepWeight) * found->Tier : kNothingFound;
    main.Difficulty = static_cast<float>(static_cast<double>(main.Difficulty) + price);
    if (found) {
      if (trace) trace->Passes.push_back(static_cast<int>(found - kPasses.begin()));
      if (topTier < found->Tier) topTier = found->Tier;
    }
    if (rater.Wrong == 0) return topTier;
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

bool RunPass(Rater& rater, const Pass& pass) {
  if (pass.Also == AlsoDoes::ClearsMarks) rater.main.BlinkTop = -1;
  rater.Found.Clear();
  if (!pass.Look(pass.Along == kRow ? rater.Rows : rater.Columns, rater.Found)) return false;
  const bool tents = rater.Act();
  if (pass.Also == AlsoDoes::LeavesOneMark) rater.main.BlinkTop = 0;
  if (tents || pass.Also == AlsoDoes::SweepsInAnyCase) rater.SweepTentNeighbours();
  return true;
}

const FixedArray<Pass, kPassCount>& PassTable() {
  return kPasses;
}

std::string PassNames(const RatingTrace& trace) {
  std::string names;
  const auto add = [&](const char* mark, int pass) {
    if (!names.empty()) names += ',';
    names += mark;
    names += kPasses[pass].Name;
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
