// Standard input, a line after the other.
#pragma once

#include <array>
#include <istream>
#include <string>

#include "game/error.h"

namespace bivouac {

/// Calls visit(line) for each line. Returns how many there were. Errors: InputError with the number of the
/// line, for what `visit` refuses, a line that is too long, and an input that cannot be read.
template <class Visit>
long ForEachInputLine(std::istream& in, Visit visit) {
  constexpr std::size_t kLongest = 8192;  // A position of size 18 takes some 750.
  std::array<char, kLongest> line;
  long number = 0;
  try {
    for (++number; in.getline(line.data(), line.size()); ++number)
      visit(std::string(line.data(), static_cast<std::size_t>(in.gcount()) - (in.eof() ? 0 : 1)));
    if (!in.eof()) throw InputError(in.bad() ? "it cannot be read" : "it is too long");
  } catch (const InputError& error) {
    throw InputError("standard input, line " + std::to_string(number) + ": " + error.what());
  }
  return number - 1;
}

}  // namespace bivouac
