#include "drawing/canvas.h"

#include <algorithm>
#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <pango/pangocairo.h>
#include <utility>

#include "drawing/finished_pdf.h"
#include "game/error.h"
#include "storage/platform_files.h"

#ifdef __SANITIZE_ADDRESS__
// The libraries keep what they set up once, and some of what an SVG's tiles were made of. The sanitizer asks
// for this.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\nleak:libpango\nleak:libcairo\nleak:librsvg\n";
}
#endif

namespace bivouac {
namespace {

// Fonts that every installation of the game has, so that one input gives one picture.
constexpr const char* kFontFamily = "DejaVu Sans";
// A document that is made again is the same document.
constexpr const char* kDocumentDate = "2026-01-01T00:00:00Z";

[[noreturn]] void RefuseToOverwrite(const std::string& path) {
  throw InputError(path + ": the file exists, --force overwrites it");
}

/// The path, if it may become a file. A link is there even where it leads nowhere.
const std::string& Allowed(const std::string& path, Overwrite overwrite) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) throw InputError(path + ": not a regular file");
  if (overwrite == Overwrite::No && fs::exists(fs::symlink_status(path, error))) RefuseToOverwrite(path);
  return path;
}

cairo_status_t DrawTo(void* finisher, const unsigned char* bytes, unsigned int count) {
  static_cast<PdfFinisher*>(finisher)->Add({reinterpret_cast<const char*>(bytes), count});
  return CAIRO_STATUS_SUCCESS;
}

cairo_status_t AddTo(void* text, const unsigned char* bytes, unsigned int count) {
  static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), count);
  return CAIRO_STATUS_SUCCESS;
}

/// The text as an element of an SVG.
std::string Element(const char* name, const std::string& text) {
  char* const escaped = g_markup_escape_text(text.c_str(), -1);
  std::string element = std::string("<") + name + '>' + escaped + "</" + name + ">\n";
  g_free(escaped);
  return element;
}

/// The libraries for drawing end the program where memory ends: it is looked for before. Errors: bad_alloc.
void LookForMemory() {
  constexpr std::size_t kEnough = 384 << 20;  // Most of it for the stacks of threads, and never touched.
  ::operator delete(::operator new(kEnough));
}

/// Names of files and titles may be any bytes; what is no letter is drawn as such.
std::string Letters(const std::string& text) {
  char* const valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  std::string letters(valid);
  g_free(valid);
  return letters;
}

}  // namespace

std::optional<PictureFormat> FormatOfName(const std::string& path) {
  constexpr std::size_t kLength = 4;
  if (path.size() <= kLength || path[path.size() - kLength - 1] == '/') return std::nullopt;
  std::string ending = path.substr(path.size() - kLength);
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (ending == ".pdf") return PictureFormat::Pdf;
  if (ending == ".svg") return PictureFormat::Svg;
  if (ending == ".png") return PictureFormat::Png;
  return std::nullopt;
}

Canvas::Canvas(const std::string& path, PictureFormat format, Extent page, const std::string& title,
               Overwrite overwrite)
    : path_(Allowed(path, overwrite)),
      overwrite_(overwrite),
      file_(path),
      format_(format),
      page_(page),
      title_(Letters(title)),
      pdf_([this](std::string_view bytes) { Write(bytes); }, figures_) {
  LookForMemory();
  switch (format) {
    case PictureFormat::Pdf:
      surface_ = cairo_pdf_surface_create_for_stream(DrawTo, &pdf_, page.Width, page.Height);
      // Later ones pack what they draw, unless it is this old.
      if (cairo_version() > CAIRO_VERSION_ENCODE(1, 17, 0))
        cairo_pdf_surface_restrict_to_version(surface_, CAIRO_PDF_VERSION_1_4);
      cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_TITLE, title_.c_str());
      cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATOR, "bivouac-packs");
      cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATE_DATE, kDocumentDate);
      break;
    case PictureFormat::Svg:
      surface_ = cairo_svg_surface_create_for_stream(AddTo, &picture_, page.Width, page.Height);
      cairo_svg_surface_set_document_unit(surface_, CAIRO_SVG_UNIT_PX);
      break;
    case PictureFormat::Png:
      surface_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(std::ceil(page.Width)),
                                            static_cast<int>(std::ceil(page.Height)));
      break;
  }
  pen_ = cairo_create(surface_);
  layout_ = pango_cairo_create_layout(pen_);
  // Points are the unit, and letters stand where their outlines say, whatever the surface.
  PangoContext* context = pango_layout_get_context(layout_);
  pango_cairo_context_set_resolution(context, 72);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context, options);
  pango_context_set_round_glyph_positions(context, FALSE);
  cairo_font_options_destroy(options);
  pango_layout_context_changed(layout_);
  BeginTag("Document");
}

Canvas::~Canvas() {
  // What leads to a page that does not come ends the program.
  if (pen_ != nullptr && !finished_) cairo_show_page(pen_);
  if (layout_ != nullptr) g_object_unref(layout_);
  if (pen_ != nullptr) cairo_destroy(pen_);
  // The surface writes its last bytes now, into a file that still stands.
  if (surface_ != nullptr) cairo_surface_destroy(surface_);
}

void Canvas::SetColour(Colour colour) {
  cairo_set_source_rgb(Pen(), colour.Red, colour.Green, colour.Blue);
}

void Canvas::Fill(const Box& box, Colour colour) {
  SetColour(colour);
  cairo_rectangle(Pen(), box.X, box.Y, box.Width, box.Height);
  cairo_fill(Pen());
}

void Canvas::Line(Point from, Point to, double width, Colour colour) {
  SetColour(colour);
  cairo_set_line_width(Pen(), width);
  cairo_move_to(Pen(), from.X, from.Y);
  cairo_line_to(Pen(), to.X, to.Y);
  cairo_stroke(Pen());
}

void Canvas::LayText(const std::string& text, const TextStyle& style, double width) {
  PangoFontDescription* font = pango_font_description_new();
  pango_font_description_set_family_static(font, kFontFamily);
  pango_font_description_set_weight(font,
                                    style.Boldness == Weight::Bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_absolute_size(font, style.Size * PANGO_SCALE);
  pango_layout_set_font_description(layout_, font);
  pango_font_description_free(font);
  pango_layout_set_width(layout_, width > 0 ? static_cast<int>(std::ceil(width * PANGO_SCALE)) : -1);
  pango_layout_set_alignment(layout_, style.Align == Alignment::Centre  ? PANGO_ALIGN_CENTER
                                      : style.Align == Alignment::Right ? PANGO_ALIGN_RIGHT
                                                                        : PANGO_ALIGN_LEFT);
  pango_layout_set_wrap(layout_, PANGO_WRAP_WORD_CHAR);
  pango_layout_set_ellipsize(layout_, style.OneLine ? PANGO_ELLIPSIZE_MIDDLE : PANGO_ELLIPSIZE_NONE);
  pango_layout_set_text(layout_, Letters(text).c_str(), -1);
}

Extent Canvas::Measure(const std::string& text, const TextStyle& style, double width) {
  LayText(text, style, width);
  PangoRectangle logical;
  pango_layout_get_extents(layout_, nullptr, &logical);
  return {static_cast<double>(logical.width) / PANGO_SCALE,
          static_cast<double>(logical.height) / PANGO_SCALE};
}

double Canvas::Text(const std::string& text, Point at, const TextStyle& style, double width) {
  const Extent extent = Measure(text, style, width);
  const double share = style.Align == Alignment::Centre ? 0.5 : style.Align == Alignment::Right ? 1 : 0;
  smallestType_ = std::min(smallestType_, style.Size);
  SetColour(style.Ink);
  cairo_move_to(Pen(), at.X - share * (width > 0 ? width : extent.Width), at.Y);
  pango_cairo_show_layout(Pen(), layout_);
  return extent.Height;
}

void Canvas::TextInBox(const std::string& text, const Box& box, const TextStyle& style) {
  LayText(text, style, 0);
  PangoRectangle logical;
  pango_layout_get_extents(layout_, nullptr, &logical);
  constexpr double kDigitHeight = 0.73;  // Of the font's size.
  const double baseline = box.Y + (box.Height + kDigitHeight * style.Size) / 2;
  const double ascent = static_cast<double>(pango_layout_get_baseline(layout_)) / PANGO_SCALE;
  smallestType_ = std::min(smallestType_, style.Size);
  SetColour(style.Ink);
  cairo_move_to(Pen(), box.X + (box.Width - static_cast<double>(logical.width) / PANGO_SCALE) / 2,
                baseline - ascent);
  pango_cairo_show_layout(Pen(), layout_);
}

void Canvas::BeginTag(const char* tag, const std::string& attributes) {
  if (format_ == PictureFormat::Pdf) cairo_tag_begin(Pen(), tag, attributes.c_str());
}

void Canvas::EndTag(const char* tag) {
  if (format_ == PictureFormat::Pdf) cairo_tag_end(Pen(), tag);
}

void Canvas::BeginFigure(const std::string& words) {
  figures_.push_back(Letters(words));
  BeginTag("Figure");
}

void Canvas::AddToOutline(const std::string& name) {
  if (format_ != PictureFormat::Pdf) return;
  const std::string target = "page=" + std::to_string(pages_) + " pos=[0 0]";
  cairo_pdf_surface_add_outline(surface_, CAIRO_PDF_OUTLINE_ROOT, Letters(name).c_str(), target.c_str(),
                                CAIRO_PDF_OUTLINE_FLAG_OPEN);
}

void Canvas::NamePage(const std::string& name) {
  if (format_ != PictureFormat::Pdf) return;
  Pen();
  cairo_pdf_surface_set_page_label(surface_, name.c_str());
}

void Canvas::EndPage() {
  pageEnded_ = format_ == PictureFormat::Pdf;
  ++pages_;
  if (failed_) file_.Sync();  // Throws it.
}

void Canvas::Write(std::string_view bytes) {
  failed_ = !file_.Append({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

std::string Canvas::WithWords(std::string svg) const {
  std::string words = Element("title", title_);
  for (const std::string& figure : figures_) words += Element("desc", figure);
  const std::size_t root = svg.find("<svg ");
  const std::size_t end = root == std::string::npos ? root : svg.find(">\n", root);
  return end == std::string::npos ? svg : svg.insert(end + 2, words);
}

void Canvas::Finish() {
  if (std::exchange(finished_, true)) return;
  if (std::exchange(pageEnded_, false)) {
    EndTag("Document");
    cairo_show_page(pen_);
  }
  cairo_status_t status = CAIRO_STATUS_SUCCESS;
  if (format_ == PictureFormat::Png) status = cairo_surface_write_to_png_stream(surface_, AddTo, &picture_);
  cairo_surface_finish(surface_);
  if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(surface_);
  if (status != CAIRO_STATUS_SUCCESS)
    throw InputError(std::string("drawing failed: ") + cairo_status_to_string(status));
  if (format_ == PictureFormat::Pdf) pdf_.Finish();
  Write(format_ == PictureFormat::Svg ? WithWords(std::move(picture_)) : picture_);
  file_.Sync();
}

void Canvas::Close() {
  Finish();
  if (overwrite_ == Overwrite::Yes) {
    file_.TakePlace();
  } else if (!file_.TakeFreePlace()) {
    RefuseToOverwrite(path_);
  }
}

}  // namespace bivouac
