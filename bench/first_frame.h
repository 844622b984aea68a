// The end of a whole-process figure.
#pragma once

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <cstdlib>

namespace bivouac {

/// Ends the process as soon as a window has been painted for the first time and handed to the display.
class FirstFrame : public QObject {
 public:
  FirstFrame() { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // The timer's turn comes when the whole window is painted.
    if (event->type() == QEvent::Paint && watched->isWidgetType())
      QTimer::singleShot(0, qApp, [] { std::_Exit(0); });
    return false;
  }
};

}  // namespace bivouac
