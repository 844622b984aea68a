// The way to the solution as the hints give it.
#pragma once

#include <string>
#include <vector>

#include "hints/hints.h"

namespace bivouac {

/// What a step makes of a field.
struct FieldChange {
  int Cell = 0;
  int Code = 0;  ///< CELL_GRASS or CELL_TENT.

  friend bool operator==(const FieldChange&, const FieldChange&) = default;
};

/// The open fields that a hint decides, each once, and what becomes of them.
std::vector<FieldChange> ChangesOf(const Main& main, const FoundHint& hint);

/// A hint's sentence, without the words that belong to the window.
std::string SentenceOf(const FoundHint& hint);

/// One thing that a hint can say: a rule, and one of its cases.
struct HintCase {
  const HintRule* Rule;
  int Case;

  std::string_view Text() const { return Rule->Texts[Case]; }
};
/// All of them, in the order of the chain.
const std::vector<HintCase>& HintCases();
/// "RowRuns-2": the rule's name, and the case counted from 1.
std::string NameOf(const HintCase& which);
/// The place in the guide that tells of it, such as "stage1.html#RowRuns-2".
std::string GuidePlaceOf(const HintCase& which);
/// The first that says a text, as it stands in lblHint; nullptr where none does.
const HintCase* HintCaseOf(std::string_view text);
/// Where a hint stands in that list.
std::size_t PlaceOf(const FoundHint& hint);

/// Applies hints to a board one by one until one of the ends.
class SolutionWalk {
 public:
  enum class Telling { Steps, StepsWithFacts };
  enum class End {
    None,  ///< There may be more steps.
    Solved,
    NoMoreHints,
    Fault,        ///< The search for the next hint reads outside the board.
    WrongHint,    ///< The last hint decides a field against the solution; it is not applied.
    NothingNew,   ///< The last hint decides no open field.
    WrongFields,  ///< The board that the walk began with has fields that are wrong.
  };

  /// Requires: a started puzzle, which the walk plays on. Its board may be half done.
  explicit SolutionWalk(Main& main, Telling telling = Telling::Steps);

  /// Finds the next hint and applies it. False at an end; after WrongHint and NothingNew, Hint() and
  /// Changes() are those of that hint.
  bool Next();

  const FoundHint& Hint() const { return *hint_; }
  const std::vector<FieldChange>& Changes() const { return changes_; }
  /// The evidence of Hint(), from the board before the step. Requires: Telling::StepsWithFacts.
  const std::vector<std::string>& Facts() const { return facts_; }
  End Ended() const { return end_; }

 private:
  bool IsSolved() const;

  Main& main_;
  const Telling telling_;
  std::optional<FoundHint> hint_;
  std::vector<std::string> facts_;
  std::vector<FieldChange> changes_;
  End end_ = End::None;
};

/// Where hints lead from the start of a puzzle. Errors: RunTimeError if the record cannot be started.
/// Requires: its size is 6 to 18.
SolutionWalk::End EndOfWay(Main& main, const PackRecord& record);

/// Why a walk ended before the solution, as a sentence. Requires: it ended, and not solved.
std::string WordsOf(SolutionWalk::End end);

}  // namespace bivouac
