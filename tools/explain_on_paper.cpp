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

constexpr double kA4Width = 595;  // Points, as all lengths here.
constexpr double kSmallestUnit = 0.7;
constexpr TextStyle kHeading{.Size = 10, .Boldness = Weight::Bold};
constexpr TextStyle kBody{.Size = 8.5};

/// A board and what is told beside it.
struct Block {
  BoardPicture Board;
  std::string Title;
  struct Paragraph {
    std::string Text;
    TextStyle Style = kBody;
  };
  std::vector<Paragraph> Paragraphs;
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

  /// How many pages the blocks take with boards of this side.
  int PagesOf(const std::vector<Block>& blocks, double side) {
    draws_ = false;
    return Run(blocks, side);
  }
  void Draw(const std::vector<Block>& blocks, double side) {
    draws_ = true;
    Run(blocks, side);
  }

 private:
  int Run(const std::vector<Block>& blocks, double side) {
    page_ = 1;
    y_ = margin_;
    for (const Block& block : blocks) Add(block, block.Board.Size == 0 ? 0 : side);
    EndPage();
    return page_ - 1;
  }

  void Add(const Block& block, double side) {
    if (y_ > margin_ && y_ + std::max(side, 60 * unit_) > bottom_) EndPage();
    const double left = margin_ + (side == 0 ? 0 : side + 14 * unit_);
    const double top = y_;
    const int page = page_;
    if (side > 0) y_ += 0.8 * side / (block.Board.Size + 1.4);
    Put(block.Title, left, kHeading, 3);
    // The title first: where a page begins with tiles within a figure, the library that draws ends in an
    // error.
    if (draws_ && side > 0)
      painter_.Paint(canvas_, block.Board, {margin_, top}, side, ClueLabels::ShownWithNames);
    for (const Block::Paragraph& paragraph : block.Paragraphs) Put(paragraph.Text, left, paragraph.Style, 3);
    if (page == page_) y_ = std::max(y_, top + side);
    y_ += 10 * unit_;
  }

  void Put(const std::string& text, double left, TextStyle style, double gap) {
    if (text.empty()) return;
    style.Size *= unit_;
    const double width = margin_ + Width() - left;
    const double height = canvas_.Measure(text, style, width).Height;
    if (y_ > margin_ && y_ + height > bottom_) EndPage();
    if (draws_) {
      const char* tag = style.Boldness == Weight::Bold ? "H2" : "P";
      canvas_.BeginTag(tag);
      canvas_.Text(text, {left, y_}, style, width);
      canvas_.EndTag(tag);
    }
    y_ += height + gap * unit_;
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

/// Plays a passage and pictures it: what its first step starts from, and each field with the step that
/// decides it.
BoardPicture PictureOf(Main& main, const Way& way, Passage passage) {
  for (std::size_t i = passage.First; i <= passage.Last; ++i) Play(main, way.Steps[i]);
  const FoundHint& first = way.Steps[passage.First].Hint;
  const bool alone = passage.First == passage.Last;
  BoardPicture picture =
      alone || first.Rule->Stage > 1 ? HintPicture(main, first, {}) : PositionPicture(main);
  const auto isOver = [&](const FieldMark& mark) {
    return mark.What == FieldMark::Kind::Option && main.Board[mark.Cell] != CELL_OPEN;
  };
  picture.Marks.erase(std::remove_if(picture.Marks.begin(), picture.Marks.end(), isOver),
                      picture.Marks.end());
  for (std::size_t i = passage.First; i <= passage.Last; ++i) {
    for (const FieldChange& change : way.Steps[i].Changes)
      picture.Marks.push_back({change.Cell, FieldMark::Kind::Decided, alone ? 0 : static_cast<int>(i) + 1});
  }
  return picture;
}

std::string Joined(const std::vector<std::string>& facts, const std::string& changes) {
  std::string text;
  for (const std::string& fact : facts) text += fact + "; ";
  return text + "so: " + changes;
}

/// The steps of a passage in words; only those beyond the first stage with their sentences, unless all are.
Block BlockOf(Main& main, const Way& way, Passage passage, bool allSentences) {
  Block block;
  for (const Passage& part : PassagesOf(way, Detail::TentsWithGrass)) {
    // Two ways to cut the steps: each part lies in a passage, or begins with its only step.
    const Passage told{std::max(part.First, passage.First), std::min(part.Last, passage.Last)};
    if (told.First > told.Last) continue;
    const Telling telling = Tell(main, way, told);
    const bool sentence = allSentences || way.Steps[told.First].Hint.Rule->Stage > 1;
    (block.Title.empty() ? block.Title : block.Paragraphs.emplace_back(Block::Paragraph{"", kHeading}).Text) =
        telling.Title;
    if (sentence) block.Paragraphs.push_back({telling.Sentence});
    block.Paragraphs.push_back({Joined(telling.Facts, telling.Changes)});
  }
  block.Board = PictureOf(main, way, passage);
  return block;
}

std::vector<Block> BlocksOf(Main& main, const Way& way, const std::string& title, const std::string& facts,
                            bool everyStep) {
  std::vector<Block> blocks;
  blocks.push_back({PositionPicture(main),
                    title,
                    {{facts + '.'},
                     {"Each step is a hint that the game gives there. Beside it stands the board when it is "
                      "done: the fields that it decides are framed, with the number of the step where there "
                      "are several; those that the first starts from stand on a ground of their own, as do "
                      "the lines that it looks at. Fields are named by row and column, which stand at the "
                      "right and below: r3c4 is the fourth field of the third row, r3c4-6 are three."},
                     {"This board shows where the way begins."}}});
  for (const Passage& passage : PassagesOf(way, everyStep ? Detail::EveryStep : Detail::Streaks))
    blocks.push_back(BlockOf(main, way, passage, everyStep));
  if (way.NotAStep) {
    const Telling telling = TellNotAStep(main, *way.NotAStep);
    blocks.push_back({HintPicture(main, way.NotAStep->Hint, way.NotAStep->Changes),
                      telling.Title,
                      {{telling.Sentence}, {Joined(telling.Facts, telling.Changes)}}});
  }
  const bool solved = way.End == SolutionWalk::End::Solved;
  if (!solved) blocks.push_back({PositionPicture(main), "Where hints end", {{WordsOf(way.End)}}});
  Block sum{{}, solved ? "Solved" : "So far", {{SumText(way.Tally)}}};
  std::string rules;
  for (const HintRule& rule : HintRules()) {
    const int times = way.Tally.TimesOf(rule);
    if (times == 0) continue;
    rules += rules.empty() ? "" : "; ";
    rules += std::to_string(times) + " × " + std::string(rule.Title) + ", " +
             Counted(static_cast<long>(times) * rule.Seconds, "second");
  }
  sum.Paragraphs.push_back({rules});
  blocks.push_back(std::move(sum));
  return blocks;
}

/// The largest side, as a share of the page's width, with which the pages are few enough for the board.
double SideFor(Flow& flow, const std::vector<Block>& blocks, int size) {
  const int most = 2 + (size - kMinSize) / 2;
  double side = 0;
  for (const double share : {0.62, 0.52, 0.44, 0.38, 0.33, 0.29, 0.26, 0.23, 0.2}) {
    side = share * flow.Width();
    if (flow.PagesOf(blocks, side) <= most) break;
  }
  return side;
}

}  // namespace

ExitStatus ExplainOnPaper(const ExplainOptions& options, Terminal&) {
  const std::string& output = options.Drawing.Output;
  if (FormatOfName(output) != PictureFormat::Pdf) throw InputError(output + ": the name must end in .pdf");
  const Extent paper = PaperOf(options.Paper);
  RequireNoInput(output, {options.Pack});
  Workbench bench;
  const PackRecord record = StartPuzzleOn(bench, options.Pack, options.Number, {"--from", options.From});
  Workbench other;
  const std::string name =
      "No. " + std::to_string(options.Number) + ", " + SizeText(bench.main.BoardSize) + ", explained";
  const BoardPainter painter(options.Drawing.Colour ? Look::ColourForPencil : Look::Ink);
  Canvas canvas(output, PictureFormat::Pdf, paper, "Bivouac " + name,
                options.Drawing.Force ? Overwrite::Yes : Overwrite::No);
  Flow flow(canvas, painter);
  const std::vector<Block> blocks =
      BlocksOf(bench.main, WayFrom(bench.main), name, FactsText(FactsOf(other.main, record)), options.Long);
  flow.Draw(blocks, options.Long ? 0.33 * flow.Width() : SideFor(flow, blocks, bench.main.BoardSize));
  canvas.Close();
  return ExitStatus::Done;
}

}  // namespace bivouac
