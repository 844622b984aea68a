#include "drawing/book.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "game/error.h"
#include "game/game_state.h"

namespace bivouac {
namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;
constexpr double kA4Width = 210 * kPointsPerMillimetre;
constexpr double kMargin = 42;          // Points, on A4.
constexpr double kFootHeight = 22;      // Room for the page's number.
constexpr double kHeadHeight = 26;      // Room for the page's heading.
constexpr double kSmallestType = 6.5;   // Of running text.
constexpr double kPuzzleGap = 26;       // Between puzzles.
constexpr double kLargestField = 36;    // Points: larger fields waste ink.
constexpr double kSmallestField = 8.5;  // 3 mm, to write into.
constexpr double kSmallestSolutionField = 3.5 * kPointsPerMillimetre;
constexpr double kLargestSolutionField = 20;
constexpr double kSolutionGap = 12;
constexpr double kSolutionCaption = 12;  // At the least.
constexpr double kNoteLine = 24;

constexpr const char* kRules =
    "Every tree wants a tent of its own on a field directly above, below, to the left or to the right of it. "
    "Tents never touch, not even diagonally. The number beside a row or column says how many tents stand in "
    "it. Every puzzle has one solution, which can be found by thought alone.";
constexpr const char* kMeasures =
    "Stars tell a puzzle's level, from one to five: that of the hardest thought which its solution needs. "
    "Its "
    "difficulty adds up all the thoughts on the way, the harder ones counting more, measured by the size of "
    "the board: of two puzzles of a level, the one with the higher number is harder.";

/// A puzzle on the way to its solution.
struct ExampleStep {
  std::string_view Fields;
  const char* Words;
};
constexpr int kExampleSize = 6;
constexpr std::string_view kExampleRows = "301121";
constexpr std::string_view kExampleColumns = "212021";
constexpr ExampleStep kExample[] = {
    {"030030300000003000000000030030300300",
     "The puzzle: trees, and the numbers of tents. Row 2 and column 4 have none."},
    {"030130311111003111100101030130300301",
     "So all their fields are grass, and so is every field that is beside no tree."},
    {"232132311111003111111101232131311301",
     "Row 1 has three fields left for three tents. Column 6 has its tent then, which leaves two fields of "
     "row "
     "5 for two tents. What touches a tent is grass."},
    {"232132311111123111111121232131311321",
     "The tree in row 3 has one field left. So it goes on, to the only solution."}};

BoardPicture PictureOf(const ExampleStep& step) {
  BoardPicture picture;
  picture.Size = kExampleSize;
  for (const char code : step.Fields) picture.Fields.Add(code - '0');
  for (const char clue : kExampleRows) picture.RowClues.Add(clue - '0');
  for (const char clue : kExampleColumns) picture.ColClues.Add(clue - '0');
  return picture;
}

double ScaleOf(const Extent& paper) {
  return std::clamp(std::min(paper.Width, paper.Height) / kA4Width, 0.4, 1.5);
}

double TypeOf(double size, const BookLayout& layout) {
  return std::max(size * ScaleOf(layout.Paper), std::min(size, kSmallestType));
}

/// Where a page of puzzles or solutions has room.
struct Frame {
  Frame(const BookLayout& layout, int page)
      : Scale(ScaleOf(layout.Paper)),
        Left(kMargin * Scale),
        Width(layout.Paper.Width - 2 * Left),
        Top(Left + std::max(kHeadHeight * Scale, 2.2 * TypeOf(12, layout))),
        Foot(layout.Paper.Height - Left - kFootHeight * Scale) {
    const double binding = layout.Duplex ? Left / 3 : 0;
    Left += page % 2 == 1 ? binding : -binding;
  }
  double Scale;
  double Left;
  double Width;
  double Top;
  double Foot;
};

struct Grid {
  int Columns;
  int Rows;
  double Gap;

  int Places() const { return Columns * Rows; }
  Box Place(const Frame& frame, int number) const {
    const double width = (frame.Width - (Columns - 1) * Gap) / Columns;
    const double height = (frame.Foot - frame.Top - (Rows - 1) * Gap) / Rows;
    const int row = number / Columns;
    return {frame.Left + number % Columns * (width + Gap), frame.Top + row * (height + Gap), width, height};
  }
};

Grid PuzzleGrid(const BookLayout& layout) {
  const int columns = layout.PerPage >= 4 ? 2 : 1;
  const int rows = layout.PerPage / columns;
  const bool lying = layout.Paper.Width > layout.Paper.Height;
  const double gap = kPuzzleGap * ScaleOf(layout.Paper);
  return lying ? Grid{rows, columns, gap} : Grid{columns, rows, gap};
}

/// Name, facts and place of the solution share a line where it is long enough.
bool CaptionOnOneLine(const Box& place, const BookLayout& layout) {
  return place.Width > 25 * TypeOf(9, layout);
}

double CaptionHeight(const Box& place, const BookLayout& layout) {
  return (CaptionOnOneLine(place, layout) ? 1.8 : 3.2) * TypeOf(11, layout);
}

/// The square that a board gets in its place. One puzzle a page leaves room for notes.
double BoardSide(const Box& place, const BookLayout& layout, int size) {
  const double room = std::min(place.Width, place.Height - CaptionHeight(place, layout));
  return std::min(room, kLargestField * ScaleOf(layout.Paper) * (size + 0.8));
}

double SolutionCaption(const BookLayout& layout) {
  return std::max(kSolutionCaption * ScaleOf(layout.Paper), 1.5 * TypeOf(8, layout));
}

/// The square that a solution gets in its place.
double SolutionSide(const Grid& grid, const BookLayout& layout, int size) {
  const Box place = grid.Place(Frame(layout, 1), 0);
  return std::min({place.Width, place.Height - SolutionCaption(layout), kLargestSolutionField * size});
}

/// The places that make so many solutions as large as they can be on the fewest pages.
Grid SolutionGrid(const BookLayout& layout, int size, int count) {
  const double gap = kSolutionGap * ScaleOf(layout.Paper);
  const auto pages = [&](const Grid& grid) { return (count - 1) / grid.Places() + 1; };
  const auto fits = [&](const Grid& grid) {
    return SolutionSide(grid, layout, size) >= kSmallestSolutionField * size;
  };
  Grid best{1, 1, gap};
  for (Grid grid = best; fits(grid); ++grid.Columns) {
    for (grid.Rows = 1; fits(grid); ++grid.Rows) {
      const auto rank = [&](const Grid& one) {
        return std::pair(-pages(one), SolutionSide(one, layout, size));
      };
      if (rank(grid) >= rank(best)) best = grid;
    }
    grid.Rows = 1;
  }
  return best;
}

/// How many items from one on share its size, and its level where levels count.
int RunOf(const std::vector<BookItem>& items, std::size_t first, bool levels) {
  std::size_t end = first;
  while (end < items.size() && items[end].Size == items[first].Size &&
         (!levels || items[end].Level == items[first].Level))
    ++end;
  return static_cast<int>(end - first);
}

}  // namespace

Extent PaperOf(const std::string& text) {
  std::string name = text;
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (name == "letter") return {612, 792};
  int width = name == "a4" ? 210 : name == "a5" ? 148 : name == "a6" ? 105 : 0;
  int height = name == "a4" ? 297 : name == "a5" ? 210 : name == "a6" ? 148 : 0;
  int end = 0;
  const bool read = width > 0 || (std::sscanf(name.c_str(), "%4dx%4d%n", &width, &height, &end) == 2 &&
                                  static_cast<std::size_t>(end) == name.size());
  if (!read || width < 1 || height < 1)
    throw InputError("--paper: '" + text + "' is not a4, a5, a6, letter or millimetres such as 148x210");
  return {width * kPointsPerMillimetre, height * kPointsPerMillimetre};
}

void CheckPaper(const BookLayout& layout, int largestSize) {
  const Box place = PuzzleGrid(layout).Place(Frame(layout, 1), 0);
  const double field = BoardSide(place, layout, largestSize) / (largestSize + 0.8);
  if (field >= kSmallestField) return;
  char text[160];
  std::snprintf(text, sizeof text,
                "the paper is too small: fields of a %dx%d board would be %.1f mm wide, less than %.1f",
                largestSize, largestSize, std::max(0.0, field / kPointsPerMillimetre),
                kSmallestField / kPointsPerMillimetre);
  throw InputError(text);
}

int PlacePuzzles(std::vector<BookItem>& items, const BookLayout& layout, int page) {
  for (std::size_t first = 0; first < items.size();) {
    const int count = RunOf(items, first, true);
    for (int i = 0; i < count; ++i) {
      items[first].Page = page + i / layout.PerPage;
      items[first++].Place = i % layout.PerPage;
    }
    page += (count - 1) / layout.PerPage + 1;
  }
  return page;
}

int PlaceSolutions(std::vector<BookItem>& items, const BookLayout& layout, int page) {
  for (std::size_t first = 0; first < items.size();) {
    const int count = RunOf(items, first, false);
    const Grid grid = SolutionGrid(layout, items[first].Size, count);
    const int places = grid.Places();
    for (int i = 0; i < count; ++i, ++first) {
      items[first].SolutionPage = page + i / places;
      items[first].SolutionPlace = i % places;
      items[first].SolutionColumns = grid.Columns;
      items[first].SolutionRows = grid.Rows;
    }
    page += (count - 1) / places + 1;
  }
  return page;
}

BookWriter::BookWriter(Canvas& canvas, const BoardPainter& painter, const BookLayout& layout)
    : canvas_(canvas), painter_(painter), layout_(layout) {}

double BookWriter::Type(double size) const {
  return TypeOf(size, layout_);
}

double BookWriter::Paragraph(const char* tag, const std::string& text, Point at, const TextStyle& style,
                             double width) {
  canvas_.BeginTag(tag);
  const double height = canvas_.Text(text, at, style, width);
  canvas_.EndTag(tag);
  return height;
}

void BookWriter::GoTo(int page, const std::string& heading) {
  if (page == page_) return;
  if (page_ != 0) EndPage();
  page_ = page;
  const Frame frame(layout_, page_);
  canvas_.NamePage(std::to_string(page_));
  if (heading.empty()) return;
  if (heading != heading_) canvas_.AddToOutline(heading);
  const TextStyle style{.Size = Type(12), .Boldness = Weight::Bold, .OneLine = true};
  const double top = kMargin * frame.Scale;
  const double height =
      Paragraph(heading == heading_ ? "P" : "H1", heading, {frame.Left, top}, style, frame.Width);
  const double line = top + height + 2 * frame.Scale;
  canvas_.Line({frame.Left, line}, {frame.Left + frame.Width, line}, 0.5 * frame.Scale, kGrey);
  heading_ = heading;
}

void BookWriter::EndPage() {
  const Frame frame(layout_, page_);
  const bool right = page_ % 2 == 1;
  const double x = !layout_.Duplex ? layout_.Paper.Width / 2 : right ? frame.Left + frame.Width : frame.Left;
  const Alignment align = !layout_.Duplex ? Alignment::Centre : right ? Alignment::Right : Alignment::Left;
  const std::string number = std::to_string(page_);
  canvas_.BeginTag(CAIRO_TAG_DEST, "name='page" + number + "' x=0 y=0");
  canvas_.Text(number, {x, layout_.Paper.Height - (kMargin + 10) * frame.Scale},
               {.Size = Type(9), .Align = align, .Ink = kGrey});
  canvas_.EndTag(CAIRO_TAG_DEST);
  canvas_.EndPage();
}

void BookWriter::TitlePage(const std::string& title, const std::string& summary,
                           const BoardPicture& ornament) {
  page_ = 1;
  canvas_.NamePage("Title");
  canvas_.AddToOutline(title);
  const Frame frame(layout_, page_);
  const double middle = frame.Left + frame.Width / 2;
  double y = layout_.Paper.Height * 0.12;
  TextStyle style{.Size = Type(32), .Boldness = Weight::Bold, .Align = Alignment::Centre};
  // A long title is set smaller, then shortened.
  while (canvas_.Measure(title, style, frame.Width).Height > layout_.Paper.Height * 0.3 && !style.OneLine) {
    style.Size = std::max(style.Size * 0.85, kSmallestType);
    style.OneLine = style.Size == kSmallestType;
  }
  y += Paragraph("H1", title, {middle, y}, style, frame.Width) + 8 * frame.Scale;
  y += Paragraph("P", summary, {middle, y}, {.Size = Type(12), .Align = Alignment::Centre, .Ink = kGrey},
                 frame.Width);
  // The board without clues, so that it stands in the middle.
  const double room = frame.Foot - y;
  const double side = std::min(frame.Width * 0.7, room * 0.8);
  painter_.Paint(canvas_, ornament, {middle - side / 2, y + (room - side) / 2}, side, ClueLabels::Hidden);
  canvas_.EndPage();
  page_ = 0;
}

double BookWriter::Rules(double top, double type, bool draw) {
  const Frame frame(layout_, page_);
  const double gap = type;
  const auto paragraph = [&](const char* tag, const std::string& text, Point at, const TextStyle& style,
                             double width) {
    return draw ? Paragraph(tag, text, at, style, width) : canvas_.Measure(text, style, width).Height;
  };
  const TextStyle style{.Size = type};
  const TextStyle heading{.Size = type * 1.1, .Boldness = Weight::Bold};
  double y = top;
  y += paragraph("P", kRules, {frame.Left, y}, style, frame.Width) + gap;
  y += paragraph("H2", "Stars and difficulty", {frame.Left, y}, heading, frame.Width) + gap / 3;
  y += paragraph("P", kMeasures, {frame.Left, y}, style, frame.Width) + gap;
  y += paragraph("H2", "An example", {frame.Left, y}, heading, frame.Width) + gap / 3;
  const int columns = layout_.Paper.Width > layout_.Paper.Height ? 4 : 2;
  const double width = (frame.Width - (columns - 1) * 2 * gap) / columns;
  const double rows = 4.0 / columns;
  double words = 0;
  for (const ExampleStep& step : kExample)
    words = std::max(words, canvas_.Measure(step.Words, style, width).Height);
  const double least = kSmallestField * (kExampleSize + 0.8);
  const double room = (frame.Foot - y - (rows - 1) * gap) / rows - words - gap / 2;
  const double side =
      std::min({std::max(room, least), width, 1.4 * kLargestField * kExampleSize * frame.Scale});
  int place = 0;
  for (const ExampleStep& step : kExample) {
    const double x = frame.Left + place % columns * (width + 2 * gap);
    const int row = place / columns;
    const double at = y + row * (side + words + 1.5 * gap);
    ++place;
    if (!draw) continue;
    painter_.Paint(canvas_, PictureOf(step), {x, at}, side);
    Paragraph("P", step.Words, {x, at + side + gap / 2}, style, width);
  }
  return y + rows * (side + words + 1.5 * gap) - gap;
}

void BookWriter::RulesPage() {
  GoTo(kRulesPage, "How to solve");
  const Frame frame(layout_, page_);
  double type = Type(10.5);
  while (type > 3 && Rules(frame.Top, type, false) > frame.Foot + type) type *= 0.95;
  Rules(frame.Top, type, true);
}

void BookWriter::ContentsPage(const std::vector<ContentsLine>& lines) {
  GoTo(kContentsPage, "Contents");
  const Frame frame(layout_, page_);
  double y = frame.Top;
  const TextStyle style{.Size = Type(11)};
  const TextStyle facts{.Size = Type(9), .Ink = kGrey};
  const TextStyle page{.Size = Type(11), .Align = Alignment::Right};
  for (const ContentsLine& line : lines) {
    canvas_.BeginTag(CAIRO_TAG_LINK, "dest='page" + std::to_string(line.Page) + "'");
    canvas_.Text(line.Name, {frame.Left, y}, style);
    const double height = canvas_.Text(std::to_string(line.Page), {frame.Left + frame.Width, y}, page);
    canvas_.EndTag(CAIRO_TAG_LINK);
    y += height;
    if (!line.Facts.empty()) y += Paragraph("P", line.Facts, {frame.Left, y}, facts, frame.Width);
    y += 0.6 * style.Size;
  }
}

void BookWriter::Puzzle(const BookItem& item, const BookPuzzle& puzzle) {
  GoTo(item.Page, puzzle.Chapter);
  const Frame frame(layout_, page_);
  const Box place = PuzzleGrid(layout_).Place(frame, item.Place);
  const double side = BoardSide(place, layout_, puzzle.Board.Size);
  const Point corner{place.X + (place.Width - side) / 2, place.Y + CaptionHeight(place, layout_)};
  const TextStyle name{.Size = Type(11), .Boldness = Weight::Bold, .OneLine = true};
  const TextStyle facts{.Size = Type(9), .Ink = kGrey, .OneLine = true};
  TextStyle solution = facts;
  // The caption begins where the fields do, if it has room there.
  const bool oneLine = CaptionOnOneLine(place, layout_);
  const double gap = 0.8 * name.Size;
  const double nameWidth = std::min(canvas_.Measure(puzzle.Name, name).Width, place.Width / 2);
  const double drop = (name.Size - facts.Size) * 0.95;
  double left = corner.X;
  double right = corner.X + side;
  if (right - left < 25 * facts.Size) {
    left = place.X;
    right = place.X + place.Width;
  }
  Paragraph("H2", puzzle.Name, {left, place.Y}, name, nameWidth + 0.01);
  const double solutionWidth = canvas_.Measure(puzzle.Solution, facts).Width;
  const double factsWidth = right - left - nameWidth - gap - (oneLine ? solutionWidth + gap : 0);
  Paragraph("P", puzzle.Facts, {left + nameWidth + gap, place.Y + drop}, facts, factsWidth);
  if (!puzzle.Solution.empty()) {
    const Point at = oneLine ? Point{right - solutionWidth, place.Y + drop}
                             : Point{left + nameWidth + gap, place.Y + drop + 1.3 * facts.Size};
    const bool here = item.SolutionPage > item.Page;
    if (here) canvas_.BeginTag(CAIRO_TAG_LINK, "dest='page" + std::to_string(item.SolutionPage) + "'");
    canvas_.Text(puzzle.Solution, at, solution, solutionWidth + 0.01);
    if (here) canvas_.EndTag(CAIRO_TAG_LINK);
  }
  painter_.Paint(canvas_, puzzle.Board, corner, side);
  if (layout_.PerPage == 1) NotesBelow(corner.Y + side + 24 * frame.Scale);
}

void BookWriter::NotesBelow(double y) {
  const Frame frame(layout_, page_);
  const double height = kNoteLine * frame.Scale;
  if (y + 2 * height > frame.Foot) return;
  Paragraph("P", "Notes", {frame.Left, y}, {.Size = Type(9), .Ink = kGrey}, frame.Width);
  for (int line = 1; y + line * height < frame.Foot; ++line) {
    const double at = y + line * height;
    canvas_.Line({frame.Left, at}, {frame.Left + frame.Width, at}, 0.4 * frame.Scale, kGrey);
  }
}

void BookWriter::Solution(const BookItem& item, const PackRecord& record, const std::string& name,
                          const std::string& source, const std::string& heading) {
  GoTo(item.SolutionPage, heading);
  const Frame frame(layout_, page_);
  const Grid grid{item.SolutionColumns, item.SolutionRows, kSolutionGap * frame.Scale};
  const Box place = grid.Place(frame, item.SolutionPlace);
  const TextStyle bold{.Size = Type(8), .Boldness = Weight::Bold};
  const double width = canvas_.Measure(name, bold).Width;
  Paragraph("H2", name, {place.X, place.Y}, bold, 0);
  Paragraph("P", source, {place.X + width + 0.6 * bold.Size, place.Y},
            {.Size = Type(8), .Ink = kGrey, .OneLine = true}, place.Width - width - 0.6 * bold.Size);
  BoardPicture picture = SolutionPicture(record);
  // Trees and tents say it all.
  std::replace(picture.Fields.begin(), picture.Fields.end(), int{CELL_GRASS}, int{CELL_OPEN});
  painter_.Paint(canvas_, picture, {place.X, place.Y + SolutionCaption(layout_)},
                 SolutionSide(grid, layout_, item.Size), ClueLabels::Hidden);
}

void BookWriter::Finish() {
  if (page_ != 0) EndPage();
  page_ = 0;
}

}  // namespace bivouac
