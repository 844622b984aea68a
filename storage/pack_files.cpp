#include "storage/pack_files.h"

#include "game/text.h"
#include "storage/platform_files.h"
#include "storage/record_file.h"
#include "storage/status_panels.h"

namespace bivouac {
namespace {

std::string NameWithExtension(int size, const char* extension) {
  return "BVPack" + TwoDigits(size) + extension;
}

}  // namespace

std::string PackName(int size) {
  return NameWithExtension(size, ".bvq");
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
    const std::string leftOver = main.global.DataDir + NameWithExtension(size, ".bvp");
    if (FileExists(leftOver)) DeleteWholeFile(leftOver);
  }
  ShowTotal(main);
}

void ShowFileError(Main& main, const char* text) {
  main.desktop.Show(MessageBox{.Title = "File Error", .Text = text, .Symbol = BoxSymbol::Warning});
}

}  // namespace bivouac
