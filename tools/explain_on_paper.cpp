#include <algorithm>

#include "drawing/book.h"
#include "drawing/hint_picture.h"
#include "game/text.h"
#include "packs/pack_access.h"
#include "packs/puzzle_facts.h"
#include "tools/drawing_commands.h"
#include "walks/explanation.h"

namespace bivouac {
namespace {

constexpr double kMargin = 42;  // Points, as all lengths here.
constexpr double kFoot = 22;
constexpr int kBlocksPerPage = 4;
constexpr double kGap = 16;

/// Blocks of a board and its text, some a page.
class Blocks {
 public:
  Blocks(Canvas& canvas, const BoardPainter& painter) : canvas_(canvas), painter_(painter) {
    const double room = canvas.Page().Height - 2 * kMargin - kFoot;
    height_ = (room - (kBlocksPerPage - 1) * kGap) / kBlocksPerPage;
  }

  void Add(const BoardPicture& board, const std::string& title, const std::vector<std::string>& paragraphs) {
    if (place_ == kBlocksPerPage) EndPage();
    const double y = kMargin + place_ * (height_ + kGap);
    painter_.Paint(canvas_, board, {kMargin, y}, height_);
    const double left = kMargin + height_ + 18;
    const double width = canvas_.Page().Width - kMargin - left;
    double at = y + height_ * 0.8 / (board.Size + 0.8);
    at += canvas_.Text(title, {left, at}, {.Size = 11, .Boldness = Weight::Bold}, width) + 4;
    for (const std::string& paragraph : paragraphs) {
      at += canvas_.Text(paragraph, {left, at}, {.Size = 9}, width) + 5;
    }
    ++place_;
  }

  /// Text alone, on a page that has room for it.
  void AddSum(const std::string& title, const std::string& sum, const WayTally& tally) {
    if (place_ > 2) EndPage();
    double at = kMargin + place_ * (height_ + kGap);
    at += canvas_.Text(title, {kMargin, at}, {.Size = 11, .Boldness = Weight::Bold}) + 4;
    at += canvas_.Text(sum, {kMargin, at}, {.Size = 9}, canvas_.Page().Width - 2 * kMargin) + 8;
    for (const HintRule& rule : HintRules()) {
      const int times = tally.TimesOf(rule);
      if (times == 0) continue;
      canvas_.Text(std::to_string(times), {kMargin + 24, at}, {.Size = 9, .Align = Alignment::Right});
      canvas_.Text(std::string(rule.Title), {kMargin + 36, at}, {.Size = 9});
      at += canvas_.Text(Counted(static_cast<long>(times) * rule.Seconds, "second"), {kMargin + 240, at},
                         {.Size = 9, .Align = Alignment::Right});
    }
    EndPage();
  }

 private:
  void EndPage() {
    canvas_.Text(std::to_string(++page_), {canvas_.Page().Width / 2, canvas_.Page().Height - kMargin - 10},
                 {.Size = 9, .Align = Alignment::Centre, .Ink = kGrey});
    canvas_.EndPage();
    place_ = 0;
  }

  Canvas& canvas_;
  const BoardPainter& painter_;
  double height_;
  int place_ = 0;
  int page_ = 0;
};

}  // namespace

ExitStatus ExplainOnPaper(const ExplainOptions& options, Terminal&) {
  const std::string& output = options.Drawing.Output;
  if (FormatOfName(output) != PictureFormat::Pdf) throw InputError(output + ": the name must end in .pdf");
  RequireNoInput(output, {options.Pack});
  Workbench bench;
  Main& main = bench.main;
  const PackRecord record = StartPuzzleOn(bench, options.Pack, options.Number, {"--from", options.From});
  Workbench other;
  const std::string name = "No. " + std::to_string(options.Number);
  const BoardPainter painter(options.Drawing.Colour ? Look::Colour : Look::Ink);
  Canvas canvas(output, PictureFormat::Pdf, *PaperOf("a4"), "Bivouac " + name + ", explained",
                options.Drawing.Force ? Overwrite::Yes : Overwrite::No);
  Blocks blocks(canvas, painter);
  blocks.Add(
      PositionPicture(main), name + ", explained",
      {FactsText(FactsOf(other.main, record)) + '.',
       "Each step is the hint that the game gives there, and the board when it is done: the fields that "
       "the hint decides are framed, those that it starts from stand on a ground of their own. Fields "
       "are named by row and column: r3c4 is the fourth field of the third row.",
       "The board shows where the way begins."});
  SolutionWalk walk(main);
  WayTally tally;
  const auto addStep = [&](const std::string& title) {
    const FoundHint& hint = walk.Hint();
    blocks.Add(HintPicture(main, hint, walk.Changes()), title + ": " + std::string(hint.Rule->Title),
               {SentenceOf(hint), ChangesText(main, walk.Changes()),
                "Stage " + std::to_string(hint.Rule->Stage) + ", " + Counted(hint.Rule->Seconds, "second")});
  };
  while (walk.Next()) {
    tally.Add(*walk.Hint().Rule);
    addStep("Step " + std::to_string(tally.Steps()));
  }
  if (walk.Ended() == SolutionWalk::End::WrongHint || walk.Ended() == SolutionWalk::End::NothingNew)
    addStep("Not a step");
  if (walk.Ended() != SolutionWalk::End::Solved)
    blocks.Add(PositionPicture(main), "Where hints end", {WordsOf(walk.Ended())});
  blocks.AddSum(walk.Ended() == SolutionWalk::End::Solved ? "Solved" : "So far", SumText(tally), tally);
  canvas.Close();
  return ExitStatus::Done;
}

}  // namespace bivouac
