#include <charconv>
#include <iomanip>
#include <istream>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <sstream>

#include "game/puzzle_line.h"
#include "game/sound.h"
#include "hints/evidence.h"
#include "hints/hints.h"
#include "packs/pack_access.h"
#include "packs/pack_reader.h"
#include "tools/board_text.h"
#include "tools/command_line.h"
#include "tools/input_lines.h"
#include "walks/explanation.h"
#include "walks/solution_walk.h"
#include "workbench/position.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

struct ShowOptions {
  std::string Pack;
  long Number = 1;
  bool Solution = false;
  bool Line = false;
};

struct HintOptions {
  std::string Pack{};
  long Number = 1;
  std::string Board{};  ///< Digits of the position; empty for the start of the puzzle.
  Format Output = Format::Words;
};

struct Hint {
  const char* Outcome = "FAULT";  // FIND, WRONG, NONE or FAULT.
  int Seconds = 0;
  int PlayedSound = -1;                    // -1: none.
  std::vector<std::pair<int, int>> Marks;  // Cell and tile.
  std::string Text;
};

/// Asks for a hint on the board of the bench. Seconds and sound are those up to the first question.
Hint AskForHint(Workbench& bench, WrongFields wrongFields) {
  Main& main = bench.main;
  main.BoardLive = true;
  main.Paused = false;
  main.PuzzleOver = false;
  main.Elapsed = 0;
  main.BlinkTop = -1;
  main.lblHint.Caption.clear();
  bench.desktop.LastSound = -1;
  std::optional<int> chargedFirst;
  bench.desktop.OnQuestion = [&] {
    if (!chargedFirst) chargedFirst = main.Elapsed;
  };
  Hint hint;
  try {
    if (wrongFields == WrongFields::Look) {
      cmdHint_Click(main);
    } else {
      HintBasic(main);
    }
  } catch (const RunTimeError&) {
    return hint;
  }
  hint.Outcome = chargedFirst ? "WRONG" : main.BlinkTop == -1 ? "NONE" : "FIND";
  hint.Seconds = chargedFirst.value_or(main.Elapsed);
  hint.PlayedSound = bench.desktop.LastSound;
  for (int i = 0; i <= main.BlinkTop; ++i) hint.Marks.emplace_back(main.BlinkCell[i], main.BlinkTile[i]);
  hint.Text = main.lblHint.Caption;
  return hint;
}

std::string OrDash(const std::string& text) {
  return text.empty() ? "-" : text;
}

std::string MarksText(const Hint& hint) {
  std::string text;
  for (const auto& [cell, tile] : hint.Marks) {
    if (!text.empty()) text += ',';
    text += std::to_string(cell) + ':' + std::to_string(tile);
  }
  return text;
}

void WriteHintRow(std::ostream& out, const Hint& hint) {
  out << hint.Outcome << '\t';
  if (hint.Outcome == std::string_view("FAULT")) {
    out << "-\t-\t-\t-\n";
    return;
  }
  out << hint.Seconds << '\t' << (hint.PlayedSound < 0 ? "-" : std::to_string(hint.PlayedSound)) << '\t'
      << OrDash(MarksText(hint)) << '\t' << OrDash(hint.Text) << '\n';
}

void WriteHintInWords(const Main& main, const Hint& hint, Terminal& terminal) {
  std::set<int> marked;
  for (const auto& [cell, tile] : hint.Marks) marked.insert(cell);
  DrawBoard(main, marked, terminal);
  if (hint.Outcome == std::string_view("FAULT")) {
    terminal.Out << "The search for a hint reads outside the board.\n";
    return;
  }
  terminal.Out << hint.Text << '\n';
  if (hint.Seconds > 0) terminal.Out << hint.Seconds << " seconds\n";
  if (const HintCase* which = HintCaseOf(hint.Text)) {
    for (const std::string& fact : EvidenceOf(main, FindHint(main).value())) terminal.Out << fact << '\n';
    terminal.Out << which->Rule->Title << ", " << GuidePlaceOf(*which) << " of the guide\n";
  }
}

ExitStatus ShowPuzzle(const ShowOptions& options, Terminal& terminal) {
  const PackRecord record = PackReader(options.Pack).Read(options.Number);
  if (options.Line) {
    terminal.Out << PuzzleLineOf(record) << '\n';
    return ExitStatus::Done;
  }
  Workbench bench;
  LayOutRecord(bench.main, record);
  if (!options.Solution) {
    for (int cell = 0; cell < bench.main.CellCount; ++cell) {
      int& code = bench.main.Board[cell];
      if (code != CELL_TREE) code = CELL_OPEN;
    }
  }
  terminal.Out << FileName(options.Pack) << ' ' << options.Number << ", " << bench.main.BoardSize << 'x'
               << bench.main.BoardSize << ", level " << LevelOf(record.LevelSize) << '\n';
  DrawBoard(bench.main, {}, terminal);
  return ExitStatus::Done;
}

ExitStatus GiveHint(const HintOptions& options, Terminal& terminal) {
  Workbench bench;
  StartPuzzleOn(bench, options.Pack, options.Number, {"--board", options.Board});
  const Hint hint = AskForHint(bench, WrongFields::Look);
  if (options.Output == Format::Table) {
    WriteHintRow(terminal.Out, hint);
  } else {
    WriteHintInWords(bench.main, hint, terminal);
  }
  return ExitStatus::Done;
}

/// Reads positions from the terminal's input, one a line, and writes a table.
ExitStatus GiveHintsForInput(Terminal& terminal) {
  Workbench bench;
  ForEachInputLine(terminal.In, [&](const std::string& line) {
    const WrongFields wrongFields = LayPosition(bench.main, line);
    WriteHintRow(terminal.Out, AskForHint(bench, wrongFields));
  });
  return ExitStatus::Done;
}

}  // namespace

void AddShow(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<ShowOptions>();
  CLI::App* show = app.add_subcommand("show", "A board with its clues");
  show->add_option("PACK", options->Pack, "The pack")->required();
  show->add_option("NUMBER", options->Number, "The puzzle, counted from 1")->required();
  CLI::Option* solution = show->add_flag("--solution", options->Solution, "Show tents and grass too");
  show->add_flag("--line", options->Line, "The puzzle as a line of text, for add")->excludes(solution);
  show->callback([options, &chosen] {
    chosen = [options](Terminal& terminal) { return ShowPuzzle(*options, terminal); };
  });
}

void AddHint(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<HintOptions>();
  CLI::App* hint = app.add_subcommand("hint", "The next hint for a position, as the game gives it");
  hint->add_option("PACK", options->Pack, "The pack; - reads positions from standard input")->required();
  CLI::Option* number = hint->add_option("NUMBER", options->Number, "The puzzle, counted from 1");
  CLI::Option* board = hint->add_option("--board", options->Board, "The position, a digit a cell");
  AddTableFlag(*hint, options->Output);
  hint->callback([options, number, board, &chosen] {
    if (options->Pack == "-") {
      if (options->Output != Format::Table)
        throw CLI::ValidationError("-", "positions from standard input need --tsv");
      if (number->count() + board->count() != 0)
        throw CLI::ValidationError("-", "standard input takes no NUMBER and no --board");
      chosen = GiveHintsForInput;
      return;
    }
    if (number->count() == 0) throw CLI::RequiredError("NUMBER");
    if (board->count() != 0 && options->Board.empty()) throw CLI::ValidationError("--board", "no digits");
    chosen = [options](Terminal& terminal) { return GiveHint(*options, terminal); };
  });
}

}  // namespace bivouac
