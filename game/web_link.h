// The link to the maker's web site.
#pragma once

#include "game/game_state.h"

namespace bivouac {

/// The action of Label2 and Label3: opens the web site in the system's browser, with a box if that fails.
/// Errors: a file error if DataDir cannot be written.
void Label2_Click(Main& main);
void Label3_Click(Main& main);

}  // namespace bivouac
