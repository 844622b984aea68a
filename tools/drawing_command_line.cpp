#include <charconv>
#include <fstream>
#include <memory>

#include "tools/command_line.h"
#include "tools/drawing_commands.h"

namespace bivouac {
namespace {

/// "3" or "1-20,35". Errors: CLI::ValidationError.
std::vector<NumberRange> ReadNumbers(const std::string& text) {
  const auto fail = [&] {
    throw CLI::ValidationError("--numbers", "'" + text + "' is not numbers such as 1-20,35");
  };
  std::vector<NumberRange> ranges;
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto read = [&] {
    long number = 0;
    const auto [next, error] = std::from_chars(at, end, number);
    if (error != std::errc() || number < 1) fail();
    at = next;
    return number;
  };
  while (true) {
    NumberRange range;
    range.First = range.Last = read();
    if (at != end && *at == '-') {
      ++at;
      range.Last = read();
      if (range.Last < range.First) fail();
    }
    ranges.push_back(range);
    if (at == end) return ranges;
    if (*at++ != ',') fail();
  }
}

/// The number of one puzzle: digits that name no file.
bool IsNumber(const std::string& text) {
  return !text.empty() && text.size() < 10 && text.find_first_not_of("0123456789") == std::string::npos &&
         !std::ifstream(text).good();
}

void AddDrawingOptions(CLI::App& command, DrawingOptions& options) {
  command.add_option("-o,--output", options.Output, "The file to write; its ending says what it becomes");
  command.add_flag("--colour", options.Colour, "The colours of the window instead of ink");
  command.add_flag("--force", options.Force, "Overwrite the file");
}

/// An option that is given with nothing is no option left out. Errors: CLI::ValidationError.
void RefuseEmpty(const CLI::App& command, const char* name, const char* words) {
  const CLI::Option* option = command.get_option(name);
  if (option->count() != 0 && option->results().front().empty()) throw CLI::ValidationError(name, words);
}

void AddPrint(CLI::App& app, Command& chosen) {
  struct Input {
    BookOptions Book;
    PictureOptions Picture;
    std::string Numbers;
    std::string Levels;
    std::string Solutions = "back";
  };
  const auto input = std::make_shared<Input>();
  CLI::App* print = app.add_subcommand("print", "A book of puzzles, or a picture of one");
  print->add_option("PACK", input->Book.Packs, "The packs; for a picture, a pack and a number")->required();
  AddDrawingOptions(*print, input->Book.Drawing);
  print->get_option("--output")->required();
  const std::vector<CLI::Option*> ofBooks = {
      print->add_option("--numbers", input->Numbers, "Puzzles of each pack, such as 1-20,35"),
      print->add_option("--level", input->Levels, "Only this level or range of levels"),
      print->add_option("--per-page", input->Book.PerPage, "Puzzles a page: 1, 2, 4 or 6")
          ->check(CLI::IsMember({1, 2, 4, 6})),
      print->add_option("--solutions", input->Solutions, "none, back or separate (a file of their own)")
          ->check(CLI::IsMember({"none", "back", "separate"})),
      print->add_option("--title", input->Book.Title, "Title of the book")};
  print->add_option("--paper", input->Book.Paper, "a4, a5, a6, letter or millimetres such as 148x210");
  const std::vector<CLI::Option*> ofPictures = {
      print->add_option("--width", input->Picture.Width, "Pixels of an SVG or PNG")
          ->check(CLI::Range(64, 16384)),
      print->add_option("--board", input->Picture.Board, "Digits of a position, one a cell"),
      print->add_flag("--solution", input->Picture.Solution, "The solution instead of the puzzle")};
  print->callback([input, print, ofBooks, ofPictures, &chosen] {
    const auto refuse = [](const std::vector<CLI::Option*>& options, const std::string& words) {
      for (const CLI::Option* option : options) {
        if (option->count() != 0) throw CLI::ValidationError(option->get_name(), words);
      }
    };
    std::vector<std::string>& packs = input->Book.Packs;
    if (packs.size() == 2 && IsNumber(packs[1])) {
      refuse(ofBooks, "a picture of one puzzle takes no such option");
      RefuseEmpty(*print, "--board", "no digits");
      input->Picture.Pack = packs[0];
      input->Picture.Number = std::stol(packs[1]);
      input->Picture.Paper = input->Book.Paper;
      input->Picture.Drawing = input->Book.Drawing;
      if (input->Picture.Solution && !input->Picture.Board.empty())
        throw CLI::ValidationError("--board", "a picture shows a position or the solution, not both");
      chosen = [input](Terminal& terminal) { return PrintPicture(input->Picture, terminal); };
      return;
    }
    refuse(ofPictures, "only a picture of one puzzle, PACK NUMBER, takes it");
    if (!input->Numbers.empty()) input->Book.Numbers = ReadNumbers(input->Numbers);
    if (!input->Levels.empty()) input->Book.Levels = LevelsOf(input->Levels);
    input->Book.Solutions = input->Solutions == "none"   ? SolutionPlace::None
                            : input->Solutions == "back" ? SolutionPlace::Back
                                                         : SolutionPlace::Separate;
    chosen = [input](Terminal& terminal) { return PrintBook(input->Book, WatchForInterrupts(), terminal); };
  });
}

void AddExplain(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<ExplainOptions>();
  CLI::App* explain = app.add_subcommand("explain", "The way to the solution as the hints give it");
  explain->add_option("PACK", options->Pack, "The pack")->required();
  explain->add_option("NUMBER", options->Number, "The puzzle, counted from 1")->required();
  explain->add_option("--from", options->From, "Digits of the position to begin with");
  CLI::Option* table = explain->add_flag_callback(
      "--tsv", [options] { options->Output = Format::Table; }, "Write a table, separated by tabs");
  AddDrawingOptions(*explain, options->Drawing);
  table->excludes(explain->get_option("--output"));
  explain->callback([options, explain, &chosen] {
    RefuseEmpty(*explain, "--from", "no digits");
    RefuseEmpty(*explain, "--output", "no name");
    chosen = [options](Terminal& terminal) { return ExplainPuzzle(*options, terminal); };
  });
}

void AddStats(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<StatsOptions>();
  CLI::App* stats = app.add_subcommand("stats", "Levels, difficulty, tents, rules and seconds of hints");
  stats->add_option("PACK", options->Packs, "The packs")->required();
  stats->add_flag_callback(
      "--tsv", [options] { options->Output = Format::Table; }, "Write a table, separated by tabs");
  stats->add_option("-o,--output", options->Drawing.Output, "A plot to write: an SVG, PDF or PNG");
  stats->add_flag("--force", options->Drawing.Force, "Overwrite the plot");
  stats->callback([options, stats, &chosen] {
    RefuseEmpty(*stats, "--output", "no name");
    chosen = [options](Terminal& terminal) { return StatsOfPacks(*options, WatchForInterrupts(), terminal); };
  });
}

}  // namespace

void AddDrawingCommands(CLI::App& app, Command& chosen) {
  AddExplain(app, chosen);
  AddStats(app, chosen);
  AddPrint(app, chosen);
}

}  // namespace bivouac
