// bivouac-guide: fills the guide's pages in and draws its pictures, when the guide is built.
//
//   bivouac-guide GUIDE OUTPUT PACK...
//
// GUIDE holds positions.tsv and the pages; OUTPUT gets the pages filled in, and the pictures.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "game/error.h"
#include "guide/guide.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

void BuildGuide(const fs::path& guide, const fs::path& output, const std::vector<std::string>& packs) {
  const std::vector<GuidePosition> positions = ReadGuidePositions(guide / "positions.tsv");
  const PackStats stats = StatsOf(packs, [] { return true; });
  fs::create_directories(output / "pictures");
  Workbench bench;
  for (const GuidePosition& position : positions) {
    const GuideHint hint = LayGuidePosition(bench.main, position);
    DrawGuideHint(bench.main, hint, output / "pictures" / position.Name);
  }
  for (const fs::directory_entry& page : fs::directory_iterator(guide)) {
    if (page.path().extension() != ".md") continue;
    std::ostringstream text;
    text << std::ifstream(page.path()).rdbuf();
    std::ofstream out(output / page.path().filename());
    out << FillGuidePage(text.str(), positions, stats);
    if (!out.flush()) throw InputError(page.path().filename().string() + ": cannot be written");
  }
}

}  // namespace
}  // namespace bivouac

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "bivouac-guide GUIDE OUTPUT PACK...\n";
    return 2;
  }
  try {
    bivouac::BuildGuide(argv[1], argv[2], {argv + 3, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << "bivouac-guide: " << error.what() << '\n';
    return 2;
  }
}
