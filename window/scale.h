// Places in the window as the toolkit wants them.
#pragma once

#include <QRect>

#include "events/places.h"

namespace bivouac {

inline QRect RectOf(const PixelRect& at) {
  return {at.Left, at.Top, at.Width, at.Height};
}

}  // namespace bivouac
