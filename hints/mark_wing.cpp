#include "hints/mark_wing.h"

#include <algorithm>
#include <array>
#include <span>

#include "game/blinking.h"

namespace bivouac {
namespace {

constexpr int kHighlightedField = 4;
constexpr int kHighlightedTree = 7;

/// Rows down and columns right from the centre tree.
struct Offset {
  int Rows;
  int Cols;

  friend constexpr bool operator==(const Offset&, const Offset&) = default;
};

constexpr Offset kCentre{0, 0};

/// One formation: its wing trees, and the fields it claims by the number of open neighbours of A and B. In
/// each list the last four are the free sides of the centre and the fields next to them.
struct Formation {
  std::array<Offset, 2> Trees;
  std::array<Offset, 7> A3B3;
  std::array<Offset, 4> A2B2;
  std::array<Offset, 6> A2B3;
  std::array<Offset, 6> A3B2;
};

// clang-format off
constexpr auto kFormations = std::to_array<Formation>({
    {{{{-1, 0}, {0, -1}}},
     {{{-2, 0}, {-1, -1}, {0, -2}, {-1, 1}, {0, 1}, {1, -1}, {1, 0}}},
     {{                            {-1, 1}, {0, 1}, {1, -1}, {1, 0}}},
     {{         {-1, -1}, {0, -2}, {-1, 1}, {0, 1}, {1, -1}, {1, 0}}},
     {{{-2, 0}, {-1, -1},          {-1, 1}, {0, 1}, {1, -1}, {1, 0}}}},
    {{{{-1, 0}, {0, 1}}},
     {{{-2, 0}, {-1, 1}, {0, 2}, {-1, -1}, {0, -1}, {1, 0}, {1, 1}}},
     {{                          {-1, -1}, {0, -1}, {1, 0}, {1, 1}}},
     {{         {-1, 1}, {0, 2}, {-1, -1}, {0, -1}, {1, 0}, {1, 1}}},
     {{{-2, 0}, {-1, 1},         {-1, -1}, {0, -1}, {1, 0}, {1, 1}}}},
    {{{{0, -1}, {1, 0}}},
     {{{0, -2}, {1, -1}, {2, 0}, {-1, -1}, {-1, 0}, {0, 1}, {1, 1}}},
     {{                          {-1, -1}, {-1, 0}, {0, 1}, {1, 1}}},
     {{         {1, -1}, {2, 0}, {-1, -1}, {-1, 0}, {0, 1}, {1, 1}}},
     {{{0, -2}, {1, -1},         {-1, -1}, {-1, 0}, {0, 1}, {1, 1}}}},
    {{{{0, 1}, {1, 0}}},
     {{{0, 2}, {1, 1}, {2, 0}, {-1, 0}, {-1, 1}, {0, -1}, {1, -1}}},
     {{                        {-1, 0}, {-1, 1}, {0, -1}, {1, -1}}},
     {{        {1, 1}, {2, 0}, {-1, 0}, {-1, 1}, {0, -1}, {1, -1}}},
     {{{0, 2}, {1, 1},         {-1, 0}, {-1, 1}, {0, -1}, {1, -1}}}},
});
// clang-format on

/// A list with fewer fields than its length would end in the centre itself.
constexpr bool ListsAreFull() {
  return std::ranges::all_of(kFormations, [](const Formation& formation) {
    return formation.A3B3.back() != kCentre && formation.A2B2.back() != kCentre &&
           formation.A2B3.back() != kCentre && formation.A3B2.back() != kCentre;
  });
}
static_assert(kFormations.size() == 4 && ListsAreFull());

std::span<const Offset> ClaimedFields(const Formation& formation, const Wing& wing) {
  if (wing.OpenA + wing.OpenB == 6) return formation.A3B3;
  if (wing.OpenA + wing.OpenB == 4) return formation.A2B2;
  if (wing.OpenA == 2) return formation.A2B3;
  if (wing.OpenB == 2) return formation.A3B2;
  return {};
}

}  // namespace

void MarkWing(Main& main, const Wing& wing) {
  const Formation& formation = kFormations[static_cast<std::size_t>(wing.Formation - 1)];
  const auto mark = [&](Offset offset, int tile) {
    AddBlink(main, wing.Centre + offset.Rows * main.BoardSize + offset.Cols, tile);
  };
  mark(kCentre, kHighlightedTree);
  for (const Offset& tree : formation.Trees) mark(tree, kHighlightedTree);
  // This formation alone shows the field two north of the centre in any case.
  if (wing.Formation == 2) mark({-2, 0}, kHighlightedField);
  for (const Offset& field : ClaimedFields(formation, wing)) mark(field, kHighlightedField);
}

}  // namespace bivouac
