// What is painted, held against the pictures as they were committed.
#pragma once

#include <QImage>
#include <utility>

namespace bivouac {

/// Mean difference of two pictures, 0 to 255 a channel. Of different sizes: a channel's whole range.
double Difference(const QImage& one, const QImage& other);

/// Around the pixels that differ; null if none does.
QRect DifferentIn(const QImage& one, const QImage& other);

/// A picture as it was committed, at a size.
const QImage& Asset(const QString& name, QSize size);

/// The tile that a picture, the inside of a field of that size, shows best, and its difference from it.
std::pair<int, double> ClosestTile(const QImage& painted, QSize field);

}  // namespace bivouac
