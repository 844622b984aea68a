// What assistive tools learn of the widgets that Qt does not know by itself.
#pragma once

namespace bivouac {

/// Makes the window, the board, its cells and the labels known. Requires: made before the first of them, as
/// Qt keeps what it learnt of a widget. Any but the first in a process do nothing.
struct Accessibility {
  Accessibility();
};

}  // namespace bivouac
