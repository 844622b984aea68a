// Starts the game.
#include <QApplication>

#include "window/program.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QApplication::setApplicationName("Bivouac");
  QApplication::setDesktopFileName("org.bivouac.Bivouac");
  return bivouac::Program().Run();
}
