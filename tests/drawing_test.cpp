#include <atomic>
#include <cairo.h>
#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <librsvg/rsvg.h>
#include <sstream>

#include "drawing/board_painter.h"
#include "drawing/book.h"
#include "game/play.h"
#include "guide/guide.h"
#include "packs/pack_access.h"
#include "tests/support/files.h"
#include "tests/support/looks.h"
#include "tests/support/picture.h"
#include "tools/drawing_commands.h"
#include "workbench/position.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

const std::string kPacks = BIVOUAC_SOURCE_DIR "/assets/packs/";

/// What a program writes; the test fails if it ends with another status than 0.
std::string OutputOf(const std::string& command) {
  std::FILE* pipe = popen(command.c_str(), "r");
  std::string text;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) text += static_cast<char>(c);
  EXPECT_EQ(pclose(pipe), 0) << command;
  return text;
}

int PagesOf(const std::string& pdf) {
  const std::string info = OutputOf("pdfinfo " + pdf);
  return std::stoi(info.substr(info.find("Pages:") + 6));
}

std::string TextOf(const std::string& pdf, int page) {
  const std::string number = std::to_string(page);
  return OutputOf("pdftotext -layout -f " + number + " -l " + number + " " + pdf + " -");
}

/// A picture read back, by the darkness of its pixels: 0 white, 255 black.
class Pixels {
 public:
  explicit Pixels(const std::string& path) {
    if (path.ends_with(".svg")) {
      RsvgHandle* const handle = rsvg_handle_new_from_file(path.c_str(), nullptr);
      const RsvgRectangle all{0, 0, 600, 300};
      surface_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 600, 300);
      cairo_t* const pen = cairo_create(surface_);
      EXPECT_NE(rsvg_handle_render_document(handle, pen, &all, nullptr), 0) << path;
      cairo_destroy(pen);
      g_object_unref(handle);
    } else {
      surface_ = cairo_image_surface_create_from_png(path.c_str());
    }
    EXPECT_EQ(cairo_surface_status(surface_), CAIRO_STATUS_SUCCESS);
  }
  Pixels(const Pixels&) = delete;
  Pixels& operator=(const Pixels&) = delete;
  ~Pixels() { cairo_surface_destroy(surface_); }

  int Width() const { return cairo_image_surface_get_width(surface_); }
  int Height() const { return cairo_image_surface_get_height(surface_); }
  int DarknessAt(int x, int y) const {
    const unsigned char* pixel =
        cairo_image_surface_get_data(surface_) + y * cairo_image_surface_get_stride(surface_) + 4 * x;
    return 255 - (pixel[0] + pixel[1] + pixel[2]) / 3;
  }
  std::string Shades(int square) const {
    return bivouac::Shades(Width(), Height(), square, [&](int x, int y) { return DarknessAt(x, y); });
  }
  /// Mean darkness of a box.
  double DarknessIn(const Box& box) const {
    double sum = 0;
    int count = 0;
    for (int y = static_cast<int>(box.Y); y < box.Y + box.Height; ++y) {
      for (int x = static_cast<int>(box.X); x < box.X + box.Width; ++x, ++count) sum += DarknessAt(x, y);
    }
    return sum / count;
  }

 private:
  cairo_surface_t* surface_;
};

class Drawing : public testing::Test {
 protected:
  std::string PathOf(const std::string& name) const { return folder_ / name; }
  std::string PackOf(int size) const { return kPacks + "BVPack" + std::to_string(size) + ".bvq"; }

  BookOptions Book(const std::string& output) const {
    BookOptions book;
    book.Drawing.Output = PathOf(output);
    book.Packs = {PackOf(12)};
    return book;
  }
  PictureOptions Picture(const std::string& output, const std::string& pack) const {
    PictureOptions picture;
    picture.Drawing.Output = PathOf(output);
    picture.Pack = kPacks + pack;
    return picture;
  }
  std::string ErrorOf(const BookOptions& book) {
    try {
      PrintBook(book, stop, terminal);
    } catch (const InputError& error) {
      return error.what();
    }
    return "";
  }

  std::atomic<bool> stop = false;
  std::istringstream in;
  std::ostringstream out, err;
  Terminal terminal{.In = in, .Out = out, .Err = err};
  TempFolder folder_;
};

TEST_F(Drawing, ABookHasItsPagesInOrderAndTheSameBytesAgain) {
  struct Case {
    int PerPage;
    SolutionPlace Solutions;
    int Pages;  // Of 1 + 20 puzzles, 20 solutions a page.
  };
  for (const Case& c : {Case{1, SolutionPlace::Back, 1 + 21 + 2}, Case{2, SolutionPlace::None, 1 + 11},
                        Case{4, SolutionPlace::Back, 1 + 6 + 2}, Case{6, SolutionPlace::Separate, 1 + 4}}) {
    BookOptions book = Book("book.pdf");
    book.Drawing.Force = true;
    book.Numbers = {{100, 100}, {1, 20}};
    book.PerPage = c.PerPage;
    book.Solutions = c.Solutions;
    book.Title = "Winter nights";
    ASSERT_EQ(PrintBook(book, stop, terminal), ExitStatus::Done);
    EXPECT_EQ(PagesOf(PathOf("book.pdf")), c.Pages) << c.PerPage;
    EXPECT_NE(TextOf(PathOf("book.pdf"), 1).find("Winter nights"), std::string::npos);
    EXPECT_NE(TextOf(PathOf("book.pdf"), 1).find("21 puzzles, 12\u00d712"), std::string::npos);
    const std::string first = TextOf(PathOf("book.pdf"), 2);
    EXPECT_NE(first.find("No. 100 12\u00d712, level 5, difficulty"), std::string::npos) << first;
    EXPECT_EQ(first.find("No. 1 ") != std::string::npos, c.PerPage > 1) << first;
    const std::string last = TextOf(PathOf("book.pdf"), c.Pages);
    EXPECT_NE(last.find("No. 20"), std::string::npos) << last;
    EXPECT_NE(last.find(std::to_string(c.Pages)), std::string::npos) << last;
    const std::string bytes = BytesOf(PathOf("book.pdf"));
    PrintBook(book, stop, terminal);
    EXPECT_EQ(BytesOf(PathOf("book.pdf")), bytes);
  }
  EXPECT_EQ(PagesOf(PathOf("book-solutions.pdf")), 2);
}

TEST_F(Drawing, NamesOfPacksAndTitlesStayInTheirRoomWhateverTheirBytes) {
  const std::string longName = std::string(120, 'n') + "\xff.bvq";
  std::filesystem::copy_file(PackOf(12), PathOf(longName));
  BookOptions book = Book("long.pdf");
  book.Packs.push_back(PathOf(longName));
  book.Numbers = {{1, 1}};
  book.PerPage = 6;
  book.Title = std::string(90, 'W') + '\xff';
  ASSERT_EQ(PrintBook(book, stop, terminal), ExitStatus::Done);
  EXPECT_NE(TextOf(PathOf("long.pdf"), 2).find("BVPack12, No. 1 "), std::string::npos);
  OutputOf("pdftoppm -r 50 -png " + PathOf("long.pdf") + " " + PathOf("long"));
  for (const int number : {1, 2, 3}) {
    const Pixels page(PathOf("long-" + std::to_string(number) + ".png"));
    const double margin = page.Width() * 0.03;
    EXPECT_EQ(page.DarknessIn({0, 0, margin, page.Height() - 1.0}), 0) << number;
    EXPECT_EQ(page.DarknessIn({page.Width() - margin, 0, margin - 1, page.Height() - 1.0}), 0) << number;
  }
}

/// The columns of each line that was written.
std::vector<std::vector<std::string>> Rows(const std::string& table) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& line : Split(table, '\n')) rows.push_back(Split(line, '\t'));
  return rows;
}

TEST_F(Drawing, AnExplanationIsTheWayOfTheGamesHints) {
  for (const int size : {12, 18}) {
    ExplainOptions options;
    options.Pack = PackOf(size);
    options.Number = 100;
    options.Output = Format::Table;
    out.str("");
    ASSERT_EQ(ExplainPuzzle(options, terminal), ExitStatus::Done);
    const std::vector<std::vector<std::string>> rows = Rows(out.str());
    const PackRecord record = ReadPack("assets/packs/BVPack" + std::to_string(size) + ".bvq").at(99);

    Workbench bench;
    LayOutRecord(bench.main, record);
    StartPuzzle(bench.main);
    int seconds = 0;
    for (std::size_t step = 0; step + 1 < rows.size(); ++step) {
      out.str("");
      GiveHint(
          {.Pack = options.Pack, .Number = 100, .Board = BoardDigits(bench.main), .Output = Format::Table},
          terminal);
      const std::vector<std::string> hint = Rows(out.str()).at(0);
      ASSERT_EQ(rows[step][3], hint[1]) << step;
      ASSERT_EQ(rows[step][5], hint[4]) << step;
      seconds += std::stoi(hint[1]);
      for (const std::string& change : Split(rows[step][4], ',')) {
        const int cell = std::stoi(change);
        const int code = change.back() - '0';
        ASSERT_EQ(bench.main.Board[cell], CELL_OPEN);
        ASSERT_EQ(code, record.Layout[cell]);
        bench.main.Board[cell] = code;
      }
    }
    EXPECT_EQ(rows.back(), (std::vector<std::string>{"SOLVED", std::to_string(rows.size() - 1),
                                                     std::to_string(seconds), BoardDigits(bench.main)}));
    EXPECT_EQ(BoardDigits(bench.main).find('0'), std::string::npos);

    options.Drawing.Output = PathOf("explained.pdf");
    options.Drawing.Force = true;
    ASSERT_EQ(ExplainPuzzle(options, terminal), ExitStatus::Done);
    const int pages = PagesOf(options.Drawing.Output);
    EXPECT_GE(pages, static_cast<int>(rows.size() + 3) / 4);
    EXPECT_NE(TextOf(options.Drawing.Output, pages).find(std::to_string(seconds) + " seconds of hints"),
              std::string::npos);

    WriteBytes(PathOf("one.bvq"), BytesOf(options.Pack).substr(99 * 1376, 1376));
    out.str("");
    StatsOptions stats;
    stats.Packs = {PathOf("one.bvq")};
    stats.Output = Format::Table;
    stats.Drawing.Output = PathOf("stats" + std::to_string(size) + ".svg");
    ASSERT_EQ(StatsOfPacks(stats, stop, terminal), ExitStatus::Done);
    const std::vector<std::string> level = Rows(out.str()).at(0);
    EXPECT_EQ(level.at(1), "one.bvq");
    EXPECT_EQ(level.at(8), std::to_string(bench.main.TreeCount));
    EXPECT_EQ(level.at(11), std::to_string(rows.size() - 1));
    EXPECT_EQ(level.at(14), std::to_string(seconds));
    EXPECT_EQ(level.back(), "0");
  }
}

TEST(Paper, IsKnownByNameOrMillimetres) {
  const std::tuple<const char*, double, double> papers[] = {
      {"a4", 210, 297}, {"a5", 148, 210}, {"a6", 105, 148}, {"letter", 215.9, 279.4}, {"90x1200", 90, 1200}};
  for (const auto& [name, width, height] : papers) {
    EXPECT_NEAR(PaperOf(name)->Width * 25.4 / 72, width, 0.01) << name;
    EXPECT_NEAR(PaperOf(name)->Height * 25.4 / 72, height, 0.01) << name;
  }
  for (const char* name : {"a7", "", "0x100", "100x0", "100x", "100x200mm", "99999x100"})
    EXPECT_FALSE(PaperOf(name)) << name;
}

TEST_F(Drawing, PagesLookAsTheyDid) {
  BookOptions book = Book("book.pdf");
  book.Packs = {PackOf(10)};
  book.Paper = "a5";
  book.PerPage = 1;
  book.Numbers = {{24, 27}};
  book.Levels = LevelRange{2, 2};  // The last two.
  PrintBook(book, stop, terminal);
  ExplainOptions explain;
  explain.Drawing.Output = PathOf("explain.pdf");
  explain.Pack = kPacks + "BVPack08.bvq";
  explain.Number = 98;  // Where hints end before the puzzle does.
  ExplainOnPaper(explain, terminal);
  StatsOptions stats;
  stats.Drawing.Output = PathOf("stats.png");
  stats.Packs = {kPacks + "BVPack06.bvq", PackOf(11)};
  terminal.Progress = true;
  StatsOfPacks(stats, stop, terminal);
  EXPECT_TRUE(err.str().ends_with("200 of 200 puzzles\r\x1b[K")) << err.str();
  PictureOptions picture = Picture("picture.png", "BVPack09.bvq");
  picture.Solution = picture.Drawing.Colour = true;
  PrintPicture(picture, terminal);
  picture.Drawing.Output = PathOf("page.pdf");
  const PackRecord record = ReadPack("assets/packs/BVPack09.bvq").at(0);
  for (const int code : record.Layout)
    picture.Board += code == CELL_TREE ? '3' : "0012"[picture.Board.size() % 4];
  picture.Board.resize(81);
  PrintPicture(picture, terminal);
  for (const std::string document : {"book", "explain", "page"})
    OutputOf("pdftoppm -r 72 -png " + PathOf(document + ".pdf") + " " + PathOf(document));
  for (const std::string name :
       {"book-1", "book-2", "book-4", "explain-1", "explain-3", "page-1", "stats", "picture"}) {
    SCOPED_TRACE(name);
    const std::string look = Pixels(PathOf(name + ".png")).Shades(8);
    ExpectAlike(look, Kept(name, look));
  }
}

TEST_F(Drawing, PicturesOfTheGuideLookAsTheyDid) {
  const std::string guide = BIVOUAC_SOURCE_DIR "/docs/guide/";
  Workbench bench;
  for (const GuidePosition& position : ReadGuidePositions(guide + "positions.tsv")) {
    SCOPED_TRACE(position.Name);
    DrawGuideHint(bench.main, LayGuidePosition(bench.main, position), PathOf("hint.svg"));
    ExpectAlike(Pixels(PathOf("hint.svg")).Shades(4),
                Pixels(guide + "pictures/" + position.Name + ".svg").Shades(4));
  }
}

TEST_F(Drawing, BadInputLeavesNoFile) {
  std::string bytes = BytesOf(PackOf(12));
  bytes[2 * 1376 + 648 + 2] = 9;
  WriteBytes(PathOf("damaged.bvq"), bytes);
  const std::pair<std::function<void(BookOptions&)>, const char*> cases[] = {
      {[](BookOptions& b) {
         b.Numbers = {{99, 101}};
       },
       "no puzzle 101"},
      {[](BookOptions& b) { b.Paper = "a7"; }, "--paper: 'a7'"},
      {[](BookOptions& b) { b.Paper = "40x60"; }, "too small"},
      {[&](BookOptions& b) { b.Drawing.Output = PathOf("bad.png"); }, "a book is a PDF"},
      {[&](BookOptions& b) { b.Drawing.Output = PathOf("none/bad.pdf"); }, "No such file"},
      {[&](BookOptions& b) { b.Packs = {PathOf("damaged.bvq")}; },
       "record 3 is damaged: it has the code 9 in Layout[1]"},
  };
  for (const auto& [change, words] : cases) {
    BookOptions book = Book("bad.pdf");
    change(book);
    EXPECT_NE(ErrorOf(book).find(words), std::string::npos) << words;
  }
  stop = true;
  EXPECT_EQ(PrintBook(Book("bad.pdf"), stop, terminal), ExitStatus::Interrupted);
  stop = false;
  {
    const FileSizeLimit limit(20000);
    EXPECT_NE(ErrorOf(Book("bad.pdf")).find("cannot be written"), std::string::npos);
  }
  EXPECT_EQ(FilesIn(folder_ / "").size(), 1U) << "files beside the damaged pack";

  WriteBytes(PathOf("mine.pdf"), "a letter");
  EXPECT_NE(ErrorOf(Book("mine.pdf")).find("--force"), std::string::npos);
  EXPECT_EQ(BytesOf(PathOf("mine.pdf")), "a letter");
}

}  // namespace
}  // namespace bivouac
