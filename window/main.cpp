// Starts the game.
#include <QApplication>
#include <csignal>
#include <fontconfig/fontconfig.h>
#include <future>
#include <vector>

#include "window/program.h"

int main(int argc, char** argv) {
  // Where files may only become so long, it is told as a full disk is.
  std::signal(SIGXFSZ, SIG_IGN);
  // Folders of the user are named by whole paths; others are none.
  for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME"}) {
    if (!qEnvironmentVariable(name).startsWith(QLatin1Char('/'))) qunsetenv(name);
  }
  // Reading what fonts there are takes as long as reaching the display, and needs none.
  const std::future<FcBool> fonts = std::async(std::launch::async, FcInit);
  // One id for the window, wherever the desktop looks for it: X11 has it from the arguments.
  char name[] = "-name";
  char id[] = "org.bivouac.Bivouac";
  std::vector<char*> arguments(argv, argv + argc);
  arguments.insert(arguments.end(), {name, id, nullptr});
  int count = argc + 2;
  const QApplication application(count, arguments.data());
  QApplication::setApplicationName("Bivouac");
  QApplication::setDesktopFileName(id);
  fonts.wait();
  const int status = bivouac::Program().Run();
  bivouac::LeaveWayland(status);
  return status;
}
