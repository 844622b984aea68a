// What assistive tools learn of the widgets that Qt does not know by itself.
#pragma once

namespace bivouac {

/// Makes the board, its cells and the labels that take clicks known. Call once, after the application is
/// made.
void InstallAccessibility();

}  // namespace bivouac
