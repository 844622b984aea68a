// Says aloud what changed: for assistive tools, which hear of a change only where they look already.
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "game/spoken.h"

namespace bivouac {

inline const QString kAnnouncementName = QStringLiteral("Announcement");

/// A text that shows for nobody but assistive tools, as a notification of the status bar. Where a toolkit has
/// no call to announce something, readers listen to these.
class Announcement : public QObject {
 public:
  explicit Announcement(QWidget* bar);

  QWidget* Bar() const { return bar_; }
  const QString& Text() const { return text_; }
  void Show(const QString& text);

 private:
  QWidget* bar_;
  QString text_;
};

class Announcer : public QObject {
 public:
  using Listening = std::function<Listener()>;

  /// `listening` says where the listener is. `bar` belongs to the window that must be active to be heard.
  Announcer(const Main& main, Listening listening, QWidget* bar);

  /// To be called after every event: what changed is told once the event is through and no box is open.
  void Watch();
  /// Tells a text that was asked for.
  void Say(const std::string& text);
  const Announcement& Last() const { return announcement_; }

 private:
  void Tell();

  const Main& main_;
  Listening listening_;
  Announcement announcement_;
  Told told_;
  QTimer soon_;
};

}  // namespace bivouac
