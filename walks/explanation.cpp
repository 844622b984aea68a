#include "walks/explanation.h"

#include <algorithm>
#include <tuple>

#include "deduction/finds.h"
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
  const PackReader reader(pack);
  const PackRecord record = reader.Read(number);
  LayOutRecord(bench.main, record);
  reader.Starting(number, [&] { StartPuzzle(bench.main); });
  if (!position.Digits.empty()) LayFields(bench.main, position.Digits, position.Name);
  return record;
}

std::string ChangesText(const Main& main, const std::vector<FieldChange>& changes) {
  std::string text;
  for (const auto& [code, name] : {std::pair{CELL_TENT, "tent "}, {CELL_GRASS, "grass "}}) {
    std::vector<int> cells;
    for (const FieldChange& change : changes) {
      if (change.Code == code) cells.push_back(change.Cell);
    }
    if (!cells.empty()) text += (text.empty() ? "" : "; ") + (name + FieldNames(main, cells));
  }
  return text;
}

Way WayFrom(Main& main) {
  const Array<int> before = main.Board;
  SolutionWalk walk(main, SolutionWalk::Telling::StepsWithFacts);
  Way way;
  while (walk.Next()) {
    way.Steps.push_back({walk.Hint(), walk.Facts(), walk.Changes()});
    way.Tally.Add(*walk.Hint().Rule);
  }
  way.End = walk.Ended();
  if (way.End == SolutionWalk::End::WrongHint || way.End == SolutionWalk::End::NothingNew)
    way.NotAStep = {walk.Hint(), walk.Facts(), walk.Changes()};
  main.Board = before;
  return way;
}

void Play(Main& main, const WayStep& step) {
  for (const FieldChange& change : step.Changes) main.Board[change.Cell] = change.Code;
}

std::vector<Passage> PassagesOf(const Way& way, Detail detail) {
  std::vector<Passage> passages;
  for (std::size_t i = 0; i < way.Steps.size(); ++i) {
    const HintRule& rule = *way.Steps[i].Hint.Rule;
    const bool goesOn = detail == Detail::Streaks          ? rule.Stage == 1
                        : detail == Detail::TentsWithGrass ? rule.Look == FindTentNeighbours
                                                           : false;
    if (goesOn && !passages.empty())
      passages.back().Last = i;
    else
      passages.push_back({i, i});
  }
  return passages;
}

Telling Tell(const Main& main, const Way& way, Passage passage) {
  const WayStep& first = way.Steps[passage.First];
  std::vector<FieldChange> changes;
  int seconds = 0;
  for (std::size_t i = passage.First; i <= passage.Last; ++i) {
    const WayStep& step = way.Steps[i];
    changes.insert(changes.end(), step.Changes.begin(), step.Changes.end());
    seconds += step.Hint.Rule->Seconds;
  }
  std::string title = passage.First == passage.Last ? "Step " : "Steps ";
  title += std::to_string(passage.First + 1);
  if (passage.First != passage.Last)
    title += (passage.Last == passage.First + 1 ? " and " : " to ") + std::to_string(passage.Last + 1);
  return {title + ": " + std::string(first.Hint.Rule->Title) + ", " + Counted(seconds, "second"),
          SentenceOf(first.Hint), first.Facts, ChangesText(main, changes)};
}

Telling TellNotAStep(const Main& main, const WayStep& step) {
  return {
      "Not a step: " + std::string(step.Hint.Rule->Title) + ", " + Counted(step.Hint.Rule->Seconds, "second"),
      SentenceOf(step.Hint), step.Facts, ChangesText(main, step.Changes)};
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
