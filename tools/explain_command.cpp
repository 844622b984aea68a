#include <iomanip>
#include <ostream>
#include <set>

#include "game/text.h"
#include "packs/pack_access.h"
#include "packs/puzzle_facts.h"
#include "tools/board_text.h"
#include "tools/drawing_commands.h"
#include "walks/explanation.h"
#include "workbench/position.h"

namespace bivouac {
namespace {

/// The last column of the table's last row.
const char* OutcomeOf(SolutionWalk::End end) {
  switch (end) {
    case SolutionWalk::End::Solved:
      return "SOLVED";
    case SolutionWalk::End::Fault:
      return "FAULT";
    case SolutionWalk::End::WrongHint:
      return "WRONG";
    case SolutionWalk::End::WrongFields:
      return "WRONGFIELDS";
    default:
      return "NONE";
  }
}

std::string ChangesTable(const std::vector<FieldChange>& changes) {
  std::string text;
  for (const FieldChange& change : changes) {
    if (!text.empty()) text += ',';
    text += std::to_string(change.Cell) + ':' + std::to_string(change.Code);
  }
  return text.empty() ? "-" : text;
}

void WriteTable(SolutionWalk& walk, const Main& main, Terminal& terminal) {
  WayTally tally;
  const auto writeStep = [&](const std::string& number) {
    const FoundHint& hint = walk.Hint();
    terminal.Out << number << '\t' << hint.Rule->Name << '\t' << hint.Rule->Stage << '\t'
                 << hint.Rule->Seconds << '\t' << ChangesTable(walk.Changes()) << '\t' << hint.Text() << '\n';
  };
  while (walk.Next()) {
    tally.Add(*walk.Hint().Rule);
    writeStep(std::to_string(tally.Steps()));
  }
  if (walk.Ended() == SolutionWalk::End::WrongHint || walk.Ended() == SolutionWalk::End::NothingNew)
    writeStep("!");
  terminal.Out << OutcomeOf(walk.Ended()) << '\t' << tally.Steps() << '\t' << tally.Seconds() << '\t'
               << DigitsOf(main) << '\n';
}

/// What stands out on the board after a step: the fields that explain it and those that it decided.
std::set<int> Touched(const FoundHint& hint, const Main& main) {
  std::set<int> cells;
  for (const FoundField& field : hint.Found.Fields) {
    if (field.Cell >= 0 && field.Cell < main.CellCount) cells.insert(field.Cell);
  }
  return cells;
}

void WriteWords(SolutionWalk& walk, const Main& main, Terminal& terminal) {
  std::ostream& out = terminal.Out;
  WayTally tally;
  const auto writeStep = [&](const std::string& title) {
    const FoundHint& hint = walk.Hint();
    out << '\n'
        << title << ": " << hint.Rule->Title << ", " << Counted(hint.Rule->Seconds, "second") << "\n  "
        << SentenceOf(hint) << '\n';
    for (const std::string& fact : walk.Facts()) out << "  " << fact << '\n';
    if (!walk.Changes().empty()) out << "  so: " << ChangesText(main, walk.Changes()) << '\n';
    if (terminal.Colour) DrawBoard(main, Touched(hint, main), terminal);
  };
  while (walk.Next()) {
    tally.Add(*walk.Hint().Rule);
    writeStep("Step " + std::to_string(tally.Steps()));
  }
  out << '\n';
  if (walk.Ended() != SolutionWalk::End::Solved) {
    if (walk.Ended() == SolutionWalk::End::WrongHint || walk.Ended() == SolutionWalk::End::NothingNew) {
      writeStep("Not a step");
      out << '\n';
    }
    out << WordsOf(walk.Ended()) << '\n';
    DrawBoard(main, {}, terminal);
    out << '\n';
  }
  for (const HintRule& rule : HintRules()) {
    const int times = tally.TimesOf(rule);
    if (times == 0) continue;
    out << std::setw(5) << times << "  " << std::left << std::setw(34) << rule.Title << std::right
        << std::setw(5) << times * rule.Seconds << " seconds\n";
  }
  out << SumText(tally) << '\n';
}

}  // namespace

ExitStatus ExplainPuzzle(const ExplainOptions& options, Terminal& terminal) {
  if (!options.Drawing.Output.empty()) return ExplainOnPaper(options, terminal);
  Workbench bench;
  const PackRecord record = StartPuzzleOn(bench, options.Pack, options.Number, {"--from", options.From});
  SolutionWalk walk(bench.main, SolutionWalk::Telling::StepsWithFacts);
  if (options.Output == Format::Table) {
    WriteTable(walk, bench.main, terminal);
    return ExitStatus::Done;
  }
  Workbench other;
  terminal.Out << FileName(options.Pack) << ' ' << options.Number << ", "
               << FactsText(FactsOf(other.main, record)) << ". Fields are named by row and column: r3c4.\n";
  if (terminal.Colour) DrawBoard(bench.main, {}, terminal);
  WriteWords(walk, bench.main, terminal);
  return ExitStatus::Done;
}

}  // namespace bivouac
