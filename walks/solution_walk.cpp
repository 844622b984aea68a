#include "walks/solution_walk.h"

#include <algorithm>

#include "game/error.h"
#include "game/play.h"
#include "game/spoken.h"
#include "hints/evidence.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

bool IsWrong(const Main& main, int cell, int code) {
  return (main.Solution[cell] == CELL_TENT) != (code == CELL_TENT);
}

}  // namespace

std::vector<FieldChange> ChangesOf(const Main& main, const FoundHint& hint) {
  std::vector<FieldChange> changes;
  for (const FoundField& field : hint.Found.Fields) {
    if (!IsDecided(field.Is) || main.Board[field.Cell] != CELL_OPEN) continue;
    const FieldChange change{field.Cell, field.Is == Role::Tent ? CELL_TENT : CELL_GRASS};
    if (std::find(changes.begin(), changes.end(), change) == changes.end()) changes.push_back(change);
  }
  return changes;
}

std::string SentenceOf(const FoundHint& hint) {
  return SentenceOf(hint.Text());
}

const std::vector<HintCase>& HintCases() {
  static const std::vector<HintCase> cases = [] {
    std::vector<HintCase> all;
    for (const HintRule& rule : HintRules()) {
      int which = 0;
      for (const std::string_view text : rule.Texts) {
        if (!text.empty()) all.push_back({&rule, which});
        ++which;
      }
    }
    return all;
  }();
  return cases;
}

std::string NameOf(const HintCase& which) {
  return std::string(which.Rule->Name) + '-' + std::to_string(which.Case + 1);
}

std::string GuidePlaceOf(const HintCase& which) {
  return "stage" + std::to_string(which.Rule->Stage) + ".html#" + NameOf(which);
}

const HintCase* HintCaseOf(std::string_view text) {
  const auto& cases = HintCases();
  const auto found =
      std::find_if(cases.begin(), cases.end(), [&](const HintCase& each) { return each.Text() == text; });
  return found == cases.end() ? nullptr : &*found;
}

std::size_t PlaceOf(const FoundHint& hint) {
  const std::vector<HintCase>& cases = HintCases();
  const auto place = std::find_if(cases.begin(), cases.end(), [&](const HintCase& which) {
    return which.Rule == hint.Rule && which.Case == hint.Found.Case;
  });
  return static_cast<std::size_t>(place - cases.begin());
}

SolutionWalk::SolutionWalk(Main& main, Telling telling) : main_(main), telling_(telling) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    const int code = main.Board[cell];
    if ((code == CELL_GRASS || code == CELL_TENT) && IsWrong(main, cell, code)) end_ = End::WrongFields;
  }
}

bool SolutionWalk::IsSolved() const {
  for (int cell = 0; cell < main_.CellCount; ++cell) {
    if (main_.Board[cell] == CELL_OPEN) return false;
    if (main_.Board[cell] != CELL_TREE && IsWrong(main_, cell, main_.Board[cell])) return false;
  }
  return true;
}

bool SolutionWalk::Next() {
  if (end_ != End::None) return false;
  const auto endWith = [&](End end) {
    end_ = end;
    return false;
  };
  if (IsSolved()) return endWith(End::Solved);
  try {
    hint_ = FindHint(main_);
    if (!hint_) return endWith(End::NoMoreHints);
    changes_ = ChangesOf(main_, *hint_);
    if (telling_ == Telling::StepsWithFacts) facts_ = EvidenceOf(main_, *hint_);
  } catch (const RunTimeError&) {
    return endWith(End::Fault);
  }
  if (changes_.empty()) return endWith(End::NothingNew);
  for (const FieldChange& change : changes_) {
    if (IsWrong(main_, change.Cell, change.Code)) return endWith(End::WrongHint);
  }
  for (const FieldChange& change : changes_) main_.Board[change.Cell] = change.Code;
  return true;
}

SolutionWalk::End EndOfWay(Main& main, const PackRecord& record) {
  LayOutRecord(main, record);
  StartPuzzle(main);
  SolutionWalk walk(main);
  while (walk.Next()) {
  }
  return walk.Ended();
}

std::string WordsOf(SolutionWalk::End end) {
  switch (end) {
    case SolutionWalk::End::NoMoreHints:
      return "No hint finds anything here: the way ends before the solution.";
    case SolutionWalk::End::Fault:
      return "The search for a hint reads outside the board here: the way ends before the solution.";
    case SolutionWalk::End::WrongHint:
      return "This hint is wrong here, as it decides a field against the solution: the way ends before it.";
    case SolutionWalk::End::NothingNew:
      return "This hint decides nothing that is still open: the way ends before the solution.";
    case SolutionWalk::End::WrongFields:
      return "The position has fields that are wrong: hints lead on from it nowhere.";
    default:
      return {};
  }
}

}  // namespace bivouac
