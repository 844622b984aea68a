// A book of puzzles on paper.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "drawing/board_painter.h"

namespace bivouac {

/// "a4", "a5", "a6" or "letter", in capitals too, or width and height in millimetres such as "148x210".
/// Errors: InputError that names the option --paper for any other text.
Extent PaperOf(const std::string& text);

/// How a book is laid out.
struct BookLayout {
  Extent Paper;
  int PerPage = 2;      ///< 1, 2, 4 or 6.
  bool Duplex = false;  ///< Margins are wider where the book is bound: at the left of odd pages.
};

/// Errors: InputError if fields of a board of this size would be too small to write on.
void CheckPaper(const BookLayout& layout, int largestSize);

/// A puzzle of a book and where it and its solution stand. Pages are counted from 1, places from 0.
struct BookItem {
  int Level = 0;  ///< Below 1: beyond the levels.
  int Size = 0;
  int Page = 0;
  int Place = 0;
  int SolutionPage = 0;
  int SolutionPlace = 0;
  int SolutionColumns = 1;  ///< Of the page that the solution is on.
  int SolutionRows = 1;
};
/// Give places from a page on; the first page behind them is returned. A new level or size begins a page.
/// Solutions are as large as they can be on the fewest pages that give a field its least side. Require:
/// items of a level and size stand together.
int PlacePuzzles(std::vector<BookItem>& items, const BookLayout& layout, int page);
int PlaceSolutions(std::vector<BookItem>& items, const BookLayout& layout, int page);

/// A puzzle of the book.
struct BookPuzzle {
  BoardPicture Board;
  std::string Name;      ///< Such as "12".
  std::string Facts;     ///< Size and difficulty.
  std::string Chapter;   ///< Heads the page; none for a page alone.
  std::string Solution;  ///< Where it is; may be empty.
};

/// A line of the table of contents.
struct ContentsLine {
  std::string Name;
  std::string Facts;
  int Page = 0;
};

/// Draws the pages of a book in order: title page, rules, contents, puzzles, solutions. Nothing of a page is
/// kept once it is full.
class BookWriter {
 public:
  BookWriter(Canvas& canvas, const BoardPainter& painter, const BookLayout& layout);

  static constexpr int kRulesPage = 2;
  static constexpr int kContentsPage = 3;
  static constexpr int kFirstPuzzlePage = 4;

  void TitlePage(const std::string& title, const std::string& summary, const BoardPicture& ornament);
  /// The rules with an example, and what levels and difficulty mean.
  void RulesPage();
  void ContentsPage(const std::vector<ContentsLine>& lines);
  /// Require: pages do not go back.
  void Puzzle(const BookItem& item, const BookPuzzle& puzzle);
  void Solution(const BookItem& item, const PackRecord& record, const std::string& name,
                const std::string& source, const std::string& heading);
  /// Ends the last page.
  void Finish();

 private:
  void GoTo(int page, const std::string& heading);
  void EndPage();
  double Type(double size) const;
  /// A paragraph; returns its height.
  double Paragraph(const char* tag, const std::string& text, Point at, const TextStyle& style, double width);
  double Rules(double top, double type, bool draw);
  void NotesBelow(double y);

  Canvas& canvas_;
  const BoardPainter& painter_;
  BookLayout layout_;
  int page_ = 0;         // That is being filled; 0 if there is none.
  std::string heading_;  // Of the last page that had one.
};

}  // namespace bivouac
