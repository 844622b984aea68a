// What a printer and a reader aloud ask of a PDF beyond what was drawn.
#pragma once

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace bivouac {

/// Writes a drawn PDF anew: every thing that a page uses named once, its language, its title for the window,
/// and a text for each of its figures in their order. The same input gives the same bytes. Errors:
/// InputError.
void FinishPdf(std::FILE* drawn, const std::vector<std::string>& figures,
               const std::function<void(const unsigned char*, std::size_t)>& write);

}  // namespace bivouac
