// An input, read from its front.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace bivouac {

class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  bool AtEnd() const { return rest_.empty(); }
  /// The next byte; 0 at the end.
  int Next();
  /// A number from 0 to limit - 1 out of the next byte, or the next two where one cannot tell them apart.
  /// Requires: limit 1 to 65536.
  int Below(int limit);
  /// True once in so many.
  bool Once(int inSoMany) { return Below(inSoMany) == 0; }
  /// The next bytes as they are, at most so many.
  std::string Text(int longest);

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace bivouac
