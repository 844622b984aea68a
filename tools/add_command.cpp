#include <istream>
#include <ostream>

#include "game/puzzle_line.h"
#include "game/text.h"
#include "generator/given_puzzle.h"
#include "packs/pack_access.h"
#include "tools/commands.h"
#include "workbench/workbench.h"

namespace bivouac {

ExitStatus AddPuzzles(const std::string& pack, Terminal& terminal) {
  Workbench bench;
  std::vector<PackRecord> puzzles;
  long number = 0;
  for (std::string line; std::getline(terminal.In, line);) {
    ++number;
    try {
      puzzles.push_back(CompletePuzzle(bench.main, ReadPuzzleLine(line)));
      const int size = SizeOf(puzzles.front().LevelSize);
      if (bench.main.BoardSize != size) throw InputError("the line before has another size");
    } catch (const InputError& error) {
      throw InputError("standard input, line " + std::to_string(number) + ": " + error.what());
    }
  }
  if (puzzles.empty()) throw InputError("standard input has no line");
  PackAppender(pack, bench.main.BoardSize, PackAppender::Twins::Keep).Add(puzzles);
  terminal.Err << Counted(number, "puzzle") << " added to " << OnOneLine(pack) << '\n';
  return ExitStatus::Done;
}

}  // namespace bivouac
