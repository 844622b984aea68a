#include "storage/pack_files.h"

#include "game/text.h"
#include "storage/platform_files.h"
#include "storage/record_file.h"
#include "storage/status_panels.h"

namespace bivouac {

std::string PackName(int size) {
  return "BVPack" + TwoDigits(size) + ".bvq";
}

std::string PackPath(const Global& global, int size) {
  return global.DataDir + PackName(size);
}

int PackCount(const Global& global, int size) {
  return static_cast<int>(CountRecords<PackRecord>(PackPath(global, size)).Rounded);
}

void CountPacks(Main& main) {
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    main.PuzzleCount[size - kMinSize] = PackCount(main.global, size);
    std::string leftOver = PackPath(main.global, size);
    leftOver.back() = 'p';
    if (FileExists(leftOver)) DeleteWholeFile(leftOver);
  }
  ShowTotal(main);
}

void ShowFileError(Main& main, const char* text) {
  main.desktop.Show(MessageBox{.Title = "File Error", .Text = text, .Symbol = BoxSymbol::Warning});
}

}  // namespace bivouac
