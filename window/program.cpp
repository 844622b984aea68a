#include "window/program.h"

#include <QApplication>

#include "storage/start_up.h"
#include "window/boxes.h"

namespace bivouac {

Program::Program(SoundPlayer& sound)
    : desktop_(sound),
      main_(global_, desktop_),
      form_(main_),
      road_([this] { Draw(); }, [this](const std::string& line) { Report(line); }),
      window_(main_, road_),
      dialog_(form_, road_, &window_) {
  desktop_.Attach(road_, window_, dialog_);
  // The program ends by its own road alone, not when a box is closed before the window is shown.
  QApplication::setQuitOnLastWindowClosed(false);
}

int Program::Run() {
  road_.Run([this] { Form_Load(main_, form_); });
  if (!road_.Ended()) QApplication::exec();
  return road_.Status();
}

void Program::Draw() {
  window_.Draw();
  dialog_.Draw();
}

void Program::Report(const std::string& line) {
  ShowMessageBox(desktop_.BoxParent(),
                 MessageBox{.Title = "Bivouac", .Text = line, .Symbol = BoxSymbol::Error});
}

}  // namespace bivouac
