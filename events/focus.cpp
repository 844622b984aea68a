#include "events/focus.h"

namespace bivouac {

bool HintTakesClicks(const Main& main) {
  return !main.lblHint.Caption.empty() && main.lblHint.Caption != RulesText();
}

Focus FocusFrom(const Main& main, Focus now, bool hintAppeared) {
  const bool shield = main.Shield.Visible;
  const bool hint = HintTakesClicks(main);
  const Focus waiting{shield ? Focus::On::Continue : hint ? Focus::On::Hint : Focus::On::Board};
  switch (now.Where) {
    case Focus::On::Board:
      return shield || hintAppeared ? waiting : now;
    case Focus::On::Continue:
      return shield ? now : Focus{Focus::On::Board};
    case Focus::On::Hint:
      return hint ? now : waiting;
    case Focus::On::Button:
      return (main.*now.ItsButton).Enabled ? now : waiting;
    case Focus::On::Elsewhere:
      break;
  }
  return now;
}

}  // namespace bivouac
