// An empty window of the game's size: what Qt itself costs.
#include <QApplication>
#include <QWidget>

#include "game/controls.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QWidget window;
  window.resize(bivouac::kWindowWidth / bivouac::kTwipsPerPixel,
                bivouac::kWindowHeight / bivouac::kTwipsPerPixel);
  window.show();
  return QApplication::exec();
}
