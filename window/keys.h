// Keys that do the same wherever they are pressed.
#pragma once

#include <Qt>

namespace bivouac {

/// Enter, on either part of the keyboard. Takes a Qt::Key.
constexpr bool IsEnter(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

/// Clicks what has the focus.
constexpr bool IsPressKey(int key) {
  return IsEnter(key) || key == Qt::Key_Space;
}

}  // namespace bivouac
