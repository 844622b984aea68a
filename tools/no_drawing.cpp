// The commands that draw, where the libraries for it are missing.
#include "game/error.h"
#include "tools/drawing_commands.h"
#include "walks/pack_stats.h"

namespace bivouac {
namespace {

[[noreturn]] void CannotDraw() {
  throw InputError("this bivouac-packs was built without Cairo: it cannot draw");
}

}  // namespace

ExitStatus PrintBook(const BookOptions&, const std::atomic<bool>&, Terminal&) {
  CannotDraw();
}

ExitStatus PrintPicture(const PictureOptions&, Terminal&) {
  CannotDraw();
}

ExitStatus ExplainOnPaper(const ExplainOptions&, Terminal&) {
  CannotDraw();
}

void PlotStats(const DrawingOptions&, const PackStats&) {
  CannotDraw();
}

}  // namespace bivouac
