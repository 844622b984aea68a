// Hints: explain the next deduction in a sentence while the fields concerned blink on the board. A hint never
// changes the board.
#pragma once

#include <optional>
#include <string_view>

#include "deduction/find.h"
#include "deduction/lines.h"
#include "game/game_state.h"
#include "game/sound.h"

namespace bivouac {

void cmdHint_Click(Main& main);
/// Ends a hint on show.
void lblHint_Click(Main& main);

/// The stages of the chain. Each shows the first find of its rules or calls the next; the last says that
/// there are no more hints.
/// Errors: IndexOutsideArray where a rule reads beyond the board; NotANumber, Overflow where it comes to a
/// clue that is none.
void HintBasic(Main& main);
void HintTrees(Main& main);
void HintPairs(Main& main);
void HintPatterns(Main& main);
void HintCounts(Main& main);

/// Which fields of a find blink.
enum class Blinking { All, Decided, Explaining };

/// A rule of the chain: a deduction, and how it is told.
struct HintRule {
  /// The same in every version. The pass of the rater that acts on the same find is "Pass" and this name; the
  /// first two rules have none.
  std::string_view Name;
  std::string_view Title;  ///< For people.
  int Stage;               ///< 1 to 5, from HintBasic to HintCounts.
  LineKind Along;
  bool (*Look)(Lines& lines, Find& find);  ///< May end in a RunTimeError.
  Blinking Shown;
  int Seconds;  ///< What the hint costs.
  Sound Played;
  FixedArray<std::string_view, 9> Texts;  ///< By the find's case.
};

/// The rules in the order in which the chain tries them.
inline constexpr int kHintRuleCount = 25;
const FixedArray<HintRule, kHintRuleCount>& HintRules();

/// A hint before it is shown: the rule, the fields with what becomes of each and those that explain it.
struct FoundHint {
  const HintRule* Rule = nullptr;
  Find Found;

  std::string_view Text() const { return Rule->Texts[Found.Case]; }
  bool Shows(const FoundField& field) const;
};

/// The hint that the chain gives on the board, which must have no wrong fields, from a stage on; none where
/// there are no more. Changes nothing. Errors: as the stages.
std::optional<FoundHint> FindHint(const Main& main, int stage = 1);

/// The tile with which a field of a find blinks; see AddBlink.
int BlinkTileOf(Role role);

}  // namespace bivouac
