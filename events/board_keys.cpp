#include "events/board_keys.h"

#include <algorithm>

namespace bivouac {
namespace {

constexpr int kPageRows = 5;

}  // namespace

int FrameAfter(int size, int cell, FrameKey key, bool control) {
  const int row = cell / size;
  const int col = cell % size;
  const int last = size - 1;
  switch (key) {
    case FrameKey::Left:
      return cell - (col > 0 ? 1 : 0);
    case FrameKey::Right:
      return cell + (col < last ? 1 : 0);
    case FrameKey::Up:
      return cell - (row > 0 ? size : 0);
    case FrameKey::Down:
      return cell + (row < last ? size : 0);
    case FrameKey::PageUp:
      return cell - std::min(row, kPageRows) * size;
    case FrameKey::PageDown:
      return cell + std::min(last - row, kPageRows) * size;
    case FrameKey::Home:
      return control ? 0 : row * size;
    case FrameKey::End:
      return control ? size * size - 1 : row * size + last;
  }
  return cell;
}

}  // namespace bivouac
