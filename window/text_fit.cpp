#include "window/text_fit.h"

#include <QFontMetrics>
#include <algorithm>
#include <cmath>

namespace bivouac {
namespace {

QSize NeededSize(const QFont& font, const QString& text, QSize room, Wrapping wrapping) {
  const int flags = wrapping == Wrapping::AtWords ? Qt::TextWordWrap : 0;
  return QFontMetrics(font).boundingRect(QRect(QPoint(0, 0), room), flags, text).size();
}

bool Fits(QSize needed, QSize room) {
  return needed.width() <= room.width() && needed.height() <= room.height();
}

/// A size that probably just fits, from what the text needed at another. The height of wrapped text grows
/// with the square of the size, and where a word is too long its width tells.
int Guess(int size, QSize needed, QSize room, Wrapping wrapping) {
  const double width = static_cast<double>(room.width()) / std::max(needed.width(), 1);
  const double height = static_cast<double>(room.height()) / std::max(needed.height(), 1);
  const double factor =
      wrapping == Wrapping::AtWords ? std::min(width, std::sqrt(height)) : std::min(width, height);
  return static_cast<int>(size * factor);
}

}  // namespace

bool TextFits(const QFont& font, const QString& text, QSize room, Wrapping wrapping) {
  return Fits(NeededSize(font, text, room, wrapping), room);
}

QFont FittingFont(QFont font, const QString& text, QSize room, int largest, Wrapping wrapping) {
  // Every size that is measured loads a font, so few are, and none above the guess to see if it fits as well.
  font.setPixelSize(largest);
  while (font.pixelSize() > 1 && !text.isEmpty()) {
    const QSize needed = NeededSize(font, text, room, wrapping);
    if (Fits(needed, room)) break;
    font.setPixelSize(std::clamp(Guess(font.pixelSize(), needed, room, wrapping), 1, font.pixelSize() - 1));
  }
  return font;
}

}  // namespace bivouac
