// Starts the game.
#include <QApplication>
#include <fontconfig/fontconfig.h>
#include <future>

#include "window/program.h"

int main(int argc, char** argv) {
  // Reading what fonts there are takes as long as reaching the display, and needs none.
  const std::future<FcBool> fonts = std::async(std::launch::async, FcInit);
  const QApplication application(argc, argv);
  QApplication::setApplicationName("Bivouac");
  QApplication::setDesktopFileName("org.bivouac.Bivouac");
  fonts.wait();
  return bivouac::Program().Run();
}
