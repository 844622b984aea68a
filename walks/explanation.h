// What an explained solution consists of, for the terminal and for paper.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "walks/solution_walk.h"
#include "workbench/workbench.h"

namespace bivouac {

/// A position from the command line.
struct PositionOption {
  std::string Name;    ///< Of the option, for errors.
  std::string Digits;  ///< Empty for the start of the puzzle.
};
/// Starts a puzzle on the bench and lays the position on it. Errors: InputError if there is no such puzzle,
/// it is damaged or cannot be started, or the digits are not its own.
PackRecord StartPuzzleOn(Workbench& bench, const std::string& pack, long number,
                         const PositionOption& position);

/// "tent r3c4; grass r1c2, r1c3".
std::string ChangesText(const Main& main, const std::vector<FieldChange>& changes);

/// What each of some hints says, for people.
struct WayStep {
  FoundHint Hint;
  std::vector<std::string> Facts;  ///< Of the board before it.
  std::vector<FieldChange> Changes;
};

/// Sums up the hints of a way.
class WayTally {
 public:
  void Add(const HintRule& rule);

  int Steps() const { return steps_; }
  int Seconds() const { return seconds_; }
  /// How often a rule was needed.
  int TimesOf(const HintRule& rule) const;
  /// The rule of the latest stage, among these the dearest, among these the last of the chain; nullptr if
  /// there was no step.
  const HintRule* Hardest() const;

 private:
  int steps_ = 0;
  int seconds_ = 0;
  std::vector<int> times_;  // By place in HintRules().
};

/// The whole way from a position.
struct Way {
  std::vector<WayStep> Steps;
  std::optional<WayStep> NotAStep;  ///< A last hint that is wrong or decides nothing.
  SolutionWalk::End End = SolutionWalk::End::None;
  WayTally Tally;
};
/// Leaves the board as it was. Requires: a started puzzle.
Way WayFrom(Main& main);
/// Makes on the board what a step decides.
void Play(Main& main, const WayStep& step);

/// Steps of a way that are told together, the last included. Counted from 0.
struct Passage {
  std::size_t First;
  std::size_t Last;
};
enum class Detail {
  EveryStep,
  TentsWithGrass,  ///< A tent and the grass around it are one.
  Streaks,         ///< A step beyond the first stage begins one.
};
std::vector<Passage> PassagesOf(const Way& way, Detail detail);

/// A passage in words.
struct Telling {
  std::string Title;     ///< "Steps 3 and 4: A tree with one field left, 25 seconds"
  std::string Sentence;  ///< Of its first step, as are the facts.
  std::vector<std::string> Facts;
  std::string Changes;  ///< Of all.
};
Telling Tell(const Main& main, const Way& way, Passage passage);
/// The hint that is no step.
Telling TellNotAStep(const Main& main, const WayStep& step);

/// "23 steps, 445 seconds of hints", with the hardest rule.
std::string SumText(const WayTally& tally);

}  // namespace bivouac
