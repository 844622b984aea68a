#include "window/puzzle_picture.h"

#include <QPainter>
#include <algorithm>

#include "window/scale.h"

namespace bivouac {

PuzzlePicture::PuzzlePicture(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("Picture"));
}

void PuzzlePicture::Show(const Main* main) {
  main_ = main;
  update();
}

void PuzzlePicture::paintEvent(QPaintEvent*) {
  if (main_ == nullptr) return;
  const int lines = main_->BoardSize;
  const double ratio = devicePixelRatioF();
  const int side = std::max(1, static_cast<int>(std::min(width(), height()) * ratio / (lines + 1)));
  QPainter painter(this);
  painter.scale(1 / ratio, 1 / ratio);  // One unit is one device pixel.
  const QRect whole(0, 0, side * (lines + 1), side * (lines + 1));
  painter.fillRect(whole, QColor::fromRgb(kWindowBackground));
  QFont digits = font();
  digits.setPixelSize(std::max(1, side * 2 / 3));
  painter.setFont(digits);
  painter.setPen(Qt::black);
  for (int line = 0; line < lines; ++line) {
    const int at = (line + 1) * side;
    painter.drawText(QRect(at, 0, side, side), Qt::AlignCenter,
                     QString::fromStdString(main_->ColCnt[line].Caption));
    painter.drawText(QRect(0, at, side, side), Qt::AlignCenter,
                     QString::fromStdString(main_->RowCnt[line].Caption));
    for (int col = 0; col < lines; ++col)
      painter.drawPixmap((col + 1) * side, at, tiles_.At(main_->Grid[line * lines + col].Picture, side));
  }
}

}  // namespace bivouac
