// What an explained solution consists of, for the terminal and for paper.
#pragma once

#include <map>
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

/// "23 steps, 445 seconds of hints", with the hardest rule.
std::string SumText(const WayTally& tally);

}  // namespace bivouac
