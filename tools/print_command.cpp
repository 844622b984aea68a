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

PictureFormat FormatOf(const std::string& output) {
  const std::optional<PictureFormat> format = FormatOfName(output);
  if (!format) throw InputError(output + ": the name must end in .pdf, .svg or .png");
  return *format;
}

Extent CheckedPaper(const std::string& text) {
  const std::optional<Extent> paper = PaperOf(text);
  if (!paper)
    throw InputError("--paper: '" + text + "' is not a4, a5, a6, letter or millimetres such as 148x210");
  return *paper;
}

Overwrite OverwriteOf(const DrawingOptions& options) {
  return options.Force ? Overwrite::Yes : Overwrite::No;
}

Look LookOf(const DrawingOptions& options) {
  return options.Colour ? Look::Colour : Look::Ink;
}

/// The puzzles of a book, read from their packs each time they are walked.
class Selection {
 public:
  explicit Selection(const BookOptions& options) : options_(options) {
    for (const std::string& path : options.Packs) packs_.push_back(std::make_unique<PackReader>(path));
  }

  /// Calls visit(pack, number, record) for each; it returns false to end the walk.
  template <class Visit>
  void ForEach(Visit visit) {
    for (const auto& pack : packs_) {
      std::vector<NumberRange> ranges = options_.Numbers;
      if (ranges.empty()) ranges.push_back({1, pack->Count()});
      for (const NumberRange& range : ranges) {
        for (long number = range.First; number <= range.Last; ++number) {
          const PackRecord record = pack->Read(number);
          if (!IsOfLevel(record)) continue;
          if (!visit(*pack, number, record)) return;
        }
      }
    }
  }

  /// How a puzzle is called in the book.
  std::string NameOf(const PackReader& pack, long number) const {
    const std::string name = "No. " + std::to_string(number);
    return packs_.size() == 1 ? name
                              : std::filesystem::path(FileName(pack.Path())).stem().string() + ", " + name;
  }

 private:
  bool IsOfLevel(const PackRecord& record) {
    if (!options_.Levels) return true;
    const int level =
        LevelOf(record.LevelSize) != 0 ? LevelOf(record.LevelSize) : FactsOf(bench_.main, record).Level;
    return level >= options_.Levels->Lowest && level <= options_.Levels->Highest;
  }

  const BookOptions& options_;
  std::vector<std::unique_ptr<PackReader>> packs_;
  Workbench bench_;
};

/// What a first walk over the selection tells.
struct Survey {
  long Puzzles = 0;
  int SmallestSize = kMaxSize;
  int LargestSize = 0;
  PackRecord First;
};

Survey SurveyOf(Selection& selection) {
  Survey survey;
  selection.ForEach([&](const PackReader&, long, const PackRecord& record) {
    const int size = SizeOf(record.LevelSize);
    if (survey.Puzzles++ == 0) survey.First = record;
    survey.SmallestSize = std::min(survey.SmallestSize, size);
    survey.LargestSize = std::max(survey.LargestSize, size);
    return true;
  });
  return survey;
}

std::string SummaryOf(const Survey& survey, const BookOptions& options) {
  std::string text = Counted(survey.Puzzles, "puzzle") + ", " + SizeText(survey.SmallestSize);
  if (survey.LargestSize != survey.SmallestSize) text += " to " + SizeText(survey.LargestSize);
  if (options.Levels) {
    const auto [lowest, highest] = *options.Levels;
    text += (lowest == highest ? ", level " : ", levels ") + std::to_string(lowest);
    if (lowest != highest) text += " to " + std::to_string(highest);
  }
  return text;
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

}  // namespace

ExitStatus PrintBook(const BookOptions& options, const std::atomic<bool>& stop, Terminal& terminal) {
  const std::string& output = options.Drawing.Output;
  if (FormatOf(output) != PictureFormat::Pdf)
    throw InputError(output + ": a book is a PDF; a picture is one puzzle, PACK NUMBER");
  RequireNoInput(output, options.Packs);
  if (options.Solutions == SolutionPlace::Separate) RequireNoInput(SolutionsName(output), options.Packs);
  const BookLayout layout{CheckedPaper(options.Paper), options.PerPage};
  Selection selection(options);
  const Survey survey = SurveyOf(selection);
  if (survey.Puzzles == 0) throw InputError("there is no such puzzle to print");
  CheckPaper(layout, survey.LargestSize);

  const BoardPainter painter(LookOf(options.Drawing));
  Canvas canvas(output, PictureFormat::Pdf, layout.Paper, options.Title, OverwriteOf(options.Drawing));
  BookWriter book(canvas, painter, layout);
  book.TitlePage({options.Title, SummaryOf(survey, options)}, PuzzlePicture(survey.First));
  Workbench bench;
  ProgressLine progress(terminal, survey.Puzzles);
  selection.ForEach([&](const PackReader& pack, long number, const PackRecord& record) {
    book.Puzzle(
        {PuzzlePicture(record), selection.NameOf(pack, number), FactsText(FactsOf(bench.main, record))});
    progress.Step();
    return !stop;
  });
  const auto drawSolutions = [&](BookWriter& to, const std::string& heading) {
    to.BeginSolutions(heading);
    selection.ForEach([&](const PackReader& pack, long number, const PackRecord& record) {
      to.Solution(record, selection.NameOf(pack, number));
      return !stop;
    });
    to.Finish();
  };
  if (options.Solutions == SolutionPlace::Back) {
    drawSolutions(book, "Solutions");
  } else {
    book.Finish();
  }
  if (options.Solutions == SolutionPlace::Separate) {
    const std::string title = options.Title + ": solutions";
    Canvas apart(SolutionsName(output), PictureFormat::Pdf, layout.Paper, title,
                 OverwriteOf(options.Drawing));
    BookWriter pages(apart, painter, layout);
    drawSolutions(pages, title);
    // On a full disk neither is there.
    if (!stop) canvas.Finish();
    if (!stop) apart.Close();
  }
  if (stop) return ExitStatus::Interrupted;
  canvas.Close();
  return ExitStatus::Done;
}

ExitStatus PrintPicture(const PictureOptions& options, Terminal&) {
  const PictureFormat format = FormatOf(options.Drawing.Output);
  RequireNoInput(options.Drawing.Output, {options.Pack});
  const PackRecord record = PackReader(options.Pack).Read(options.Number);
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
  const BoardPainter painter(LookOf(options.Drawing));
  if (format == PictureFormat::Pdf) {
    const BookLayout layout{CheckedPaper(options.Paper), 1};
    CheckPaper(layout, picture.Size);
    Canvas canvas(options.Drawing.Output, format, layout.Paper, "Bivouac " + name,
                  OverwriteOf(options.Drawing));
    BookWriter page(canvas, painter, layout);
    page.Puzzle({picture, name, facts});
    page.Finish();
    canvas.Close();
    return ExitStatus::Done;
  }
  // A caption below the board, of the height of a clue.
  const double width = options.Width;
  const double margin = width * 0.02;
  const TextStyle style{.Size = std::max(width * 0.025, 6.0), .Align = Alignment::Centre};
  const double caption = 2 * style.Size;
  Canvas canvas(options.Drawing.Output, format, {width, width + caption}, name, OverwriteOf(options.Drawing));
  canvas.Fill({0, 0, width, width + caption}, GroundOf(painter.Style()));
  painter.Paint(canvas, picture, {margin / 2, margin / 2}, width - 2 * margin);
  canvas.Text(name + ", " + facts, {width / 2, width - margin / 2}, style);
  canvas.Close();
  return ExitStatus::Done;
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

}  // namespace bivouac
