// The four sides of many fields at once, as bits.
#pragma once

#include <cstdint>

namespace bivouac {

/// Which fields of a row have something north, east, south and west of them: a bit a field.
struct Sides {
  std::uint32_t North;
  std::uint32_t East;
  std::uint32_t South;
  std::uint32_t West;

  std::uint32_t Any() const { return North | East | South | West; }
  std::uint32_t AtLeastTwo() const {
    return (North & South) | (East & West) | ((North | South) & (East | West));
  }
  std::uint32_t MoreThanTwo() const {
    return (North & South & (East | West)) | (East & West & (North | South));
  }
  std::uint32_t ExactlyOne() const { return Any() & ~AtLeastTwo(); }
  std::uint32_t ExactlyTwo() const { return AtLeastTwo() & ~MoreThanTwo(); }
};

}  // namespace bivouac
