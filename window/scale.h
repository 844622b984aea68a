// From twips, the units of the layout, to the window's pixels.
#pragma once

#include <QRect>
#include <QSize>
#include <algorithm>
#include <cmath>

#include "game/controls.h"

namespace bivouac {

/// A length given in pixels of the window's opening size, such as a font's or a line's, in present pixels: at
/// least 1. `unit` is the present length of a pixel of the opening size.
inline int PixelsOf(double atOpeningSize, double unit) {
  return std::max(1, static_cast<int>(std::lround(atOpeningSize * unit)));
}

/// The same for the room around a text: rounded up, so that none is lost.
inline int MarginOf(double atOpeningSize, double unit) {
  return static_cast<int>(std::ceil(atOpeningSize * unit));
}

/// One factor for both directions; what is left over in one of them lies in equal parts on both sides.
struct Scale {
  double Factor = 1.0 / kTwipsPerPixel;  ///< Logical pixels per twip.
  double Left = 0;                       ///< Of the layout's corner, logical pixels.
  double Top = 0;

  static Scale ToFit(QSize inner) {
    Scale scale;
    scale.Factor = std::min(static_cast<double>(inner.width()) / kWindowWidth,
                            static_cast<double>(inner.height()) / kWindowHeight);
    scale.Left = (inner.width() - kWindowWidth * scale.Factor) / 2;
    scale.Top = (inner.height() - kWindowHeight * scale.Factor) / 2;
    return scale;
  }

  /// Edges are rounded one by one, so that controls that touch in twips touch in pixels.
  QRect Map(const Place& at) const {
    const int left = static_cast<int>(std::lround(Left + at.Left * Factor));
    const int top = static_cast<int>(std::lround(Top + at.Top * Factor));
    const int right = static_cast<int>(std::lround(Left + (at.Left + at.Width) * Factor));
    const int bottom = static_cast<int>(std::lround(Top + (at.Top + at.Height) * Factor));
    return {left, top, right - left, bottom - top};
  }

  /// The present length of a pixel of the window's opening size.
  double Unit() const { return Factor * kTwipsPerPixel; }

  friend bool operator==(const Scale&, const Scale&) = default;
};

}  // namespace bivouac
