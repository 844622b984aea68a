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
  // An empty text fits anyhow. Every size that is measured loads a font, so few are: most texts fit at the
  // size that is wished for, and for others the first guess is off by one at most.
  int fits = text.isEmpty() ? largest : 1;
  int tooLarge = largest + 1;
  for (int size = largest; tooLarge - fits > 1;) {
    font.setPixelSize(size);
    const QSize needed = NeededSize(font, text, room, wrapping);
    const bool good = Fits(needed, room);
    (good ? fits : tooLarge) = size;
    size = std::clamp(good ? fits + 1 : Guess(size, needed, room, wrapping), fits + 1,
                      std::max(fits + 1, tooLarge - 1));
  }
  font.setPixelSize(fits);
  return font;
}

}  // namespace bivouac
