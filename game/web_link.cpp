#include "game/web_link.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <utility>

#include "game/error.h"
#include "game/text.h"

#ifndef BIVOUAC_WEB_SITE
#error "BIVOUAC_WEB_SITE holds the address of the web site; the build sets it"
#endif

namespace bivouac {
namespace {

constexpr int kShowNormal = 1;

/// The look-up of the program needs a file of the type that it opens. What a run that was killed left, or
/// anybody else put there, goes; nothing is ever written through it.
struct SamplePage {
  explicit SamplePage(std::string path) : Path(std::move(path)) {
    std::remove(Path.c_str());
    std::FILE* const page = std::fopen(Path.c_str(), "wbx");
    if (page == nullptr) ThrowFileError(errno, Path);
    const bool written = std::fputs("<HTML> <\\HTML>\r\n", page) >= 0;
    if (std::fclose(page) == 0 && written) return;
    const int reason = errno;
    std::remove(Path.c_str());
    ThrowFileError(reason, Path);
  }
  SamplePage(const SamplePage&) = delete;
  SamplePage& operator=(const SamplePage&) = delete;
  ~SamplePage() { std::remove(Path.c_str()); }
  const std::string Path;
};

void Warn(Main& main, const char* title, const char* text) {
  main.desktop.Show(MessageBox{.Title = title, .Text = text, .Symbol = BoxSymbol::Warning});
}

void OpenWebSite(Main& main) {
  const SamplePage page(main.global.DataDir + "temphtm.HTM");
  const ProgramAnswer browser = main.desktop.FindExecutable(page.Path, "");
  if (browser.Code < kFirstGoodCode || TrimRight(browser.Program).empty()) {
    Warn(main, "Browser Not Found", "Could not find associated Browser");
  } else if (main.desktop.ShellExecute("open", browser.Program, BIVOUAC_WEB_SITE, "", kShowNormal) <
             kFirstGoodCode) {
    Warn(main, "URL Failed", "Web Page not Opened");
  }
}

}  // namespace

void Label2_Click(Main& main) {
  OpenWebSite(main);
}

void Label3_Click(Main& main) {
  OpenWebSite(main);
}

}  // namespace bivouac
