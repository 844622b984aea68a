// What packs hold, in numbers.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "walks/solution_walk.h"

namespace bivouac {

struct PuzzleStats {
  int Level = 0;
  float Difficulty = 0;
  int Tents = 0;
  int Hints = 0;            ///< Steps of the way that hints give.
  int Seconds = 0;          ///< That they cost.
  bool Finished = false;    ///< They lead to the solution.
  std::uint64_t Cases = 0;  ///< Those needed, bit by place in HintCases().
};

/// Rates a puzzle and walks it by hints. Errors: RunTimeError if the record cannot be started. Requires: its
/// size is 6 to 18.
PuzzleStats StatsOfPuzzle(Main& main, const PackRecord& record);

/// The cases of a rule, as bits.
std::uint64_t CasesOf(const HintRule& rule);

struct PackStats {
  struct Pack {
    std::string Name;  ///< Without its folder.
    std::vector<PuzzleStats> Puzzles;
  };
  std::vector<Pack> Packs;

  /// Puzzles of a level in all packs, and those of them that need one of some cases.
  long Count(int level) const;
  long CountNeeding(int level, std::uint64_t cases) const;
};

/// Rates every puzzle and walks it by hints. `visited` is called after each; it returns false to end early.
/// Errors: InputError as PackReader, or if a record cannot be started.
PackStats StatsOf(const std::vector<std::string>& packs, const std::function<bool()>& visited);

}  // namespace bivouac
