#include "drawing/book.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "game/error.h"
#include "game/game_state.h"

namespace bivouac {
namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;
constexpr double kA4Width = 210 * kPointsPerMillimetre;
constexpr double kMargin = 42;          // Points, on A4.
constexpr double kFootHeight = 22;      // Room for the page's number.
constexpr double kCaptionHeight = 20;   // Above a board.
constexpr double kPuzzleGap = 26;       // Between puzzles.
constexpr double kLargestField = 36;    // Points: larger fields waste ink.
constexpr double kSmallestField = 8.5;  // 3 mm, to write into.
constexpr double kSolutionWidth = 110;  // Of a solution with its gap, roughly.
constexpr double kSolutionGap = 12;
constexpr double kSolutionCaption = 12;
constexpr double kNoteLine = 24;
constexpr double kShortestName = 60;  // "No. 100"

constexpr const char* kRules =
    "Every tree wants a tent of its own on a field directly above, below, to the left or to the right of it. "
    "Tents never touch, not even diagonally. The number beside a row or column says how many tents stand in "
    "it. Every puzzle has one solution, which can be found by thought alone.";

double ScaleOf(const Extent& paper) {
  return std::clamp(std::min(paper.Width, paper.Height) / kA4Width, 0.4, 1.5);
}

struct Places {
  int Columns;
  int Rows;
};
Places PlacesOf(const BookLayout& layout) {
  const int columns = layout.PerPage >= 4 ? 2 : 1;
  const int rows = layout.PerPage / columns;
  const bool lying = layout.Paper.Width > layout.Paper.Height;
  return lying ? Places{rows, columns} : Places{columns, rows};
}

/// The square that a board gets in its place. One puzzle a page leaves room for notes.
double BoardSide(const Box& place, double scale, int size) {
  const double room = std::min(place.Width, place.Height - kCaptionHeight * scale);
  return std::min(room, kLargestField * scale * (size + 0.8));
}

}  // namespace

std::optional<Extent> PaperOf(const std::string& text) {
  if (text == "a4") return Extent{kA4Width, 297 * kPointsPerMillimetre};
  if (text == "a5") return Extent{148 * kPointsPerMillimetre, 210 * kPointsPerMillimetre};
  if (text == "a6") return Extent{105 * kPointsPerMillimetre, 148 * kPointsPerMillimetre};
  if (text == "letter") return Extent{612, 792};
  int width = 0;
  int height = 0;
  int end = 0;
  const bool read = std::sscanf(text.c_str(), "%4dx%4d%n", &width, &height, &end) == 2;
  if (!read || static_cast<std::size_t>(end) != text.size() || width < 1 || height < 1) return std::nullopt;
  return Extent{width * kPointsPerMillimetre, height * kPointsPerMillimetre};
}

BookWriter::BookWriter(Canvas& canvas, const BoardPainter& painter, const BookLayout& layout)
    : canvas_(canvas),
      painter_(painter),
      layout_(layout),
      scale_(ScaleOf(layout.Paper)),
      margin_(kMargin * scale_),
      foot_(layout.Paper.Height - margin_ - kFootHeight * scale_) {
  const Places places = PlacesOf(layout);
  grid_ = {places.Columns, places.Rows, margin_, kPuzzleGap * scale_};
}

void CheckPaper(const BookLayout& layout, int largestSize) {
  const double scale = ScaleOf(layout.Paper);
  const Places places = PlacesOf(layout);
  const double width = layout.Paper.Width - 2 * kMargin * scale;
  const double height = layout.Paper.Height - (2 * kMargin + kFootHeight) * scale;
  const Box place{0, 0, (width - (places.Columns - 1) * kPuzzleGap * scale) / places.Columns,
                  (height - (places.Rows - 1) * kPuzzleGap * scale) / places.Rows};
  const double field = BoardSide(place, scale, largestSize) / (largestSize + 0.8);
  if (field >= kSmallestField) return;
  char text[160];
  std::snprintf(text, sizeof text,
                "the paper is too small: fields of a %dx%d board would be %.1f mm wide, less than %.1f",
                largestSize, largestSize, std::max(0.0, field / kPointsPerMillimetre),
                kSmallestField / kPointsPerMillimetre);
  throw InputError(text);
}

Box BookWriter::NextPlace(const Grid& grid, double bottom) {
  if (place_ == grid.Columns * grid.Rows) EndPage();
  const double width = (layout_.Paper.Width - 2 * margin_ - (grid.Columns - 1) * grid.Gap) / grid.Columns;
  const double height = (bottom - grid.Top - (grid.Rows - 1) * grid.Gap) / grid.Rows;
  const int column = place_ % grid.Columns;
  const int row = place_ / grid.Columns;
  ++place_;
  return {margin_ + column * (width + grid.Gap), grid.Top + row * (height + grid.Gap), width, height};
}

void BookWriter::EndPage() {
  if (numbered_) {
    canvas_.Text(std::to_string(page_),
                 {layout_.Paper.Width / 2, layout_.Paper.Height - margin_ - 10 * scale_},
                 {.Size = 9 * scale_, .Align = Alignment::Centre, .Ink = kGrey});
  }
  canvas_.EndPage();
  ++page_;
  place_ = 0;
  numbered_ = true;
}

void BookWriter::TitlePage(const BookTitle& title, const BoardPicture& ornament) {
  const double width = layout_.Paper.Width;
  const double text = width - 2 * margin_;
  double y = layout_.Paper.Height * 0.12;
  y += canvas_.Text(title.Title, {width / 2, y},
                    {.Size = 32 * scale_, .Boldness = Weight::Bold, .Align = Alignment::Centre}, text);
  y += 8 * scale_;
  y += canvas_.Text(title.Summary, {width / 2, y},
                    {.Size = 12 * scale_, .Align = Alignment::Centre, .Ink = kGrey}, text);

  const TextStyle rules{.Size = 10.5 * scale_, .Align = Alignment::Centre};
  const double rulesWidth = text * 0.8;
  const double rulesHeight = canvas_.Measure(kRules, rules, rulesWidth).Height;
  const double rulesTop = foot_ - rulesHeight - layout_.Paper.Height * 0.05;
  // The board without clues, so that it stands in the middle.
  const double side = std::min(text * 0.7, rulesTop - y - 60 * scale_);
  if (side > 0) {
    painter_.Paint(canvas_, ornament, {(width - side) / 2, y + (rulesTop - y - side) / 2}, side,
                   ClueLabels::Hidden);
  }
  canvas_.Text(kRules, {width / 2, rulesTop}, rules, rulesWidth);
  numbered_ = false;
  EndPage();
}

void BookWriter::Puzzle(const BookPuzzle& puzzle) {
  const Box place = NextPlace(grid_, foot_);
  const double side = BoardSide(place, scale_, puzzle.Board.Size);
  const double caption = kCaptionHeight * scale_;
  const Point corner{place.X + (place.Width - side) / 2, place.Y + caption};
  // The caption begins where the fields do.
  const BoardGeometry geometry(puzzle.Board.Size, corner, side, ClueLabels::Shown);
  const TextStyle name{.Size = 11 * scale_, .Boldness = Weight::Bold, .OneLine = true};
  const TextStyle facts{.Size = 9 * scale_, .Ink = kGrey};
  // A long name may begin in the gap before the place.
  const double room =
      place.Width + kPuzzleGap / 2 * scale_ - 8 * scale_ - canvas_.Measure(puzzle.Facts, facts).Width;
  const double nameWidth =
      std::min(canvas_.Measure(puzzle.Name, name).Width, std::max(room, kShortestName * scale_));
  const double left = std::min(geometry.Corner.X, place.X - kPuzzleGap / 2 * scale_ + room - nameWidth);
  canvas_.Text(puzzle.Name, {left, place.Y}, name, nameWidth + 0.01);
  canvas_.Text(puzzle.Facts, {left + nameWidth + 8 * scale_, place.Y + 1.9 * scale_}, facts);
  painter_.Paint(canvas_, puzzle.Board, corner, side);
  if (layout_.PerPage == 1) NotesBelow(corner.Y + side + 24 * scale_);
}

void BookWriter::NotesBelow(double y) {
  const double height = kNoteLine * scale_;
  if (y + 2 * height > foot_) return;
  canvas_.Text("Notes", {margin_, y}, {.Size = 9 * scale_, .Ink = kGrey});
  for (int line = 1; y + line * height < foot_; ++line) {
    const double at = y + line * height;
    canvas_.Line({margin_, at}, {layout_.Paper.Width - margin_, at}, 0.4 * scale_, kGrey);
  }
}

void BookWriter::BeginSolutions(const std::string& heading) {
  if (place_ > 0) EndPage();
  canvas_.Text(heading, {margin_, margin_}, {.Size = 16 * scale_, .Boldness = Weight::Bold});
  const double gap = kSolutionGap * scale_;
  const double width = layout_.Paper.Width - 2 * margin_;
  const double top = margin_ + 27 * scale_;
  grid_.Columns = std::max(1, static_cast<int>(std::lround(width / (kSolutionWidth + gap))));
  const double side = (width - (grid_.Columns - 1) * gap) / grid_.Columns + kSolutionCaption * scale_;
  grid_.Rows = std::max(1, static_cast<int>((foot_ - top + gap) / (side + gap)));
  grid_.Top = top;
  grid_.Gap = gap;
}

void BookWriter::Solution(const PackRecord& record, const std::string& name) {
  const Box place = NextPlace(grid_, foot_);
  const double caption = kSolutionCaption * scale_;
  canvas_.Text(name, {place.X, place.Y}, {.Size = 8 * scale_, .Boldness = Weight::Bold, .OneLine = true},
               place.Width);
  BoardPicture picture = SolutionPicture(record);
  // Trees and tents say it all.
  std::replace(picture.Fields.begin(), picture.Fields.end(), int{CELL_GRASS}, int{CELL_OPEN});
  painter_.Paint(canvas_, picture, {place.X, place.Y + caption},
                 std::min(place.Width, place.Height - caption), ClueLabels::Hidden);
}

void BookWriter::Finish() {
  if (place_ > 0) EndPage();
}

}  // namespace bivouac
