#include "drawing/board_painter.h"

#include <algorithm>
#include <librsvg/rsvg.h>
#include <stdexcept>
#include <string>

#include "drawing/tile_sources.h"
#include "game/game_state.h"
#include "game/text.h"

namespace bivouac {
namespace {

constexpr double kTileSide = 540;    // Of the sources.
constexpr double kClueMargin = 0.8;  // Fields' worth of room for the clues, at the left and on top.
constexpr double kNameMargin = 0.6;  // The same for the names of lines, at the right and below.
constexpr std::string_view kLightField = ".edge { fill: #9c9c9c; } .ground { fill: #f7f7f7; }";
constexpr Colour kMarkedInk{0.75, 0.75, 0.75};
constexpr Colour kReasonFrame{1, 0.5, 0.15};  // As the marked tiles.
constexpr Colour kDecidedFrame{0.0, 0.16, 0.55};
constexpr Colour kOptionGround{0.93, 0.93, 0.88};
constexpr Colour kLineShade{1, 0.8, 0.2};

/// A tile as a list of strokes, which a PDF or SVG keeps once, however often it is painted.
cairo_surface_t* Record(std::string_view source, std::string_view style) {
  GError* error = nullptr;
  RsvgHandle* handle =
      rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(source.data()), source.size(), &error);
  const cairo_rectangle_t extent{0, 0, kTileSide, kTileSide};
  cairo_surface_t* surface = cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extent);
  cairo_t* pen = cairo_create(surface);
  const RsvgRectangle viewport{0, 0, kTileSide, kTileSide};
  const bool drawn =
      handle != nullptr &&
      (style.empty() || rsvg_handle_set_stylesheet(handle, reinterpret_cast<const guint8*>(style.data()),
                                                   style.size(), &error) != 0) &&
      rsvg_handle_render_document(handle, pen, &viewport, &error) != 0;
  cairo_destroy(pen);
  if (handle != nullptr) g_object_unref(handle);
  if (!drawn) {
    const std::string reason = error != nullptr ? error->message : "no reason given";
    g_clear_error(&error);
    cairo_surface_destroy(surface);
    throw std::runtime_error("a tile cannot be drawn: " + reason);
  }
  return surface;
}

BoardPicture PictureOf(const PackRecord& record) {
  BoardPicture picture;
  picture.Size = SizeOf(record.LevelSize);
  for (int cell = 0; cell < picture.Size * picture.Size; ++cell) {
    picture.Fields.Add(record.Layout[cell]);
  }
  for (int line = 0; line < picture.Size; ++line) {
    picture.RowClues.Add(record.RowCounts[line]);
    picture.ColClues.Add(record.ColCounts[line]);
  }
  return picture;
}

/// Keeps those of the codes that `kept` says, the others become `instead`.
template <class Kept>
BoardPicture Only(BoardPicture picture, Kept kept) {
  for (int& code : picture.Fields) {
    if (!kept(code)) code = CELL_OPEN;
  }
  return picture;
}

}  // namespace

BoardPicture PuzzlePicture(const PackRecord& record) {
  return Only(PictureOf(record), [](int code) { return code == CELL_TREE; });
}

BoardPicture SolutionPicture(const PackRecord& record) {
  BoardPicture picture = PictureOf(record);
  // What the layout left open holds no tent either.
  std::replace(picture.Fields.begin(), picture.Fields.end(), int{CELL_OPEN}, int{CELL_GRASS});
  return picture;
}

std::string WordsOf(const BoardPicture& board) {
  std::string words = SizeText(board.Size) + " fields. Numbers above the columns:";
  for (int line = 0; line < board.Size; ++line) words += ' ' + std::to_string(board.ColClues[line]);
  words += '.';
  for (int row = 0; row < board.Size; ++row) {
    words += " Row " + std::to_string(row + 1) + ", number " + std::to_string(board.RowClues[row]);
    const char* separator = ": ";
    for (const auto& [code, thing] :
         {std::pair{CELL_TREE, "tree"}, {CELL_TENT, "tent"}, {CELL_GRASS, "grass"}}) {
      std::string columns;
      for (int col = 0; col < board.Size; ++col) {
        if (board.Fields[row * board.Size + col] == code)
          columns += (columns.empty() ? "" : ", ") + std::to_string(col + 1);
      }
      if (columns.empty()) continue;
      words += std::string(separator) + thing + " in " + columns;
      separator = "; ";
    }
    words += '.';
  }
  return words;
}

Colour BoardPainter::Ground() const {
  return look_ == Look::Colour ? Colour{0.878, 0.878, 0.878} : kWhite;
}

BoardGeometry::BoardGeometry(int size, Point corner, double side, ClueLabels clues)
    : Size(size),
      Corner(corner),
      Pitch(side / (size + (clues == ClueLabels::Hidden ? 0 : kClueMargin) +
                    (clues == ClueLabels::ShownWithNames ? kNameMargin : 0))) {
  if (clues != ClueLabels::Hidden) {
    Corner.X += kClueMargin * Pitch;
    Corner.Y += kClueMargin * Pitch;
  }
}

Box BoardGeometry::Field(int cell) const {
  const int row = cell / Size;
  const int col = cell % Size;
  return {Corner.X + col * Pitch, Corner.Y + row * Pitch, Pitch, Pitch};
}

BoardPainter::BoardPainter(Look look) : look_(look) {
  for (int code = CELL_OPEN; code <= CELL_TREE; ++code) {
    const bool light = look == Look::ColourForPencil && code == CELL_OPEN;
    tiles_[code] = Record(kTileSources[code], look == Look::Ink ? kInkStyle
                                              : light           ? kLightField
                                                                : std::string_view());
    marked_[code] = Record(kTileSources[code], look == Look::Ink ? kInkStyle : kMarkedStyle);
  }
  bareTent_ = Record(kTileSources[CELL_TENT], look == Look::Ink ? kInkStyle : "rect { fill: none; }");
}

BoardPainter::~BoardPainter() {
  cairo_surface_destroy(bareTent_);
  for (cairo_surface_t* tile : tiles_) cairo_surface_destroy(tile);
  for (cairo_surface_t* tile : marked_) cairo_surface_destroy(tile);
}

void BoardPainter::PaintTile(cairo_t* pen, cairo_surface_t* tile, const Box& field) const {
  cairo_save(pen);
  cairo_translate(pen, field.X, field.Y);
  cairo_scale(pen, field.Width / kTileSide, field.Height / kTileSide);
  cairo_set_source_surface(pen, tile, 0, 0);
  cairo_paint(pen);
  cairo_restore(pen);
}

void BoardPainter::Paint(Canvas& canvas, const BoardPicture& board, Point corner, double side,
                         ClueLabels clues) const {
  const BoardGeometry geometry(board.Size, corner, side, clues);
  cairo_t* pen = canvas.Pen();
  canvas.BeginFigure(WordsOf(board));
  const double pitch = geometry.Pitch;
  const Box all{geometry.Corner.X, geometry.Corner.Y, pitch * board.Size, pitch * board.Size};
  if (look_ == Look::Ink) canvas.Fill(all, kWhite);

  FixedArray<bool, kMaxCells> marked;
  for (const FieldMark& mark : board.Marks) {
    if (mark.What == FieldMark::Kind::Reason) marked[mark.Cell] = true;
  }
  for (int cell = 0; cell < board.Size * board.Size; ++cell) {
    const int code = board.Fields[cell];
    const Box field = geometry.Field(cell);
    if (look_ != Look::Ink) {
      PaintTile(pen, (marked[cell] ? marked_ : tiles_)[code], field);
      continue;
    }
    if (marked[cell]) canvas.Fill(field, kMarkedInk);
    if (code == CELL_GRASS) {
      canvas.SetColour(kGrey);
      cairo_arc(pen, field.X + pitch / 2, field.Y + pitch / 2, pitch * 0.07, 0, 6.2831853);
      cairo_fill(pen);
    } else if (code != CELL_OPEN) {
      PaintTile(pen, tiles_[code], field);
    }
  }
  PaintLines(canvas, board, geometry);
  if (look_ == Look::Ink) {
    for (int i = 1; i < board.Size; ++i) {
      const double at = i * pitch;
      canvas.Line({all.X + at, all.Y}, {all.X + at, all.Y + all.Height}, 0.02 * pitch, kGrey);
      canvas.Line({all.X, all.Y + at}, {all.X + all.Width, all.Y + at}, 0.02 * pitch, kGrey);
    }
    canvas.SetColour(kBlack);
    cairo_set_line_width(pen, 0.05 * pitch);
    cairo_rectangle(pen, all.X, all.Y, all.Width, all.Height);
    cairo_stroke(pen);
  }
  PaintMarks(canvas, board, geometry);
  if (clues != ClueLabels::Hidden) PaintClues(canvas, board, geometry);
  if (clues == ClueLabels::ShownWithNames) PaintNames(canvas, geometry);
  canvas.EndTag("Figure");
}

void BoardPainter::PaintLines(Canvas& canvas, const BoardPicture& board,
                              const BoardGeometry& geometry) const {
  const double pitch = geometry.Pitch;
  const double margin = kClueMargin * pitch;
  const double extent = margin + pitch * board.Size;
  cairo_t* pen = canvas.Pen();
  for (int line = board.FirstLine; line <= board.LastLine; ++line) {
    const double x = geometry.Corner.X - margin;
    const double y = geometry.Corner.Y - margin;
    const double at = margin + line * pitch;
    const Colour shade = look_ == Look::Ink ? kGrey : kLineShade;
    // The clue's ground is shaded twice: no tile is below it.
    for (const double length : {extent, margin}) {
      cairo_set_source_rgba(pen, shade.Red, shade.Green, shade.Blue, 0.28);
      board.Along == LineKind::Row ? cairo_rectangle(pen, x, y + at, length, pitch)
                                   : cairo_rectangle(pen, x + at, y, pitch, length);
      cairo_fill(pen);
    }
  }
}

void BoardPainter::PaintNames(Canvas& canvas, const BoardGeometry& geometry) {
  const double pitch = geometry.Pitch;
  const double margin = kNameMargin * pitch;
  const double extent = pitch * geometry.Size;
  for (int line = 0; line < geometry.Size; ++line) {
    const std::string number = std::to_string(line + 1);
    const TextStyle style{.Size = (number.size() == 1 ? 0.4 : 0.3) * pitch, .Ink = kGrey};
    const Point at{geometry.Corner.X + line * pitch, geometry.Corner.Y + line * pitch};
    canvas.TextInBox("r" + number, {geometry.Corner.X + extent, at.Y, margin, pitch}, style);
    canvas.TextInBox("c" + number, {at.X, geometry.Corner.Y + extent, pitch, margin}, style);
  }
}

void BoardPainter::PaintClues(Canvas& canvas, const BoardPicture& board,
                              const BoardGeometry& geometry) const {
  const double pitch = geometry.Pitch;
  const TextStyle style{.Size = 0.52 * pitch, .Boldness = Weight::Bold};
  const double margin = kClueMargin * pitch;
  const Point at = geometry.Corner;
  for (int line = 0; line < board.Size; ++line) {
    canvas.TextInBox(std::to_string(board.RowClues[line]),
                     {at.X - margin, at.Y + line * pitch, margin, pitch}, style);
    canvas.TextInBox(std::to_string(board.ColClues[line]),
                     {at.X + line * pitch, at.Y - margin, pitch, margin}, style);
  }
}

void BoardPainter::PaintMarks(Canvas& canvas, const BoardPicture& board,
                              const BoardGeometry& geometry) const {
  cairo_t* pen = canvas.Pen();
  for (const FieldMark& mark : board.Marks) {
    const Box field = geometry.Field(mark.Cell);
    if (mark.What == FieldMark::Kind::Option) {
      const double rim = 0.2 * geometry.Pitch;
      // The tent alone would hardly stand out from an open field.
      canvas.Fill({field.X + rim / 2, field.Y + rim / 2, field.Width - rim, field.Height - rim},
                  look_ == Look::Ink ? kWhite : kOptionGround);
      PaintTile(pen, bareTent_,
                {field.X + rim, field.Y + rim, field.Width - 2 * rim, field.Height - 2 * rim});
    }
    const int code = board.Fields[mark.Cell];
    const bool hasMarkedTile = code == CELL_OPEN || code == CELL_TREE;
    const bool reason = mark.What == FieldMark::Kind::Reason;
    if (reason ? look_ == Look::Ink || hasMarkedTile : mark.What != FieldMark::Kind::Decided) continue;
    const double width = 0.1 * geometry.Pitch;
    const auto frame = [&](double lineWidth, Colour colour) {
      canvas.SetColour(colour);
      cairo_set_line_width(pen, lineWidth);
      cairo_rectangle(pen, field.X + width / 2, field.Y + width / 2, field.Width - width,
                      field.Height - width);
      cairo_stroke(pen);
    };
    // A light rim keeps the frame apart from a dark field.
    if (look_ != Look::Ink && !reason) frame(width * 1.6, kWhite);
    frame(width, look_ == Look::Ink ? kBlack : reason ? kReasonFrame : kDecidedFrame);
    if (mark.Step == 0) continue;
    const std::string number = std::to_string(mark.Step);
    const double type = 0.4 * geometry.Pitch;
    const Box corner{field.X + width, field.Y + width,
                     (0.2 + 0.6 * static_cast<double>(number.size())) * type, 0.9 * type};
    canvas.Fill(corner, kWhite);
    canvas.TextInBox(number, corner, {.Size = type});
  }
}

}  // namespace bivouac
