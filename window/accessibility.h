// What assistive tools learn of the widgets that Qt does not know by itself.
#pragma once

namespace bivouac {

/// Makes the board, its cells and the labels known. Call before the first of them is made: Qt keeps what it
/// learnt of a widget. Calls after the first do nothing.
void InstallAccessibility();

}  // namespace bivouac
