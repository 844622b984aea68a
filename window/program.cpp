#include "window/program.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "storage/start_up.h"
#include "window/boxes.h"

namespace bivouac {
namespace {

/// Calls `act` once, when a widget has been painted for the first time and its picture is on the way to the
/// display.
class FirstFrame : public QObject {
 public:
  FirstFrame(QWidget& widget, std::function<void()> act) : QObject(&widget), act_(std::move(act)) {
    widget.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      watched->removeEventFilter(this);
      QTimer::singleShot(0, this, act_);
    }
    return false;
  }

 private:
  std::function<void()> act_;
};

}  // namespace

void LeaveWayland(int status) {
  if (!QApplication::platformName().startsWith(QLatin1String("wayland"))) return;
  std::fflush(nullptr);
  std::_Exit(status);
}

Program::Program()
    : desktop_(sound_),
      main_(global_, desktop_),
      form_(main_),
      road_([this] { Draw(); }, [this](const std::string& line) { Report(line); },
            [](int status) { QCoreApplication::exit(status); }),
      window_(main_, road_) {
  desktop_.Attach(road_, window_, [this]() -> PlayerDialog& { return Dialog(); });
  new FirstFrame(window_, [this] { FinishStart(); });
  // The program ends by its own road alone, not when a box is closed before the window is shown.
  QApplication::setQuitOnLastWindowClosed(false);
}

int Program::Run() {
  road_.Run([this] { Form_Load(main_, form_); });
  if (!road_.Ended()) QApplication::exec();
  return road_.Status();
}

PlayerDialog& Program::Dialog() {
  if (dialog_ == nullptr) dialog_ = std::make_unique<PlayerDialog>(form_, road_, &window_);
  return *dialog_;
}

void Program::Draw() {
  window_.Draw();
  if (dialog_ != nullptr) dialog_->Draw();
  if (soundMayOpen_ && main_.SoundOn) sound_.Open();
}

void Program::FinishStart() {
  window_.SetIcon();
  soundMayOpen_ = true;
  if (main_.SoundOn) sound_.Open();
  sound_.Check([this] { road_.Run([this] { LoseSound(main_); }); });
}

void Program::Report(const std::string& line) {
  ShowMessageBox(desktop_.BoxParent(),
                 MessageBox{.Title = "Bivouac", .Text = line, .Symbol = BoxSymbol::Error});
}

}  // namespace bivouac
