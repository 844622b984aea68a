// The random numbers of the generator.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace bivouac {

/// Blackman and Vigna's xoshiro256**: small state, fast, and good enough for millions of puzzles.
class Random {
 public:
  /// Equal seeds give equal numbers. Seeds that differ in one bit give unrelated ones.
  explicit Random(std::uint64_t seed) {
    for (std::uint64_t& word : state_) word = Mix(seed += kGoldenGap);
  }

  std::uint64_t Next() {
    const std::uint64_t result = std::rotl(state_[1] * 5, 7) * 9;
    const std::uint64_t shifted = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= shifted;
    state_[3] = std::rotl(state_[3], 45);
    return result;
  }

  /// The whole part of limit * r, r a uniform number of 32 bits with 0 <= r < 1. Requires: limit >= 1.
  int Below(int limit) { return static_cast<int>(static_cast<std::uint64_t>(limit) * (Next() >> 32) >> 32); }

  struct Pair {
    std::uint32_t First;
    std::uint32_t Second;
  };
  /// Two such whole parts from one number of 32 bits: r of the second is what the first leaves behind the
  /// point. No pair is likelier than another by more than limit * limit / 2^32. Requires: limit >= 1.
  static Pair TwoBelow(int limit, std::uint64_t bits32) {
    const auto factor = static_cast<std::uint64_t>(limit);
    const std::uint64_t product = factor * bits32;
    return {static_cast<std::uint32_t>(product >> 32),
            static_cast<std::uint32_t>(factor * (product & 0xFFFFFFFF) >> 32)};
  }

  /// The finishing step of splitmix64: spreads the bits of a number over the whole word.
  static constexpr std::uint64_t Mix(std::uint64_t word) {
    word = (word ^ (word >> 30)) * 0xBF58476D1CE4E5B9U;
    word = (word ^ (word >> 27)) * 0x94D049BB133111EBU;
    return word ^ (word >> 31);
  }
  static constexpr std::uint64_t kGoldenGap = 0x9E3779B97F4A7C15U;

 private:
  std::array<std::uint64_t, 4> state_;
};

}  // namespace bivouac
