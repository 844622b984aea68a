// Puzzles made on all cores, in an order that does not depend on how many there are.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>

#include "game/records.h"

namespace bivouac {

struct MakeRequest {
  int Size = 12;
  std::uint64_t Seed = 0;
  int Jobs = 1;  ///< Threads, at least 1.
};

/// Makes puzzles as "New" makes them and hands them to `take`, one after the other on the calling thread,
/// until it returns false or `stop` becomes true. Puzzle i of a seed is always the same. `wait`, if set, is
/// called a few times a second.
void MakePuzzles(const MakeRequest& request, const std::atomic<bool>& stop,
                 const std::function<bool(const PackRecord&)>& take, const std::function<void()>& wait = {});

}  // namespace bivouac
