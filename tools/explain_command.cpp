#include <filesystem>
#include <iomanip>
#include <ostream>
#include <set>

#include "game/text.h"
#include "packs/pack_access.h"
#include "packs/puzzle_facts.h"
#include "tools/board_text.h"
#include "tools/command_line.h"
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

void WriteTable(const Way& way, Main& main, std::ostream& out) {
  const auto writeStep = [&](const std::string& number, const WayStep& step) {
    const HintRule& rule = *step.Hint.Rule;
    out << number << '\t' << rule.Name << '\t' << rule.Stage << '\t' << rule.Seconds << '\t'
        << ChangesTable(step.Changes) << '\t' << step.Hint.Text() << '\n';
  };
  int number = 0;
  for (const WayStep& step : way.Steps) {
    writeStep(std::to_string(++number), step);
    Play(main, step);
  }
  if (way.NotAStep) writeStep("!", *way.NotAStep);
  out << OutcomeOf(way.End) << '\t' << way.Tally.Steps() << '\t' << way.Tally.Seconds() << '\t'
      << DigitsOf(main) << '\n';
}

constexpr const char* kNaming = "Fields are named by row and column: r3c4.";

/// Where a way is told, passage by passage.
class Teller {
 public:
  virtual ~Teller() = default;
  virtual void Begin(const std::string& title) = 0;
  virtual void Board(const std::set<int>& marked) = 0;
  /// `hint` is the first of the passage.
  virtual void Tell(const Telling& telling, const FoundHint& hint) = 0;
  virtual void Sentence(const std::string& text) = 0;
  virtual void Sum(const WayTally& tally) = 0;
};

class Words : public Teller {
 public:
  Words(const Main& main, Terminal& terminal) : main_(main), terminal_(terminal), out_(terminal.Out) {}

  void Begin(const std::string& title) override { out_ << title << ". " << kNaming << '\n'; }
  void Board(const std::set<int>& marked) override { DrawBoard(main_, marked, terminal_); }
  void Tell(const Telling& telling, const FoundHint&) override {
    out_ << '\n' << telling.Title << "\n  " << telling.Sentence << '\n';
    for (const std::string& fact : telling.Facts) out_ << "  " << fact << '\n';
    if (!telling.Changes.empty()) out_ << "  so: " << telling.Changes << '\n';
  }
  void Sentence(const std::string& text) override { out_ << '\n' << text << '\n'; }
  void Sum(const WayTally& tally) override {
    out_ << '\n';
    for (const HintRule& rule : HintRules()) {
      const int times = tally.TimesOf(rule);
      if (times == 0) continue;
      out_ << std::setw(5) << times << "  " << std::left << std::setw(34) << rule.Title << std::right
           << std::setw(5) << times * rule.Seconds << " seconds\n";
    }
    out_ << SumText(tally) << '\n';
  }

 private:
  const Main& main_;
  Terminal& terminal_;
  std::ostream& out_;
};

/// A page for a browser, whose steps lead to their rules in the guide.
class HtmlPage : public Teller {
 public:
  HtmlPage(const Main& main, Terminal& terminal) : main_(main), terminal_(terminal), out_(terminal.Out) {
    // The guide lies where it was installed, or beside the program.
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const auto& folder : {program / BIVOUAC_GUIDE_FROM_PROGRAM, program / "guide"}) {
      if (guide_.empty() && std::filesystem::exists(folder / "index.html", error))
        guide_ = "file://" + folder.lexically_normal().string() + '/';
    }
  }

  void Begin(const std::string& title) override {
    out_ << "<!DOCTYPE html>\n<html lang=\"en\">\n<head><meta charset=\"utf-8\"><meta name=\"viewport\" "
            "content=\"width=device-width\"><title>"
         << Escaped(title)
         << "</title>\n<style>body { max-width: 44em; margin: 1em auto; padding: 0 1em; font-family: "
            "sans-serif; line-height: 1.4 } pre { line-height: 1.2; overflow-x: auto }</style></head>\n"
            "<body>\n<h1>"
         << Escaped(title) << "</h1>\n";
    Sentence(kNaming);
  }
  void Board(const std::set<int>& marked) override {
    out_ << "<pre>\n";
    Terminal plain{.In = terminal_.In, .Out = out_, .Err = terminal_.Err};
    DrawBoard(main_, marked, plain);
    out_ << "</pre>\n";
  }
  void Tell(const Telling& telling, const FoundHint& hint) override {
    const std::string place = Escaped(guide_ + GuidePlaceOf(HintCases()[PlaceOf(hint)]));
    out_ << "<h2><a href=\"" << place << "\">" << Escaped(telling.Title) << "</a></h2>\n<p>"
         << Escaped(telling.Sentence) << "</p>\n<ul>\n";
    for (const std::string& fact : telling.Facts) out_ << "<li>" << Escaped(fact) << "</li>\n";
    out_ << "</ul>\n<p>So: " << Escaped(telling.Changes) << "</p>\n";
  }
  void Sentence(const std::string& text) override { out_ << "<p>" << Escaped(text) << "</p>\n"; }
  void Sum(const WayTally& tally) override { out_ << "<p>" << SumText(tally) << "</p>\n</body>\n</html>\n"; }

 private:
  static std::string Escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
      if (c == '&' || c == '<' || c == '"')
        out += c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&quot;";
      else
        out += c;
    }
    return out;
  }

  const Main& main_;
  Terminal& terminal_;
  std::ostream& out_;
  std::string guide_;
};

/// The fields that explain a hint and those that it decides.
std::set<int> Touched(const FoundHint& hint, const Main& main) {
  std::set<int> cells;
  for (const FoundField& field : hint.Found.Fields) {
    if (field.Cell >= 0 && field.Cell < main.CellCount) cells.insert(field.Cell);
  }
  return cells;
}

/// With the board at the start and after the first step of each later stage, or after every passage.
void TellWay(const Way& way, Main& main, Detail detail, bool everyBoard, Teller& teller) {
  teller.Board({});
  int stage = 1;
  for (const Passage& passage : PassagesOf(way, detail)) {
    const FoundHint& hint = way.Steps[passage.First].Hint;
    teller.Tell(Tell(main, way, passage), hint);
    for (std::size_t i = passage.First; i <= passage.Last; ++i) Play(main, way.Steps[i]);
    if (everyBoard || hint.Rule->Stage > stage) teller.Board(Touched(hint, main));
    stage = std::max(stage, hint.Rule->Stage);
  }
  if (way.NotAStep) teller.Tell(TellNotAStep(main, *way.NotAStep), way.NotAStep->Hint);
  if (way.End != SolutionWalk::End::Solved) {
    teller.Sentence(WordsOf(way.End));
    teller.Board({});
  }
  teller.Sum(way.Tally);
}

ExitStatus ExplainPuzzle(const ExplainOptions& options, Terminal& terminal) {
  if (!options.Drawing.Output.empty()) return ExplainOnPaper(options, terminal);
  Workbench bench;
  Main& main = bench.main;
  const PackRecord record = StartPuzzleOn(bench, options.Pack, options.Number, {"--from", options.From});
  const Way way = WayFrom(main);
  if (options.Output == Format::Table) {
    WriteTable(way, main, terminal.Out);
    return ExitStatus::Done;
  }
  Workbench other;
  Words words(main, terminal);
  HtmlPage page(main, terminal);
  Teller& teller = options.Html ? static_cast<Teller&>(page) : words;
  teller.Begin(OnOneLine(FileName(options.Pack)) + ' ' + std::to_string(options.Number) + ", " +
               FactsText(FactsOf(other.main, record)));
  TellWay(way, main, options.Long ? Detail::EveryStep : Detail::TentsWithGrass,
          terminal.Colour || options.Html, teller);
  return ExitStatus::Done;
}

}  // namespace

void AddExplain(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<ExplainOptions>();
  CLI::App* explain = app.add_subcommand("explain", "The way to the solution as the hints give it");
  explain->add_option("PACK", options->Pack, "The pack")->required();
  explain->add_option("NUMBER", options->Number, "The puzzle, counted from 1")->required();
  explain->add_option("--from", options->From, "Digits of the position to begin with");
  CLI::Option* table = AddTableFlag(*explain, options->Output);
  CLI::Option* html = explain->add_flag("--html", options->Html, "Write a page that leads to the guide's");
  explain->add_flag("--long", options->Long, "Every step by itself")->excludes(table);
  AddDrawingOptions(*explain, options->Drawing);
  CLI::Option* output = explain->get_option("--output");
  AddPaperOption(*explain, options->Paper)->needs(output);
  table->excludes(output)->excludes(html);
  html->excludes(output);
  explain->callback([options, explain, &chosen] {
    RefuseEmpty(*explain, "--from", "no digits");
    RefuseEmpty(*explain, "--output", "no name");
    chosen = [options](Terminal& terminal) { return ExplainPuzzle(*options, terminal); };
  });
}

}  // namespace bivouac
