#include <cctype>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "drawing/hint_picture.h"
#include "guide/guide.h"
#include "packs/pack_access.h"

namespace bivouac {
namespace {

constexpr double kField = 34;  // Pixels, with the clues' margin counted in.

/// Shortens the numbers of outlines to a tenth of a pixel: these pictures are kept in many copies.
std::string WithShortNumbers(const std::string& svg) {
  std::string out;
  bool inPath = false;
  for (std::size_t at = 0; at < svg.size(); ++at) {
    if (svg.compare(at, 4, " d=\"") == 0) {
      inPath = true;
      out += " d=\"";
      at += 3;
    } else if (inPath && svg[at] == '"') {
      inPath = false;
      out += '"';
    } else if (inPath && svg[at] == '.') {
      // One digit is kept; numbers are not rounded up, which no eye can tell.
      std::size_t end = at + 1;
      while (end < svg.size() && std::isdigit(static_cast<unsigned char>(svg[end]))) ++end;
      if (svg[at + 1] != '0') out += svg.substr(at, 2);
      at = end - 1;
    } else {
      out += svg[at];
    }
  }
  return out;
}

void DrawBoard(const BoardPicture& board, const std::string& title, const std::string& path) {
  static const BoardPainter painter(Look::Colour);
  const double side = kField * (board.Size + 1.4);
  {
    Canvas canvas(path, PictureFormat::Svg, {side, side}, title, Overwrite::Yes);
    canvas.Fill({0, 0, side, side}, kWhite);
    painter.Paint(canvas, board, {0, 0}, side, ClueLabels::ShownWithNames);
    canvas.Close();
  }
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  std::ofstream out(path, std::ios::binary);
  if (!(out << WithShortNumbers(bytes.str())).flush()) throw InputError(path + ": cannot be written");
}

}  // namespace

void DrawGuideHint(Main& main, const GuideHint& hint, const std::string& path) {
  DrawBoard(HintPicture(main, hint.Hint, hint.Changes), hint.Name(), path + ".svg");
  for (const FieldChange& change : hint.Changes) main.Board[change.Cell] = change.Code;
  BoardPicture after = PositionPicture(main);
  for (const FieldChange& change : hint.Changes)
    after.Marks.push_back({change.Cell, FieldMark::Kind::Decided});
  DrawBoard(after, hint.Name() + ", after it", path + ".after.svg");
}

void DrawExercise(const Main& main, const GuideHint& hint, const std::string& path) {
  DrawBoard(PositionPicture(main), "An exercise", path + ".svg");
  DrawBoard(HintPicture(main, hint.Hint, hint.Changes), hint.Name(), path + ".answer.svg");
}

void DrawWorked(Workbench& bench, const Way& way, const std::string& path) {
  DrawBoard(PositionPicture(bench.main), "The start", path + "-0.svg");
  int number = 0;
  for (const std::vector<Passage>& told : PicturesOf(way)) {
    const Passage all{told.front().First, told.back().Last};
    const BoardPicture picture = PassagePicture(bench.main, way, all);
    DrawBoard(picture, "Steps " + std::to_string(all.First + 1) + " to " + std::to_string(all.Last + 1),
              path + '-' + std::to_string(++number) + ".svg");
  }
}

}  // namespace bivouac
