#include <algorithm>
#include <optional>
#include <set>

#include "drawing/book.h"
#include "drawing/hint_picture.h"
#include "game/text.h"
#include "packs/pack_access.h"
#include "packs/puzzle_facts.h"
#include "tools/drawing_commands.h"
#include "walks/explanation.h"

namespace bivouac {
namespace {

constexpr double kA4Width = 595;  // Points, as all lengths here.
constexpr double kSmallestUnit = 0.7;
constexpr int kMostBoards = 6;         // Below each other.
constexpr double kWidestBoard = 0.62;  // Of the width.
constexpr double kLeastField = 10;     // 3.5 mm, on A4.
constexpr TextStyle kHeading{.Size = 9, .Boldness = Weight::Bold};
constexpr TextStyle kBody{.Size = 8.5};

struct Paragraph {
  std::string Text;
  TextStyle Style = kBody;
};

/// A board and what is told beside it.
struct Block {
  std::vector<Paragraph> Paragraphs;
  BoardPicture Board;            ///< Without a size: none.
  std::optional<Passage> Steps;  ///< That the board is to show; else it stands already.
  bool FollowsFrom = false;      ///< The steps are of the first stage.
};

/// Blocks one below the other, on as many pages as they take.
class Flow {
 public:
  Flow(Canvas& canvas, const BoardPainter& painter)
      : canvas_(canvas),
        painter_(painter),
        unit_(std::clamp(canvas.Page().Width / kA4Width, kSmallestUnit, 1.0)),
        margin_(42 * unit_),
        bottom_(canvas.Page().Height - margin_ - 22 * unit_) {}

  double Width() const { return canvas_.Page().Width - 2 * margin_; }
  /// The side of boards of which so many fill a page.
  double SideOf(int boards) const { return (bottom_ - margin_ - (boards - 1) * Gap()) / boards; }
  /// That of a board whose fields one can still read.
  double LeastSide(int size) const { return kLeastField * unit_ * (size + 1.4); }

  /// How many pages the blocks take with boards of this side.
  int PagesOf(const std::vector<Block>& blocks, double side) {
    draws_ = false;
    return Run(blocks, side);
  }
  void Draw(const std::vector<Block>& blocks, double side) {
    draws_ = true;
    Run(blocks, side);
  }
  /// Steps that follow each other come to one board of this side as long as their text has room beside it:
  /// all, or only those of the first stage to what is before them.
  std::vector<Block> Joined(const std::vector<Block>& blocks, double side, bool all) {
    std::vector<Block> joined;
    double height = 0;
    for (const Block& block : blocks) {
      double more = 0;
      for (const Paragraph& paragraph : block.Paragraphs) more += HeightOf(paragraph, LeftOf(side));
      height += more;
      if (!joined.empty() && joined.back().Steps && block.Steps && (all || block.FollowsFrom) &&
          height <= side) {
        joined.back().Steps->Last = block.Steps->Last;
        joined.back().Paragraphs.insert(joined.back().Paragraphs.end(), block.Paragraphs.begin(),
                                        block.Paragraphs.end());
      } else {
        joined.push_back(block);
        height = more;
      }
    }
    return joined;
  }

 private:
  int Run(const std::vector<Block>& blocks, double side) {
    page_ = 1;
    y_ = margin_;
    for (const Block& block : blocks) Add(block, block.Board.Size == 0 ? 0 : side);
    EndPage();
    return page_ - 1;
  }

  double Gap() const { return 10 * unit_; }
  double LeftOf(double side) const { return margin_ + (side == 0 ? 0 : side + 14 * unit_); }

  void Add(const Block& block, double side) {
    if (y_ > margin_ && y_ + std::max(side, 60 * unit_) > bottom_ + 0.01) EndPage();
    const double top = y_;
    const int page = page_;
    bool painted = !draws_ || side == 0;
    for (const Paragraph& paragraph : block.Paragraphs) {
      Put(paragraph, LeftOf(side));
      // The title first: where a page begins with tiles within a figure, the library that draws ends in an
      // error.
      if (!painted) painter_.Paint(canvas_, block.Board, {margin_, top}, side, ClueLabels::ShownWithNames);
      painted = true;
    }
    if (page == page_) y_ = std::max(y_, top + side);
    y_ += Gap();
  }

  double HeightOf(const Paragraph& paragraph, double left) {
    TextStyle style = paragraph.Style;
    style.Size *= unit_;
    return canvas_.Measure(paragraph.Text, style, margin_ + Width() - left).Height + 3 * unit_;
  }

  void Put(const Paragraph& paragraph, double left) {
    const double height = HeightOf(paragraph, left);
    if (y_ > margin_ && y_ + height > bottom_) EndPage();
    if (draws_) {
      TextStyle style = paragraph.Style;
      style.Size *= unit_;
      const char* tag = style.Boldness == Weight::Bold ? "H2" : "P";
      canvas_.BeginTag(tag);
      canvas_.Text(paragraph.Text, {left, y_}, style, margin_ + Width() - left);
      canvas_.EndTag(tag);
    }
    y_ += height;
  }

  void EndPage() {
    if (draws_) {
      canvas_.Text(std::to_string(page_),
                   {canvas_.Page().Width / 2, canvas_.Page().Height - margin_ - 10 * unit_},
                   {.Size = 9 * unit_, .Align = Alignment::Centre, .Ink = kGrey});
      canvas_.EndPage();
    }
    ++page_;
    y_ = margin_;
  }

  Canvas& canvas_;
  const BoardPainter& painter_;
  const double unit_;  ///< Of type and distances: 1 on A4.
  const double margin_;
  const double bottom_;
  bool draws_ = false;
  int page_ = 1;
  double y_ = 0;
};

std::string Reasoning(const std::vector<std::string>& facts, const std::string& changes) {
  std::string text;
  for (const std::string& fact : facts) text += fact + "; ";
  return text + "so: " + changes;
}

/// The way in blocks, those of steps without their boards. A sentence is told where it is needed first, that
/// of a step of the first stage not at all, unless every step is told.
std::vector<Block> BlocksOf(Main& main, const Way& way, const std::string& title, const std::string& facts,
                            bool everyStep) {
  std::vector<Block> blocks;
  blocks.push_back(
      {{{title, kHeading},
        {facts + '.'},
        {"Each step is a hint that the game gives there; what it says of a rule stands where the "
         "rule is needed first. Beside the steps stands the board when they are done: the fields "
         "that they decide are framed, with the number of the step where there are several; "
         "those that a step beyond the first stage starts from stand on a ground of their own, "
         "as do the lines that it looks at. Fields are named by row and column, which stand at "
         "the right and below: r3c4 is the fourth field of the third row, r3c4-6 are three."},
        {"This board shows where the way begins."}},
       PositionPicture(main),
       {}});
  std::set<std::size_t> said;
  for (const Passage& passage : PassagesOf(way, everyStep ? Detail::EveryStep : Detail::TentsWithGrass)) {
    const FoundHint& hint = way.Steps[passage.First].Hint;
    const Telling telling = Tell(main, way, passage);
    blocks.push_back({{{telling.Title, kHeading}}, {}, passage, hint.Rule->Stage == 1});
    std::vector<Paragraph>& paragraphs = blocks.back().Paragraphs;
    if (everyStep || (hint.Rule->Stage > 1 && said.insert(PlaceOf(hint)).second))
      paragraphs.push_back({telling.Sentence});
    paragraphs.push_back({Reasoning(telling.Facts, telling.Changes)});
  }
  for (Block& block : blocks) block.Board.Size = main.BoardSize;
  return blocks;
}

/// What stands behind the steps, once they are played.
void AddEnd(std::vector<Block>& blocks, const Main& main, const Way& way) {
  if (way.NotAStep) {
    const Telling telling = TellNotAStep(main, *way.NotAStep);
    blocks.push_back(
        {{{telling.Title, kHeading}, {telling.Sentence}, {Reasoning(telling.Facts, telling.Changes)}},
         HintPicture(main, way.NotAStep->Hint, way.NotAStep->Changes),
         {}});
  }
  const bool solved = way.End == SolutionWalk::End::Solved;
  if (!solved)
    blocks.push_back({{{"Where hints end", kHeading}, {WordsOf(way.End)}}, PositionPicture(main), {}});
  std::string rules;
  for (const HintRule& rule : HintRules()) {
    const int times = way.Tally.TimesOf(rule);
    if (times == 0) continue;
    rules += rules.empty() ? "" : "; ";
    rules += std::to_string(times) + " × " + std::string(rule.Title) + ", " +
             Counted(static_cast<long>(times) * rule.Seconds, "second");
  }
  blocks.push_back({{{solved ? "Solved" : "So far", kHeading}, {SumText(way.Tally)}, {rules}}, {}, {}});
}

/// Chooses the side of the boards, and joins steps to boards, so that the pages are few enough for the size.
double LayOut(Flow& flow, std::vector<Block>& blocks, int size) {
  const int most = 2 + (size - kMinSize) / 2;
  const auto fit = [&](double side, bool all) {
    std::vector<Block> joined = flow.Joined(blocks, side, all);
    const bool few = flow.PagesOf(joined, side) <= most;
    if (few) blocks = std::move(joined);
    return few;
  };
  for (const bool all : {false, true}) {
    for (int boards = 2; boards <= kMostBoards; ++boards) {
      const double side = std::min(flow.SideOf(boards), kWidestBoard * flow.Width());
      if (side < flow.LeastSide(size)) break;
      if (fit(side, all)) return side;
    }
  }
  const double side = std::min(flow.LeastSide(size), kWidestBoard * flow.Width());
  blocks = flow.Joined(blocks, side, true);
  return side;
}

}  // namespace

ExitStatus ExplainOnPaper(const ExplainOptions& options, Terminal&) {
  const std::string& output = options.Drawing.Output;
  if (FormatOfName(output) != PictureFormat::Pdf) throw InputError(output + ": the name must end in .pdf");
  const Extent paper = PaperOf(options.Paper);
  RequireNoInput(output, {options.Pack});
  Workbench bench;
  Main& main = bench.main;
  const PackRecord record = StartPuzzleOn(bench, options.Pack, options.Number, {"--from", options.From});
  CheckPaper({paper, 1}, main.BoardSize);
  Workbench other;
  const std::string name =
      "No. " + std::to_string(options.Number) + ", " + SizeText(main.BoardSize) + ", explained";
  const BoardPainter painter(options.Drawing.Colour ? Look::ColourForPencil : Look::Ink);
  Canvas canvas(output, PictureFormat::Pdf, paper, "Bivouac " + name,
                options.Drawing.Force ? Overwrite::Yes : Overwrite::No);
  Flow flow(canvas, painter);
  const Way way = WayFrom(main);
  std::vector<Block> blocks = BlocksOf(main, way, name, FactsText(FactsOf(other.main, record)), options.Long);
  const Array<int> before = main.Board;
  for (const WayStep& step : way.Steps) Play(main, step);
  AddEnd(blocks, main, way);
  main.Board = before;
  const double side = options.Long ? 0.33 * flow.Width() : LayOut(flow, blocks, main.BoardSize);
  for (Block& block : blocks) {
    if (block.Steps) block.Board = PassagePicture(main, way, *block.Steps);
  }
  flow.Draw(blocks, side);
  canvas.Close();
  return ExitStatus::Done;
}

}  // namespace bivouac
