#include "window/puzzle_picture.h"

#include <QPainter>
#include <algorithm>

#include "window/scale.h"

namespace bivouac {
namespace {

/// Paints fields and clues, each a square of `side` units.
void Paint(QPainter& painter, const Main& main, Tiles& tiles, int side) {
  const int lines = main.BoardSize;
  painter.fillRect(QRect(0, 0, side * (lines + 1), side * (lines + 1)), QColor::fromRgb(kWindowBackground));
  QFont digits = painter.font();
  digits.setPixelSize(std::max(1, side * 2 / 3));
  painter.setFont(digits);
  painter.setPen(Qt::black);
  for (int line = 0; line < lines; ++line) {
    const int at = (line + 1) * side;
    painter.drawText(QRect(at, 0, side, side), Qt::AlignCenter,
                     QString::fromStdString(main.ColCnt[line].Caption));
    painter.drawText(QRect(0, at, side, side), Qt::AlignCenter,
                     QString::fromStdString(main.RowCnt[line].Caption));
    for (int col = 0; col < lines; ++col)
      painter.drawPixmap((col + 1) * side, at, tiles.At(main.Grid[line * lines + col].Picture, side));
  }
}

}  // namespace

QImage PictureOf(const Main& main, int side) {
  QImage image(side * (main.BoardSize + 1), side * (main.BoardSize + 1), QImage::Format_RGB32);
  QPainter painter(&image);
  Tiles tiles;
  Paint(painter, main, tiles, side);
  return image;
}

PuzzlePicture::PuzzlePicture(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("Picture"));
}

void PuzzlePicture::Show(const Main* main) {
  main_ = main;
  update();
}

void PuzzlePicture::paintEvent(QPaintEvent*) {
  if (main_ == nullptr) return;
  const double ratio = devicePixelRatioF();
  QPainter painter(this);
  painter.scale(1 / ratio, 1 / ratio);  // One unit is one device pixel.
  Paint(painter, *main_, tiles_,
        std::max(1, static_cast<int>(std::min(width(), height()) * ratio / (main_->BoardSize + 1))));
}

}  // namespace bivouac
