// The game up to its first frame, for whole-process figures.
#include "bench/first_frame.h"
#include "window/program.h"

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  const bivouac::FirstFrame end;
  return bivouac::Program().Run();
}
