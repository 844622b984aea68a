#include "walks/explanation.h"

#include <algorithm>
#include <tuple>

#include "game/error.h"
#include "game/play.h"
#include "game/text.h"
#include "hints/evidence.h"
#include "packs/pack_access.h"
#include "packs/pack_reader.h"
#include "workbench/position.h"

namespace bivouac {
namespace {

std::size_t PlaceOf(const HintRule& rule) {
  return static_cast<std::size_t>(&rule - HintRules().data());
}

}  // namespace

PackRecord StartPuzzleOn(Workbench& bench, const std::string& pack, long number,
                         const PositionOption& position) {
  const PackRecord record = PackReader(pack).Read(number);
  LayOutRecord(bench.main, record);
  try {
    StartPuzzle(bench.main);
  } catch (const RunTimeError& error) {
    throw InputError(pack + ": record " + std::to_string(number) + " cannot be started: " + error.what());
  }
  if (!position.Digits.empty()) LayFields(bench.main, position.Digits, position.Name);
  return record;
}

std::string ChangesText(const Main& main, const std::vector<FieldChange>& changes) {
  std::string text;
  for (const int code : {CELL_TENT, CELL_GRASS}) {
    bool first = true;
    for (const FieldChange& change : changes) {
      if (change.Code != code) continue;
      if (first && !text.empty()) text += "; ";
      text += first ? (code == CELL_TENT ? "tent " : "grass ") : ", ";
      text += FieldName(main, change.Cell);
      first = false;
    }
  }
  return text;
}

void WayTally::Add(const HintRule& rule) {
  ++steps_;
  seconds_ += rule.Seconds;
  times_.resize(HintRules().size());
  ++times_[PlaceOf(rule)];
}

int WayTally::TimesOf(const HintRule& rule) const {
  return times_.empty() ? 0 : times_[PlaceOf(rule)];
}

const HintRule* WayTally::Hardest() const {
  const HintRule* hardest = nullptr;
  for (const HintRule& rule : HintRules()) {
    if (TimesOf(rule) == 0) continue;
    if (hardest == nullptr ||
        std::tie(rule.Stage, rule.Seconds) >= std::tie(hardest->Stage, hardest->Seconds)) {
      hardest = &rule;
    }
  }
  return hardest;
}

std::string SumText(const WayTally& tally) {
  std::string text = Counted(tally.Steps(), "step") + ", " + Counted(tally.Seconds(), "second") + " of hints";
  if (const HintRule* hardest = tally.Hardest()) {
    text += "; the hardest: " + std::string(hardest->Title) + " (stage " + std::to_string(hardest->Stage) +
            ", " + Counted(hardest->Seconds, "second") + ')';
  }
  return text;
}

}  // namespace bivouac
