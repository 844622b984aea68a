// The two records that reach the disk, as they stand in memory. All fields have 16 bits there.
#pragma once

#include <cstdint>

#include "game/array.h"

namespace bivouac {

inline constexpr int kMinSize = 6;     ///< Lines of the smallest board.
inline constexpr int kMaxSize = 18;    ///< Lines of the largest board.
inline constexpr int kSizes = 13;      ///< Sizes from the smallest to the largest.
inline constexpr int kMaxCells = 324;  ///< Cells of the largest board.

/// A puzzle of a pack. The arrays use the stride of the puzzle's own size: cell (row, column) of a board of N
/// lines is entry row * N + column; entries that the size does not need are 0.
struct PackRecord {
  FixedArray<std::int16_t, kMaxCells>
      TentDirs;  ///< At a tree the direction of its tent; elsewhere meaningless.
  FixedArray<std::int16_t, kMaxCells> Layout;    ///< The finished board.
  FixedArray<std::int16_t, kMaxSize> RowCounts;  ///< Tents that each row needs.
  FixedArray<std::int16_t, kMaxSize> ColCounts;
  std::int16_t LevelSize = 0;    ///< Level * 32 + size; see LevelOf and SizeOf.
  std::int16_t BestMinutes = 0;  ///< Best time; 0:00 when there is none.
  std::int16_t BestSeconds = 0;
  std::int16_t BestPlayer = 0;  ///< Number of the player who holds it.

  friend bool operator==(const PackRecord&, const PackRecord&) = default;
};

/// One player's own time for one puzzle.
struct PersonalRecord {
  std::int16_t PersonalPuzzle = 0;     ///< Number of the puzzle in its pack.
  std::int16_t PersonalLevelSize = 0;  ///< As in the pack; only the size is ever compared.
  std::int16_t PersonalMinutes = 0;    ///< 0:00 when there is no time.
  std::int16_t PersonalSeconds = 0;

  friend bool operator==(const PersonalRecord&, const PersonalRecord&) = default;
};

constexpr bool IsSize(int size) {
  return size >= kMinSize && size <= kMaxSize;
}
/// The level in a LevelSize, rounded down: -26 gives -1.
constexpr int LevelOf(int levelSize) {
  return levelSize >> 5;
}
/// The size in a LevelSize: its low five bits, also below zero.
constexpr int SizeOf(int levelSize) {
  return levelSize & 31;
}
/// Requires: level -1..5, size 6..18.
constexpr std::int16_t LevelSizeOf(int level, int size) {
  return static_cast<std::int16_t>(level * 32 + size);
}

}  // namespace bivouac
