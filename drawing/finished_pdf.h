// What a printer and a reader aloud ask of a PDF beyond what was drawn.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "storage/replacement.h"

namespace bivouac {

/// Writes a drawn PDF anew: every thing that a page uses named once, its language, its title for the window,
/// and a text for each of its figures in their order. The same input gives the same bytes. Errors:
/// InputError.
void FinishPdf(std::FILE* drawn, const std::vector<std::string>& figures, Replacement& to);

}  // namespace bivouac
