#include "window/text_fit.h"

#include <QFontMetrics>

namespace bivouac {

bool TextFits(const QFont& font, const QString& text, QSize room, Wrapping wrapping) {
  const int flags = wrapping == Wrapping::AtWords ? Qt::TextWordWrap : 0;
  const QRect needed = QFontMetrics(font).boundingRect(QRect(0, 0, room.width(), room.height()), flags, text);
  return needed.width() <= room.width() && needed.height() <= room.height();
}

QFont FittingFont(QFont font, const QString& text, QSize room, int largest, Wrapping wrapping) {
  int fits = 1;
  int tooLarge = largest + 1;
  // Most texts fit at the size that is wished for.
  for (int size = largest; tooLarge - fits > 1; size = (fits + tooLarge) / 2) {
    font.setPixelSize(size);
    (TextFits(font, text, room, wrapping) ? fits : tooLarge) = size;
  }
  font.setPixelSize(fits);
  return font;
}

}  // namespace bivouac
