#include "window/clue_label.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <utility>

#include "game/spoken.h"

namespace bivouac {
namespace {

constexpr int kClueSize = 15;  // Pixels at the window's opening size.

/// How a clue looks.
struct Look {
  QColor Text;
  QColor Rim;  ///< Pure green is too bright to be read on the window's ground without one.
};

Look LookOf(TextColour colour) {
  switch (colour) {
    case TextColour::Red:
      return {{0xFF, 0x00, 0x00}, {}};
    case TextColour::Green:
      return {{0x00, 0xFF, 0x00}, {0x00, 0x58, 0x00}};
    case TextColour::WindowText:
      break;
  }
  return {{0x10, 0x10, 0x10}, {}};
}

// Lengths in pixels of the window's opening size. A label is 17 high, its last pixel under the board.
constexpr double kRim = 0.8;
constexpr double kTickWidth = 4;  // At least; more where the label has room.
constexpr double kTickWidest = 7;
constexpr double kTickGap = 2;
constexpr double kTickLine = 1.6;
constexpr double kBoardGap = 1.2;
constexpr double kTickRoom =
    kRim + kTickGap + kTickWidth + kTickLine / 2 + kRim + kBoardGap;  // Beside the text.
constexpr double kUnderLine = 2;
constexpr double kLift = 1;  // Of a text with a line under it.

}  // namespace

ClueLabel::ClueLabel(std::string line, QWidget* parent)
    : TextLabel({.LargestText = kClueSize, .Bold = true}, parent), line_(std::move(line)) {
  setAccessibleDescription(QString::fromStdString(SpokenClue(line_, colour_)));
  SetTextColour(LookOf(colour_).Text);
  hide();
}

void ClueLabel::Draw(const Label& value, bool covered) {
  SetText(QString::fromStdString(value.Caption));
  if (colour_ != value.ForeColor) {
    colour_ = value.ForeColor;
    const Look look = LookOf(colour_);
    SetTextColour(look.Text, look.Rim);
    setAccessibleDescription(QString::fromStdString(SpokenClue(line_, colour_)));
    if (Unit() > 0) FitText(Unit());
  }
  const bool shown = value.Visible && !covered;
  if (isHidden() == shown) setVisible(shown);
}

QSize ClueLabel::TextRoom() const {
  const double tick = colour_ == TextColour::Green ? kTickRoom * Unit() : 0;
  return {width() - static_cast<int>(tick), height()};
}

void ClueLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (colour_ == TextColour::WindowText) return PaintText(painter, rect());

  const double unit = Unit();
  const QFontMetricsF metrics(font());
  const double advance = metrics.horizontalAdvance(Text());
  const Look look = LookOf(colour_);
  QPainterPath mark;
  double line = kUnderLine;
  if (colour_ == TextColour::Green) {
    // Text and tick stand in the middle together.
    const double spare = width() - advance - kTickRoom * unit;
    const double more = std::clamp(spare / 3, 0.0, (kTickWidest - kTickWidth) * unit);
    const double left = (spare - more) / 2 + kRim * unit;
    PaintText(painter, QRectF(left, 0, advance, height()).toAlignedRect());
    const double foot = (height() - metrics.height()) / 2 + metrics.ascent();
    const double capital = metrics.capHeight();
    const double tick = left + advance + kTickGap * unit;
    line = kTickLine;
    mark.moveTo(tick, foot - capital * 0.4);
    const double wide = kTickWidth * unit + more;
    mark.lineTo(tick + wide * 0.36, foot - line * unit / 2);
    mark.lineTo(tick + wide, foot - capital * 0.9);
  } else {
    PaintText(painter, rect().translated(0, static_cast<int>(std::lround(-kLift * unit))));
    const double half = advance / 2 + 2 * unit;
    const double foot = height() - unit - line * unit / 2;
    mark.moveTo(width() / 2.0 - half, foot);
    mark.lineTo(width() / 2.0 + half, foot);
  }
  const auto draw = [&](const QColor& colour, double width) {
    painter.strokePath(mark, QPen(colour, width * unit, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  };
  if (look.Rim.isValid()) draw(look.Rim, line + 2 * kRim);
  draw(look.Text, line);
}

}  // namespace bivouac
