// A surface to draw on, in a PDF, SVG or PNG file, and text on it.
#pragma once

#include <cairo.h>
#include <deque>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "drawing/finished_pdf.h"
#include "storage/replacement.h"

// As in <pango/pango-layout.h>.
using PangoLayout = struct _PangoLayout;

namespace bivouac {

/// Whether what is there may go.
enum class Overwrite { No, Yes };

enum class PictureFormat { Pdf, Svg, Png };

/// The format that the ending of a file's name asks for, in capitals too; nothing for any other ending, or
/// where there is no name before it.
std::optional<PictureFormat> FormatOfName(const std::string& path);

/// Lengths are points, 72 an inch, in a PDF, and pixels in the other two.
struct Extent {
  double Width = 0;
  double Height = 0;
};

struct Point {
  double X = 0;
  double Y = 0;
};

struct Box {
  double X = 0;
  double Y = 0;
  double Width = 0;
  double Height = 0;
};

/// Red, green and blue from 0 to 1.
struct Colour {
  double Red = 0;
  double Green = 0;
  double Blue = 0;
};
inline constexpr Colour kBlack{};
inline constexpr Colour kWhite{1, 1, 1};
inline constexpr Colour kGrey{0.4, 0.4, 0.4};

enum class Weight { Regular, Bold };
enum class Alignment { Left, Centre, Right };

struct TextStyle {
  double Size = 10;  ///< Of the font.
  Weight Boldness = Weight::Regular;
  Alignment Align = Alignment::Left;
  Colour Ink = kBlack;
  bool OneLine = false;  ///< Shortened in its middle where lines would be broken.
};

/// Everything that is drawn goes to `Pen()`; the file is there after Close().
class Canvas {
 public:
  /// A PDF has pages of this extent, its title in the document's data; the other two have one page, and an
  /// SVG has a title. Errors: InputError if the file exists and may not be overwritten, or is no regular
  /// file; a file error if nothing can be written beside it.
  Canvas(const std::string& path, PictureFormat format, Extent page, const std::string& title,
         Overwrite overwrite);
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas();

  cairo_t* Pen() {
    if (std::exchange(pageEnded_, false)) cairo_show_page(pen_);
    return pen_;
  }
  const Extent& Page() const { return page_; }
  void SetColour(Colour colour);
  void Fill(const Box& box, Colour colour);
  void Line(Point from, Point to, double width, Colour colour);

  /// Draws a text whose first line's upper edge is at `at.Y`, on the left, the middle or the right of `at.X`.
  /// Lines are broken at `width` if it is above 0, in words only where one is wider. Returns the height. A
  /// text of no ink returns it only.
  double Text(const std::string& text, Point at, const TextStyle& style, double width = 0);
  /// The extent that the text would have.
  Extent Measure(const std::string& text, const TextStyle& style, double width = 0);
  /// Draws one line of text with the middle of its digits' height in the middle of the box.
  void TextInBox(const std::string& text, const Box& box, const TextStyle& style);

  /// What follows is a part of the document, such as "H1" or "P", until EndTag; with `attributes` a link or
  /// its target. In a PDF alone.
  void BeginTag(const char* tag, const std::string& attributes = {});
  void EndTag(const char* tag);
  /// What follows is a figure, until EndTag("Figure"): `words` tell it to those who do not see it.
  void BeginFigure(const std::string& words);
  /// An entry of a PDF's outline that leads to this page.
  void AddToOutline(const std::string& name);
  /// What a PDF calls this page. Pages are counted from 1.
  void NamePage(const std::string& name);

  /// The size of the smallest type that was drawn; infinite if there was none.
  double SmallestType() const { return smallestType_; }

  /// Ends the page; in a PDF, drawing goes on with the next. Errors: a file error if the disk is full.
  void EndPage();
  /// Returns when all has reached the disk. Requires: a PDF's last page was ended. Errors: a file error if it
  /// cannot be written.
  void Finish();
  /// The same, and puts the file in its place. Errors: InputError as well if there is one by now.
  void Close();

 private:
  void LayText(const std::string& text, const TextStyle& style, double width);
  void Write(std::string_view bytes);
  std::string WithWords(std::string svg) const;

  std::string path_;
  Overwrite overwrite_;
  Replacement file_;
  PictureFormat format_;
  Extent page_;
  std::string title_;
  double smallestType_ = std::numeric_limits<double>::infinity();
  int pages_ = 1;                    // Begun.
  std::deque<std::string> figures_;  // Their words.
  PdfFinisher pdf_;
  std::string picture_;  // An SVG or PNG before it is finished.
  bool failed_ = false;  // A write did.
  cairo_surface_t* surface_ = nullptr;
  cairo_t* pen_ = nullptr;
  PangoLayout* layout_ = nullptr;
  bool pageEnded_ = false;  // The next begins with what is drawn next: nothing makes an empty one.
  bool finished_ = false;
};

}  // namespace bivouac
