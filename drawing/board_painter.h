// A board with its clues and marks, drawn on a canvas.
#pragma once

#include <vector>

#include "deduction/lines.h"
#include "drawing/canvas.h"
#include "game/array.h"
#include "game/records.h"

namespace bivouac {

enum class Look {
  Ink,              ///< White fields, thin lines, greys.
  Colour,           ///< As in the window.
  ColourForPencil,  ///< The same, but open fields are light enough to write on.
};

/// What is to be seen of a field beside what stands on it.
struct FieldMark {
  enum class Kind {
    Reason,   ///< The deduction stands on this field.
    Option,   ///< A tent may stand here: drawn small.
    Decided,  ///< This field is what the deduction is about.
  };
  int Cell = 0;
  Kind What = Kind::Reason;
  int Step = 0;  ///< That decides it, told in the field; none if 0.

  friend bool operator==(const FieldMark&, const FieldMark&) = default;
};

struct BoardPicture {
  int Size = 0;
  FixedList<int, kMaxCells> Fields;  ///< Size * Size cell codes.
  FixedList<int, kMaxSize> RowClues;
  FixedList<int, kMaxSize> ColClues;
  std::vector<FieldMark> Marks;
  // Lines with their clues that a deduction looked at, counted from 0; none if the last is before the first.
  LineKind Along = LineKind::Row;
  int FirstLine = 0;
  int LastLine = -1;
};

/// A record's puzzle, or its solution. Requires: size and codes in range.
BoardPicture PuzzlePicture(const PackRecord& record);
BoardPicture SolutionPicture(const PackRecord& record);

/// A board in words: its clues, and what stands in each row. Fields without a mark are left out.
std::string WordsOf(const BoardPicture& board);

enum class ClueLabels {
  Shown,
  ShownWithNames,  ///< And at the right and below what the lines are called, "r3" and "c4".
  Hidden
};

/// Where the fields of a board lie in a square box.
struct BoardGeometry {
  BoardGeometry(int size, Point corner, double side, ClueLabels clues);
  Box Field(int cell) const;
  int Size;
  Point Corner;  ///< Of the field at the upper left.
  double Pitch;  ///< From field to field.
};

/// Holds the tiles of one look, parsed once for any number of boards.
class BoardPainter {
 public:
  explicit BoardPainter(Look look);
  BoardPainter(const BoardPainter&) = delete;
  BoardPainter& operator=(const BoardPainter&) = delete;
  ~BoardPainter();

  /// What is around a board.
  Colour Ground() const;
  /// Draws the board into a square.
  void Paint(Canvas& canvas, const BoardPicture& board, Point corner, double side,
             ClueLabels clues = ClueLabels::Shown) const;

 private:
  void PaintTile(cairo_t* pen, cairo_surface_t* tile, const Box& field) const;
  void PaintLines(Canvas& canvas, const BoardPicture& board, const BoardGeometry& geometry) const;
  void PaintClues(Canvas& canvas, const BoardPicture& board, const BoardGeometry& geometry) const;
  static void PaintNames(Canvas& canvas, const BoardGeometry& geometry);
  void PaintMarks(Canvas& canvas, const BoardPicture& board, const BoardGeometry& geometry) const;

  Look look_;
  FixedArray<cairo_surface_t*, 4> tiles_;   // By cell code.
  cairo_surface_t* bareTent_ = nullptr;     // Without ground.
  FixedArray<cairo_surface_t*, 4> marked_;  // The same, when a deduction stands on them.
};

}  // namespace bivouac
