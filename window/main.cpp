// Starts the game.
#include <QApplication>

#include "window/program.h"

int main(int argc, char** argv) {
  bivouac::SoundPlayer sound;  // First: its device opens while the window comes up.
  const QApplication application(argc, argv);
  QApplication::setApplicationName("Bivouac");
  QApplication::setDesktopFileName("org.bivouac.Bivouac");
  return bivouac::Program(sound).Run();
}
