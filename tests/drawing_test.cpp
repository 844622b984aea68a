#include <algorithm>
#include <cairo.h>
#include <csignal>
#include <cstdio>
#include <filesystem>
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
#include "tools/command_line.h"
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

  /// Runs print or stats as its command line says.
  ExitStatus Run(std::vector<std::string> words) { return RunCommand(std::move(words), terminal); }
  std::istringstream in;
  std::ostringstream out, err;
  Terminal terminal{.In = in, .Out = out, .Err = err};
  TempFolder folder_;
};

TEST_F(Drawing, NamesOfPacksAndTitlesStayInTheirRoomWhateverTheirBytes) {
  const std::string longName = std::string(120, 'n') + "\xff.bvq";
  std::filesystem::copy_file(PackOf(12), PathOf(longName));
  ASSERT_EQ(Run({"print", PackOf(12), PathOf(longName), "-o", PathOf("long.pdf"), "--numbers", "1",
                 "--per-page", "6", "--title", std::string(90, 'W') + '\xff'}),
            ExitStatus::Done);
  EXPECT_NE(TextOf(PathOf("long.pdf"), 5).find("BVPack12 no. 1"), std::string::npos);
  OutputOf("pdftoppm -r 50 -png " + PathOf("long.pdf") + " " + PathOf("long"));
  for (const int number : {1, 5}) {
    const Pixels page(PathOf("long-" + std::to_string(number) + ".png"));
    const double margin = page.Width() * 0.03;
    EXPECT_EQ(page.DarknessIn({0, 0, margin, page.Height() - 1.0}), 0) << number;
    EXPECT_EQ(page.DarknessIn({page.Width() - margin, 0, margin - 1, page.Height() - 1.0}), 0) << number;
  }
}

TEST_F(Drawing, PagesLookAsTheyDid) {
  // Of these four the last two are asked for.
  Run({"print", PackOf(10), "-o", PathOf("book.pdf"), "--paper", "a5", "--per-page", "1", "--numbers",
       "24-27", "--level", "2"});
  ExplainOptions explain;
  explain.Drawing.Output = PathOf("explain.pdf");
  explain.Pack = BIVOUAC_SOURCE_DIR "/tests/data/unexplained08.bvq";
  ExplainOnPaper(explain, terminal);
  terminal.Progress = true;
  Run({"stats", kPacks + "BVPack06.bvq", PackOf(11), "-o", PathOf("stats.png")});
  EXPECT_TRUE(err.str().ends_with("200 of 200 puzzles\r\x1b[K")) << err.str();
  const std::string pack = kPacks + "BVPack09.bvq";
  Run({"print", pack, "1", "-o", PathOf("picture.png"), "--solution", "--colour"});
  std::string board;
  const PackRecord record = ReadPack("assets/packs/BVPack09.bvq").at(0);
  for (const int code : record.Layout) board += code == CELL_TREE ? '3' : "0012"[board.size() % 4];
  Run({"print", pack, "1", "-o", PathOf("page.pdf"), "--colour", "--board", board.substr(0, 81)});
  for (const std::string document : {"book", "explain", "page"})
    OutputOf("pdftoppm -r 72 -png " + PathOf(document + ".pdf") + " " + PathOf(document));
  for (const std::string name :
       {"book-1", "book-2", "book-4", "book-6", "explain-1", "explain-3", "page-1", "stats", "picture"}) {
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
    DrawGuideHint(bench.main, LayGuidePosition(bench.main, position), PathOf("hint"));
    for (const char* ending : {".svg", ".after.svg"}) {
      ExpectAlike(Pixels(PathOf("hint") + ending).Shades(4),
                  Pixels(guide + "pictures/" + position.Name + ending).Shades(4));
    }
  }
}

/// A terminal whose user interrupts when it has been written to so often.
class Interrupting : public std::stringbuf {
 public:
  explicit Interrupting(int after) : left_(after) {}

 protected:
  int sync() override { return --left_ > 0 ? 0 : std::raise(SIGINT); }

 private:
  int left_;
};

TEST_F(Drawing, WhatEndsEarlyLeavesNoFile) {
  for (const int after : {1, 2}) {
    Interrupting typed(after);
    std::ostream interrupted(&typed);
    Terminal watched{.In = in, .Out = out, .Err = interrupted, .Progress = true};
    EXPECT_EQ(RunCommand({"print", PackOf(12), "-o", PathOf("book.pdf"), "--solutions", "separate"}, watched),
              ExitStatus::Interrupted)
        << after;
    EXPECT_TRUE(FilesIn(folder_ / "").empty()) << after;
  }
  const FileSizeLimit limit(20000);
  EXPECT_THROW(Run({"print", PackOf(12), "-o", PathOf("book.pdf")}), RunTimeError);
  EXPECT_TRUE(FilesIn(folder_ / "").empty());
}

}  // namespace
}  // namespace bivouac
