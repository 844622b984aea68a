#include "packs/alike.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "game/game_state.h"

namespace bivouac {

std::string ViewedFromAnySide(const PackRecord& record) {
  const int size = SizeOf(record.LevelSize);
  const int last = size - 1;
  std::string smallest;
  for (int view = 0; view < 8; ++view) {
    const bool turned = (view & 1) != 0;
    const bool upsideDown = (view & 2) != 0;
    const bool mirrored = (view & 4) != 0;
    std::string text;
    const auto& rowClues = turned ? record.ColCounts : record.RowCounts;
    const auto& colClues = turned ? record.RowCounts : record.ColCounts;
    for (int i = 0; i < size; ++i) {
      text += static_cast<char>(rowClues[upsideDown ? last - i : i]);
      text += static_cast<char>(colClues[mirrored ? last - i : i]);
    }
    for (int i = 0; i < size; ++i) {
      for (int j = 0; j < size; ++j) {
        int row = upsideDown ? last - i : i;
        int col = mirrored ? last - j : j;
        if (turned) std::swap(row, col);
        text += record.Layout[row * size + col] == CELL_TREE ? 'T' : '.';
      }
    }
    if (view == 0 || text < smallest) smallest = std::move(text);
  }
  return smallest;
}

std::vector<AlikePair> AlikePuzzles(const std::vector<PackRecord>& records) {
  std::unordered_map<std::string, long> firsts;
  std::vector<AlikePair> pairs;
  long number = 0;
  for (const PackRecord& record : records) {
    ++number;
    const int size = SizeOf(record.LevelSize);
    if (!IsSize(size)) continue;
    const auto [first, isNew] = firsts.emplace(ViewedFromAnySide(record), number);
    if (!isNew) pairs.push_back({number, first->second});
  }
  return pairs;
}

}  // namespace bivouac
