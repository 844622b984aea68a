#include <memory>
#include <ostream>

#include "game/puzzle_line.h"
#include "game/text.h"
#include "generator/given_puzzle.h"
#include "packs/pack_access.h"
#include "tools/command_line.h"
#include "tools/input_lines.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

/// Each puzzle is solved, proved and rated first. None is added unless all are good.
ExitStatus AddPuzzles(const std::string& pack, Terminal& terminal) {
  Workbench bench;
  std::vector<PackRecord> puzzles;
  ForEachInputLine(terminal.In, [&](const std::string& line) {
    puzzles.push_back(CompletePuzzle(bench.main, ReadPuzzleLine(line)));
    const int size = SizeOf(puzzles.front().LevelSize);
    if (bench.main.BoardSize != size) throw InputError("the line before has another size");
  });
  if (puzzles.empty()) throw InputError("standard input has no line");
  PackAppender(pack, bench.main.BoardSize, PackAppender::Twins::Keep, LongPatience(terminal.Err))
      .Add(puzzles);
  terminal.Err << Counted(static_cast<long>(puzzles.size()), "puzzle") << " added to " << OnOneLine(pack)
               << '\n';
  return ExitStatus::Done;
}

}  // namespace

void AddAdd(CLI::App& app, Command& chosen) {
  const auto pack = std::make_shared<std::string>();
  CLI::App* add = app.add_subcommand("add", "Append puzzles that are given as lines of text");
  add->add_option("PACK", *pack, "The pack")->required();
  add->add_option("LINES", "Standard input, -")->required()->check(CLI::IsMember({"-"}));
  add->callback(
      [pack, &chosen] { chosen = [pack](Terminal& terminal) { return AddPuzzles(*pack, terminal); }; });
}

}  // namespace bivouac
