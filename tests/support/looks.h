// What a picture looks like from some steps away, kept as text: a hexadecimal digit for the darkness of each
// square of pixels. Small differences of libraries do not show in it; what stands elsewhere, or not at all,
// does.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace bivouac {

/// darknessAt(x, y) is 0 for white to 255 for black.
template <class DarknessAt>
std::string Shades(int width, int height, int square, DarknessAt darknessAt) {
  std::string shades;
  for (int top = 0; top + square <= height; top += square) {
    for (int left = 0; left + square <= width; left += square) {
      double sum = 0;
      for (int i = 0; i < square * square; ++i) sum += darknessAt(left + i % square, top + i / square);
      shades += "0123456789abcdef"[static_cast<int>(15 * std::sqrt(sum / (255.0 * square * square)))];
    }
    shades += '\n';
  }
  return shades;
}

/// Holds shades against others; a square may be a little lighter or darker, a few of them by more than
/// `most`.
inline void ExpectAlike(const std::string& seen, const std::string& kept, int most = 4) {
  ASSERT_EQ(seen.size(), kept.size());
  const auto value = [](char digit) { return digit <= '9' ? digit - '0' : digit - 'a' + 10; };
  int others = 0;
  for (std::size_t i = 0; i < seen.size(); ++i) {
    const int difference = std::abs(value(seen[i]) - value(kept[i]));
    ASSERT_LE(difference, 4) << "square " << i << " of\n" << seen;
    others += difference > most;
  }
  EXPECT_LE(others, 8) << seen;
}

/// Says where two texts begin to differ: the line, what each goes on with, and the step of a play that led
/// there.
inline void ExpectSameLines(const std::string& seen, const std::string& kept) {
  const auto [here, there] = std::mismatch(seen.begin(), seen.end(), kept.begin(), kept.end());
  if (here == seen.end() && there == kept.end()) return;
  const auto at = static_cast<std::size_t>(here - seen.begin());
  const std::size_t line = at == 0 ? 0 : seen.rfind('\n', at - 1) + 1;
  const std::size_t step = seen.rfind("\n> ", at);
  const auto rest = [&](const std::string& text) { return text.substr(std::min(line, text.size()), 400); };
  ADD_FAILURE() << "line " << 1 + std::count(seen.begin(), here, '\n') << ", after"
                << (step == seen.npos ? "" : seen.substr(step, seen.find('\n', step + 1) - step))
                << "\nseen: " << rest(seen) << "\nkept: " << rest(kept);
}

/// The text that a file keeps. With BIVOUAC_KEEP_LOOKS in the environment it becomes what was seen.
inline std::string KeptIn(const std::string& path, const std::string& seen) {
  if (std::getenv("BIVOUAC_KEEP_LOOKS") != nullptr) std::ofstream(path) << seen;
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The same of a file of tests/data/looks.
inline std::string Kept(const std::string& name, const std::string& seen) {
  return KeptIn(BIVOUAC_SOURCE_DIR "/tests/data/looks/" + name + ".txt", seen);
}

}  // namespace bivouac
