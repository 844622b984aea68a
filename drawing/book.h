// A book of puzzles on paper.
#pragma once

#include <optional>
#include <string>

#include "drawing/board_painter.h"

namespace bivouac {

/// "a4", "a5", "a6", "letter", or width and height in millimetres such as "148x210"; nothing for any other
/// text.
std::optional<Extent> PaperOf(const std::string& text);

/// How a book is laid out.
struct BookLayout {
  Extent Paper;
  int PerPage = 2;  ///< 1, 2, 4 or 6.
};

/// Errors: InputError if fields of a board of this size would be too small to write on.
void CheckPaper(const BookLayout& layout, int largestSize);

/// A puzzle of the book.
struct BookPuzzle {
  BoardPicture Board;
  std::string Name;   ///< Such as "No. 12".
  std::string Facts;  ///< Size, level and difficulty.
};

/// What the title page says.
struct BookTitle {
  std::string Title;
  std::string Summary;
};

/// Draws the pages of a book in order: title page, puzzles, solutions. Nothing of a page is kept once it is
/// full.
class BookWriter {
 public:
  BookWriter(Canvas& canvas, const BoardPainter& painter, const BookLayout& layout);

  void TitlePage(const BookTitle& title, const BoardPicture& ornament);
  void Puzzle(const BookPuzzle& puzzle);
  /// Begins the solutions, on a page of their own.
  void BeginSolutions(const std::string& heading);
  void Solution(const PackRecord& record, const std::string& name);
  /// Ends the last page.
  void Finish();

 private:
  struct Grid {
    int Columns = 1;
    int Rows = 1;
    double Top = 0;  // Upper edge of the first row.
    double Gap = 0;
  };
  Box NextPlace(const Grid& grid, double bottom);
  void EndPage();
  void NotesBelow(double y);

  Canvas& canvas_;
  const BoardPainter& painter_;
  BookLayout layout_;
  double scale_;   // Of fonts and gaps: 1 on A4.
  double margin_;  // Of the page.
  double foot_;    // Lower edge of what stands above the page's number.
  Grid grid_;      // Of the pages that are being filled.
  int place_ = 0;  // Of the next board on the page.
  int page_ = 1;
  bool numbered_ = true;  // The title page is not.
};

}  // namespace bivouac
