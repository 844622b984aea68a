// An empty window of the game's size: what Qt itself costs. With the argument "stay" it stays open; else it
// ends at its first frame.
#include <QWidget>
#include <optional>
#include <string_view>

#include "bench/first_frame.h"
#include "game/controls.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  std::optional<bivouac::FirstFrame> end;
  if (argc < 2 || std::string_view(argv[1]) != "stay") end.emplace();
  QWidget window;
  window.resize(bivouac::kWindowWidth / bivouac::kTwipsPerPixel,
                bivouac::kWindowHeight / bivouac::kTwipsPerPixel);
  window.show();
  return QApplication::exec();
}
