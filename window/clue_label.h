// The clue of a row or column.
#pragma once

#include <string>

#include "game/controls.h"
#include "window/widgets.h"

namespace bivouac {

/// Says in its colour, and in its form too, whether its line is finished: a finished clue carries a tick
/// behind it, one with too many tents a line under it. So nobody has to tell green from red.
class ClueLabel : public TextLabel {
 public:
  /// `line` names it: "row 3".
  ClueLabel(std::string line, QWidget* parent);

  /// Draws what changed in the value but its place. `covered`: the shield, which leaves a column of the
  /// label's pixels free, hides the whole of it.
  void Draw(const Label& value, bool covered);
  QSize TextRoom() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string line_;
  TextColour colour_ = TextColour::WindowText;
};

}  // namespace bivouac
