// bivouac-guide: fills the guide's pages in and draws its pictures, when the guide is built.
//
//   bivouac-guide GUIDE OUTPUT PACK...
//
// GUIDE holds positions.tsv and the pages; OUTPUT gets the pages filled in, and the pictures.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

#include "game/error.h"
#include "guide/guide.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

void BuildGuide(const fs::path& guide, const fs::path& output, const std::vector<std::string>& packs) {
  const GuideSources sources{ReadGuidePositions(guide / "positions.tsv"),
                             ReadGuidePositions(guide / "exercises.tsv"), packs,
                             StatsOf(packs, [] { return true; })};
  const fs::path pictures = output / "pictures";
  fs::create_directories(pictures);
  Workbench bench;
  for (const GuidePosition& position : sources.Positions)
    DrawGuideHint(bench.main, LayGuidePosition(bench.main, position), pictures / position.Name);
  std::map<int, int> numbers;  // Of the exercises, by stage.
  for (const GuidePosition& exercise : sources.Exercises) {
    const GuideHint hint = LayGuidePosition(bench.main, exercise);
    const int stage = hint.Hint.Rule->Stage;
    DrawExercise(bench.main, hint, pictures / ExerciseName(stage, ++numbers[stage]));
  }
  for (const std::string& puzzle : kWorkedPuzzles) {
    const Way way = WorkedWay(bench, packs, puzzle);
    DrawWorked(bench, way, pictures / WorkedName(puzzle));
  }
  for (const fs::directory_entry& page : fs::directory_iterator(guide)) {
    if (page.path().extension() != ".md") continue;
    std::ostringstream text;
    text << std::ifstream(page.path()).rdbuf();
    std::ofstream out(output / page.path().filename());
    out << FillGuidePage(text.str(), sources);
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
