#include "game/web_link.h"

#include <cstdio>
#include <fstream>

#include "game/text.h"

#ifndef BIVOUAC_WEB_SITE
#error "BIVOUAC_WEB_SITE holds the address of the web site; the build sets it"
#endif

namespace bivouac {
namespace {

constexpr int kShowNormal = 1;

/// The look-up of the program needs a file of the type that it opens.
void WriteSamplePage(const std::string& path) {
  std::ofstream page(path, std::ios::binary);
  page << "<HTML> <\\HTML>\r\n";
  page.close();
  if (!page) throw RunTimeError(ErrorNumber::FileAccess, "cannot write " + path);
}

void Warn(Main& main, const char* title, const char* text) {
  main.desktop.Show(MessageBox{.Title = title, .Text = text, .Symbol = BoxSymbol::Warning});
}

void OpenWebSite(Main& main) {
  const std::string page = main.global.DataDir + "temphtm.HTM";
  WriteSamplePage(page);
  const ProgramAnswer browser = main.desktop.FindExecutable(page, "");
  if (browser.Code < kFirstGoodCode || TrimRight(browser.Program).empty()) {
    Warn(main, "Browser Not Found", "Could not find associated Browser");
  } else if (main.desktop.ShellExecute("open", browser.Program, BIVOUAC_WEB_SITE, "", kShowNormal) <
             kFirstGoodCode) {
    Warn(main, "URL Failed", "Web Page not Opened");
  }
  std::remove(page.c_str());
}

}  // namespace

void Label2_Click(Main& main) {
  OpenWebSite(main);
}

void Label3_Click(Main& main) {
  OpenWebSite(main);
}

}  // namespace bivouac
