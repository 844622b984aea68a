// Where a command of bivouac-packs reads and writes, and what it comes to.
#pragma once

#include <iosfwd>

namespace bivouac {

struct Terminal {
  std::istream& In;
  std::ostream& Out;
  std::ostream& Err;
  bool Colour = false;    ///< Out understands colours.
  bool Progress = false;  ///< Err is watched by a person.
};

enum class ExitStatus { Done = 0, FaultsFound = 1, BadInput = 2, Interrupted = 130 };

enum class Format {
  Words,
  Table,  ///< Tab-separated, no header, one record a line.
};

}  // namespace bivouac
