#include <algorithm>
#include <cmath>
#include <cstdio>

#include "drawing/canvas.h"
#include "game/error.h"
#include "tools/drawing_commands.h"
#include "walks/pack_stats.h"

namespace bivouac {
namespace {

// Light to dark, so that they stay apart in grey too.
constexpr Colour kLevelColours[] = {
    {0.66, 0.84, 0.48}, {0.86, 0.64, 0.16}, {0.86, 0.42, 0.18}, {0.75, 0.22, 0.20}, {0.32, 0.10, 0.32}};
constexpr Colour kRule{0.8, 0.8, 0.8};
constexpr TextStyle kHeading{.Size = 14, .Boldness = Weight::Bold};
constexpr TextStyle kLabel{.Size = 11};
constexpr TextStyle kLabelRight{.Size = 11, .Align = Alignment::Right};
constexpr TextStyle kLabelCentre{.Size = 11, .Align = Alignment::Centre};

/// A round step that cuts a range into a handful of pieces.
double StepOf(double range) {
  const double power = std::pow(10, std::floor(std::log10(std::max(range, 1e-9))));
  for (const double step : {0.1, 0.2, 0.5, 1.0, 2.0}) {
    if (range / (step * power) <= 6) return step * power;
  }
  return 5 * power;
}

std::string Short(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g", value);
  return text;
}

/// A level's form: filled and open circle, square, triangle, cross.
void DrawForm(Canvas& canvas, int level, Point at, double radius) {
  cairo_t* pen = canvas.Pen();
  canvas.SetColour(kLevelColours[level - 1]);
  cairo_set_line_width(pen, radius * 0.5);
  cairo_new_path(pen);
  switch (level) {
    case 1:
      cairo_arc(pen, at.X, at.Y, radius, 0, 6.2831853);
      return cairo_fill(pen);
    case 2:
      cairo_arc(pen, at.X, at.Y, radius * 0.9, 0, 6.2831853);
      return cairo_stroke(pen);
    case 3:
      cairo_rectangle(pen, at.X - radius * 0.9, at.Y - radius * 0.9, radius * 1.8, radius * 1.8);
      return cairo_fill(pen);
    case 4:
      cairo_move_to(pen, at.X, at.Y - radius * 1.3);
      cairo_line_to(pen, at.X + radius * 1.2, at.Y + radius);
      cairo_line_to(pen, at.X - radius * 1.2, at.Y + radius);
      return cairo_fill(pen);
    default:
      for (const double side : {-radius, radius}) {
        cairo_move_to(pen, at.X - side, at.Y - radius);
        cairo_line_to(pen, at.X + side, at.Y + radius);
      }
      return cairo_stroke(pen);
  }
}

/// Every puzzle that hints finish as its level's form: seconds of hints to the right, difficulty upward.
void PlotPuzzles(Canvas& canvas, const Box& box, const PackStats& stats) {
  double mostSeconds = 1;
  double mostDifficulty = 0.1;
  for (const PackStats::Pack& pack : stats.Packs) {
    for (const PuzzleStats& puzzle : pack.Puzzles) {
      mostSeconds = std::max(mostSeconds, static_cast<double>(puzzle.Seconds));
      mostDifficulty = std::max(mostDifficulty, static_cast<double>(puzzle.Difficulty));
    }
  }
  const auto place = [&](double seconds, double difficulty) {
    return Point{box.X + box.Width * seconds / mostSeconds,
                 box.Y + box.Height * (1 - difficulty / mostDifficulty)};
  };
  for (int line = 0; line * StepOf(mostSeconds) <= mostSeconds; ++line) {
    const double at = line * StepOf(mostSeconds);
    const Point foot = place(at, 0);
    canvas.Line(foot, place(at, mostDifficulty), 0.6, kRule);
    canvas.Text(Short(at), {foot.X, foot.Y + 4}, kLabelCentre);
  }
  for (int line = 0; line * StepOf(mostDifficulty) <= mostDifficulty; ++line) {
    const double at = line * StepOf(mostDifficulty);
    const Point left = place(0, at);
    canvas.Line(left, place(mostSeconds, at), 0.6, kRule);
    canvas.Text(Short(at), {left.X - 6, left.Y - 7}, kLabelRight);
  }
  canvas.Text("seconds of hints", {box.X + box.Width / 2, box.Y + box.Height + 20}, kLabelCentre);
  canvas.Text("Difficulty", {box.X - 40, box.Y - 40}, kHeading);
  for (int level = 1; level <= 5; ++level) {
    for (const PackStats::Pack& pack : stats.Packs) {
      for (const PuzzleStats& puzzle : pack.Puzzles) {
        if (puzzle.Level == level && puzzle.Finished)
          DrawForm(canvas, level, place(puzzle.Seconds, static_cast<double>(puzzle.Difficulty)), 2.6);
      }
    }
    const double x = box.X + 70 * level - 10;
    DrawForm(canvas, level, {x + 5, box.Y - 29}, 5);
    canvas.Text("level " + std::to_string(level), {x + 14, box.Y - 36}, kLabel);
  }
}

/// Puzzles of each pack as a bar, cut by level.
void PlotLevels(Canvas& canvas, const Box& box, const PackStats& stats) {
  canvas.Text("Puzzles by pack and level", {box.X - 40, box.Y - 40}, kHeading);
  std::size_t most = 1;
  for (const PackStats::Pack& pack : stats.Packs) most = std::max(most, pack.Puzzles.size());
  const double bar = std::min(22.0, box.Height / static_cast<double>(stats.Packs.size()));
  double y = box.Y;
  for (const PackStats::Pack& pack : stats.Packs) {
    if (bar >= 11) canvas.Text(pack.Name, {box.X + 60, y + (bar - 15) / 2}, kLabelRight);
    double x = box.X + 68;
    for (int level = 1; level <= 5; ++level) {
      const auto count = std::count_if(pack.Puzzles.begin(), pack.Puzzles.end(),
                                       [&](const PuzzleStats& puzzle) { return puzzle.Level == level; });
      const double width = (box.Width - 110) * static_cast<double>(count) / static_cast<double>(most);
      const Box part{x, y + bar * 0.1, width, bar * 0.8};
      canvas.Fill(part, kLevelColours[level - 1]);
      if (bar >= 11 && width >= 8)
        canvas.TextInBox(std::to_string(level), part, {.Size = 9, .Ink = level >= 4 ? kWhite : kBlack});
      x += width;
    }
    canvas.Text(std::to_string(pack.Puzzles.size()), {x + 6, y + (bar - 15) / 2}, kLabel);
    y += bar;
  }
}

/// Share of the puzzles of each level that need a rule, as darker and lighter fields.
void PlotRules(Canvas& canvas, const Box& box, const PackStats& stats) {
  canvas.Text("Puzzles whose way by hints needs a rule", {box.X - 40, box.Y - 40}, kHeading);
  const std::span<const HintRule> rules = HintRules();
  const double height = box.Height / static_cast<double>(rules.size());
  const double width = 52;
  const double left = box.X + box.Width - 5 * width;
  for (int level = 1; level <= 5; ++level) {
    canvas.Text(std::to_string(level), {left + (level - 0.5) * width, box.Y - 18}, kLabelCentre);
  }
  for (std::size_t rule = 0; rule < rules.size(); ++rule) {
    const double y = box.Y + height * static_cast<double>(rule);
    canvas.Text(std::string(rules[rule].Title), {left - 8, y + (height - 14) / 2}, kLabelRight);
    for (int level = 1; level <= 5; ++level) {
      const long count = stats.Count(level);
      if (count == 0) continue;
      const double share =
          static_cast<double>(stats.CountNeeding(level, CasesOf(rules[rule]))) / static_cast<double>(count);
      const auto mixed = [&](double full) { return 1 - (1 - full) * std::sqrt(share); };
      const Colour full{0.16, 0.42, 0.16};
      const Box field{left + (level - 1) * width, y, width - 1, height - 1};
      canvas.Fill(field, {mixed(full.Red), mixed(full.Green), mixed(full.Blue)});
      char text[16];
      std::snprintf(text, sizeof text, share > 0 && share < 0.001 ? "%.2f" : "%.1f", 100 * share);
      if (share > 0) {
        canvas.TextInBox(text, field, {.Size = 10, .Ink = share > 0.3 ? kWhite : kBlack});
      }
    }
  }
  canvas.Text("per cent, by level", {left + 2.5 * width, box.Y + box.Height + 4}, kLabelCentre);
}

}  // namespace

void CheckPlot(const DrawingOptions& options) {
  if (!FormatOfName(options.Output))
    throw InputError(options.Output + ": the name must end in .svg, .pdf or .png");
}

void PlotStats(const DrawingOptions& options, const PackStats& stats, const std::function<bool()>& mayKeep) {
  Canvas canvas(options.Output, *FormatOfName(options.Output), {1000, 780}, "Packs of Bivouac",
                options.Force ? Overwrite::Yes : Overwrite::No);
  // A PDF is white by itself, and forgets the tags before what fills a page.
  if (FormatOfName(options.Output) != PictureFormat::Pdf) canvas.Fill({0, 0, 1000, 780}, kWhite);
  canvas.BeginFigure(
      "Difficulty and seconds of hints, puzzles by pack and level, and the rules that hints need: the "
      "numbers are those that the table of bivouac-packs stats tells.");
  PlotPuzzles(canvas, {70, 70, 420, 290}, stats);
  PlotLevels(canvas, {70, 470, 420, 286}, stats);
  PlotRules(canvas, {570, 70, 400, 660}, stats);
  canvas.EndTag("Figure");
  canvas.EndPage();
  canvas.Finish();
  if (mayKeep()) canvas.Close();
}

}  // namespace bivouac
