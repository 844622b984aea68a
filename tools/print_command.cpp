#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <ostream>

#include "drawing/book.h"
#include "game/text.h"
#include "packs/pack_access.h"
#include "packs/pack_reader.h"
#include "packs/puzzle_facts.h"
#include "storage/platform_files.h"
#include "tools/command_line.h"
#include "tools/drawing_commands.h"
#include "tools/progress.h"
#include "workbench/position.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

enum class SolutionPlace { None, Back, Separate };

/// Numbers first to last of a pack, both included.
struct NumberRange {
  long First = 1;
  long Last = 1;
};

struct PrintOptions {
  DrawingOptions Drawing{};
  std::vector<std::string> Packs{};
  std::string Paper = "a4";
  // Of a book.
  std::vector<NumberRange> Numbers{};  // None: all of every pack.
  std::optional<LevelRange> Levels{};  // None: all, and those that the rater cannot finish.
  int PerPage = 2;
  bool Duplex = false;
  SolutionPlace Solutions = SolutionPlace::Back;
  std::string Title = "Bivouac";
  // Of a picture.
  long Number = 1;
  std::string Board{};  // Digits of the position; empty for the puzzle alone.
  bool Solution = false;
  int Width = 600;  // In pixels; a PDF takes the paper's.

  PictureFormat Format() const {
    const std::optional<PictureFormat> format = FormatOfName(Drawing.Output);
    if (!format)
      throw InputError(Drawing.Output + ": the name must end in .pdf, .svg or .png, with letters before");
    return *format;
  }
  Look Style() const {
    if (!Drawing.Colour) return Look::Ink;
    return Format() == PictureFormat::Pdf ? Look::ColourForPencil : Look::Colour;
  }
  Overwrite Overwriting() const { return Drawing.Force ? Overwrite::Yes : Overwrite::No; }
};

/// Says where type is too small to be read with ease.
void WarnOfSmallType(const Canvas& canvas, Terminal& terminal) {
  constexpr double kReadable = 6;
  if (canvas.SmallestType() >= kReadable) return;
  char text[140];
  std::snprintf(
      text, sizeof text,
      "bivouac-packs: the smallest type is %.1f points high, below 6: larger paper or fewer puzzles a "
      "page read better\n",
      canvas.SmallestType());
  terminal.Err << text;
}

/// The puzzles of a book in their order: by level, by size, then as they were asked for. Records are read
/// from their packs each time.
class Selection {
 public:
  explicit Selection(const PrintOptions& options) {
    for (const std::string& path : options.Packs) packs_.push_back(std::make_unique<PackReader>(path));
    std::vector<Chosen> chosen;
    for (std::size_t pack = 0; pack < packs_.size(); ++pack) {
      std::vector<NumberRange> ranges = options.Numbers;
      if (ranges.empty()) ranges.push_back({1, packs_[pack]->Count()});
      for (const NumberRange& range : ranges) {
        for (long number = range.First; number <= range.Last; ++number) {
          const PackRecord record = packs_[pack]->Read(number);
          const int stored = LevelOf(record.LevelSize);
          const int level = stored != 0 ? stored : FactsOf(bench_.main, record).Level;
          const bool asked =
              !options.Levels || (level >= options.Levels->Lowest && level <= options.Levels->Highest);
          if (asked) chosen.push_back({pack, number, level < 1 ? kBeyond : level, SizeOf(record.LevelSize)});
        }
      }
    }
    std::stable_sort(chosen.begin(), chosen.end(), [](const Chosen& one, const Chosen& other) {
      return std::pair(one.Level, one.Size) < std::pair(other.Level, other.Size);
    });
    chosen_ = std::move(chosen);
  }

  std::size_t Count() const { return chosen_.size(); }
  PackRecord Read(std::size_t place) const {
    return packs_[chosen_[place].Pack]->Read(chosen_[place].Number);
  }
  /// Where it comes from.
  std::string SourceOf(std::size_t place) const {
    const std::string pack =
        std::filesystem::path(FileName(packs_[chosen_[place].Pack]->Path())).stem().string();
    return pack + " no. " + std::to_string(chosen_[place].Number);
  }
  /// Size and difficulty.
  std::string FactsOfPuzzle(const PackRecord& record) {
    const PuzzleFacts facts = FactsOf(bench_.main, record);
    if (facts.Level < 1) return SizeText(facts.Size);
    char text[40];
    std::snprintf(text, sizeof text, ", difficulty %.2f", static_cast<double>(facts.Difficulty));
    return SizeText(facts.Size) + text;
  }
  std::vector<BookItem> Items() const {
    std::vector<BookItem> items(chosen_.size());
    for (std::size_t place = 0; place < items.size(); ++place) {
      items[place].Level = chosen_[place].Level;
      items[place].Size = chosen_[place].Size;
    }
    return items;
  }

 private:
  static constexpr int kBeyond = 6;  // The rater's rules cannot finish it.
  struct Chosen {
    std::size_t Pack;
    long Number;
    int Level;
    int Size;
  };
  std::vector<std::unique_ptr<PackReader>> packs_;
  std::vector<Chosen> chosen_;
  Workbench bench_;
};

std::string ChapterOf(int level) {
  constexpr int kLevels = 5;
  if (level > kLevels) return "Beyond the levels";
  std::string text = "Level " + std::to_string(level) + "  ";
  for (int star = 1; star <= kLevels; ++star) text += star <= level ? "\u2605" : "\u2606";
  return text;
}

std::string SummaryOf(const std::vector<BookItem>& items) {
  const auto [small, large] =
      std::minmax_element(items.begin(), items.end(),
                          [](const BookItem& one, const BookItem& other) { return one.Size < other.Size; });
  std::string text = Counted(static_cast<long>(items.size()), "puzzle") + ", " + SizeText(small->Size);
  if (large->Size != small->Size) text += " to " + SizeText(large->Size);
  const int lowest = items.front().Level;
  const int highest = items.back().Level;
  if (highest > 5) return text;
  text += (lowest == highest ? ", level " : ", levels ") + std::to_string(lowest);
  if (lowest != highest) text += " to " + std::to_string(highest);
  return text;
}

std::vector<ContentsLine> ContentsOf(const std::vector<BookItem>& items, bool solutions) {
  std::vector<ContentsLine> lines{{"How to solve", {}, BookWriter::kRulesPage}};
  for (std::size_t first = 0; first < items.size();) {
    std::size_t last = first;
    while (last + 1 < items.size() && items[last + 1].Level == items[first].Level) ++last;
    std::string facts = last == first ? "Puzzle " : "Puzzles ";
    facts += std::to_string(first + 1);
    if (last != first) facts += " to " + std::to_string(last + 1);
    facts += ", " + SizeText(items[first].Size);
    if (items[last].Size != items[first].Size) facts += " to " + SizeText(items[last].Size);
    lines.push_back({ChapterOf(items[first].Level), facts, items[first].Page});
    first = last + 1;
  }
  if (solutions) lines.push_back({"Solutions", {}, items.front().SolutionPage});
  return lines;
}

/// Where the reader of a puzzle finds its solution.
std::string SolutionNote(const BookItem& item, SolutionPlace place) {
  if (place == SolutionPlace::None) return {};
  const std::string page = "page " + std::to_string(item.SolutionPage);
  return place == SolutionPlace::Back ? "solution on " + page : page + " of the solutions";
}

std::string SolutionsName(const std::string& output) {
  return output.substr(0, output.size() - 4) + "-solutions" + output.substr(output.size() - 4);
}

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
         !FileExists(text);
}

/// Writes a PDF. `stop` ends it without a file.
ExitStatus PrintBook(const PrintOptions& options, const std::atomic<bool>& stop, Terminal& terminal) {
  const std::string& output = options.Drawing.Output;
  if (options.Format() != PictureFormat::Pdf)
    throw InputError(output + ": a book is a PDF; a picture is one puzzle, PACK NUMBER");
  RequireNoInput(output, options.Packs);
  if (options.Solutions == SolutionPlace::Separate) RequireNoInput(SolutionsName(output), options.Packs);
  const BookLayout layout{PaperOf(options.Paper), options.PerPage, options.Duplex};
  Selection selection(options);
  std::vector<BookItem> items = selection.Items();
  if (items.empty()) throw InputError("there is no such puzzle to print");
  int largest = 0;
  for (const BookItem& item : items) largest = std::max(largest, item.Size);
  CheckPaper(layout, largest);
  const bool back = options.Solutions == SolutionPlace::Back;
  const int behind = PlacePuzzles(items, layout, BookWriter::kFirstPuzzlePage);
  PlaceSolutions(items, layout, back ? behind : 1);

  const BoardPainter painter(options.Style());
  Canvas canvas(output, PictureFormat::Pdf, layout.Paper, options.Title, options.Overwriting());
  BookWriter book(canvas, painter, layout);
  book.TitlePage(options.Title, SummaryOf(items), PuzzlePicture(selection.Read(0)));
  book.RulesPage();
  book.ContentsPage(ContentsOf(items, back));
  ProgressLine progress(terminal, static_cast<long>(items.size()));
  for (std::size_t place = 0; place < items.size() && !stop; ++place) {
    const PackRecord record = selection.Read(place);
    const BookItem& item = items[place];
    book.Puzzle(item, {PuzzlePicture(record), std::to_string(place + 1), selection.FactsOfPuzzle(record),
                       ChapterOf(item.Level), SolutionNote(item, options.Solutions)});
    progress.Step();
  }
  const auto drawSolutions = [&](BookWriter& to, const std::string& heading) {
    for (std::size_t place = 0; place < items.size() && !stop; ++place) {
      to.Solution(items[place], selection.Read(place), std::to_string(place + 1), selection.SourceOf(place),
                  heading);
    }
  };
  if (back) drawSolutions(book, "Solutions");
  book.Finish();
  if (options.Solutions == SolutionPlace::Separate) {
    const std::string title = options.Title + ": solutions";
    Canvas apart(SolutionsName(output), PictureFormat::Pdf, layout.Paper, title, options.Overwriting());
    BookWriter pages(apart, painter, layout);
    drawSolutions(pages, title);
    pages.Finish();
    // On a full disk neither is there.
    if (!stop) canvas.Finish();
    if (!stop) apart.Close();
  }
  if (stop) return ExitStatus::Interrupted;
  canvas.Close();
  WarnOfSmallType(canvas, terminal);
  return ExitStatus::Done;
}

/// Writes one board as a PDF, SVG or PNG, by the ending of the file's name.
ExitStatus PrintPicture(const PrintOptions& options, Terminal& terminal) {
  const PictureFormat format = options.Format();
  const std::string& pack = options.Packs.front();
  RequireNoInput(options.Drawing.Output, {pack});
  const PackRecord record = PackReader(pack).Read(options.Number);
  Workbench bench;
  const std::string name = "No. " + std::to_string(options.Number);
  const std::string facts = FactsText(FactsOf(bench.main, record));
  BoardPicture picture = options.Solution ? SolutionPicture(record) : PuzzlePicture(record);
  if (!options.Board.empty()) {
    LayOutRecord(bench.main, record);
    LayFields(bench.main, options.Board, "--board");
    for (int cell = 0; cell < bench.main.CellCount; ++cell) {
      picture.Fields[cell] = bench.main.Board[cell];
    }
  }
  const BoardPainter painter(options.Style());
  if (format == PictureFormat::Pdf) {
    const BookLayout layout{PaperOf(options.Paper), 1};
    CheckPaper(layout, picture.Size);
    Canvas canvas(options.Drawing.Output, format, layout.Paper, "Bivouac " + name, options.Overwriting());
    BookWriter page(canvas, painter, layout);
    page.Puzzle({.Size = picture.Size, .Page = 1}, {picture, name, facts, {}, {}});
    page.Finish();
    canvas.Close();
    WarnOfSmallType(canvas, terminal);
    return ExitStatus::Done;
  }
  // A caption below the board, of the height of a clue.
  const double width = options.Width;
  const double margin = width * 0.02;
  const TextStyle style{.Size = std::max(width * 0.025, 6.0), .Align = Alignment::Centre};
  const double caption = 2 * style.Size;
  Canvas canvas(options.Drawing.Output, format, {width, width + caption}, name, options.Overwriting());
  canvas.Fill({0, 0, width, width + caption}, painter.Ground());
  painter.Paint(canvas, picture, {margin / 2, margin / 2}, width - 2 * margin);
  canvas.Text(name + ", " + facts, {width / 2, width - margin / 2}, style);
  canvas.Close();
  return ExitStatus::Done;
}

}  // namespace

void AddPrint(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<PrintOptions>();
  CLI::App* print = app.add_subcommand("print", kPrintHelp);
  print->add_option("PACK", options->Packs, "The packs; for a picture, a pack and a number")->required();
  AddDrawingOptions(*print, options->Drawing);
  print->get_option("--output")->required();
  const auto add = [&](const char* name, const char* help, auto read) {
    return print->add_option_function<std::string>(name, read, help);
  };
  const std::vector<CLI::Option*> ofBooks = {
      add("--numbers", "Puzzles of each pack, such as 1-20,35",
          [options](const std::string& text) { options->Numbers = ReadNumbers(text); }),
      add("--level", "Only this level or range of levels",
          [options](const std::string& text) { options->Levels = LevelsOf(text); }),
      print->add_option("--per-page", options->PerPage, "Puzzles a page: 1, 2, 4 or 6")
          ->check(CLI::IsMember({1, 2, 4, 6})),
      add("--solutions", "none, back or separate (a file of their own)",
          [options](const std::string& text) {
            options->Solutions = text == "none"   ? SolutionPlace::None
                                 : text == "back" ? SolutionPlace::Back
                                                  : SolutionPlace::Separate;
          })
          ->check(CLI::IsMember({"none", "back", "separate"})),
      print->add_flag("--duplex", options->Duplex,
                      "Margins for two sides of a sheet, wider where it is bound"),
      print->add_option("--title", options->Title, "Title of the book")};
  CLI::Option* paper = AddPaperOption(*print, options->Paper);
  CLI::Option* width =
      print->add_option("--width", options->Width, "Pixels of an SVG or PNG")->check(CLI::Range(64, 16384));
  CLI::Option* board = print->add_option("--board", options->Board, "Digits of a position, one a cell");
  CLI::Option* solution =
      print->add_flag("--solution", options->Solution, "The solution instead of the puzzle");
  print->callback([=, &chosen] {
    const auto refuse = [](const std::vector<CLI::Option*>& given, const std::string& words) {
      for (const CLI::Option* option : given) {
        if (option->count() != 0) throw CLI::ValidationError(option->get_name(), words);
      }
    };
    if (options->Packs.size() != 2 || !IsNumber(options->Packs[1])) {
      refuse({width, board, solution}, "only a picture of one puzzle, PACK NUMBER, takes it");
      RefuseEmpty(*print, "--title", "no title");
      chosen = [options](Terminal& terminal) { return PrintBook(*options, WatchForInterrupts(), terminal); };
      return;
    }
    refuse(ofBooks, "a picture of one puzzle takes no such option");
    RefuseEmpty(*print, "--board", "no digits");
    const bool pdf = options->Format() == PictureFormat::Pdf;
    if (pdf) refuse({width}, "a PDF has the width of its paper");
    if (!pdf) refuse({paper}, "only a PDF has paper");
    if (options->Solution) refuse({board}, "a picture shows a position or the solution, not both");
    options->Number = std::stol(options->Packs[1]);
    chosen = [options](Terminal& terminal) { return PrintPicture(*options, terminal); };
  });
}

}  // namespace bivouac
