#include "window/announcer.h"

#include <QAccessible>
#include <QApplication>
#include <QWidget>

namespace bivouac {

Announcement::Announcement(QWidget* bar) : QObject(bar), bar_(bar) {
  setObjectName(kAnnouncementName);
}

void Announcement::Show(const QString& text) {
  text_ = text;
  // Tools keep the names that they asked for.
  for (const auto kind : {QAccessible::NameChanged, QAccessible::ObjectShow}) {
    QAccessibleEvent event(this, kind);
    QAccessible::updateAccessibility(&event);
  }
}

Announcer::Announcer(const Main& main, Listening listening, QWidget* bar)
    : main_(main), listening_(std::move(listening)), announcement_(bar) {
  soon_.setSingleShot(true);
  QObject::connect(&soon_, &QTimer::timeout, this, [this] { Tell(); });
}

void Announcer::Watch() {
  if (!soon_.isActive()) soon_.start(0);
}

void Announcer::Say(const std::string& text) {
  announcement_.Show(QString::fromStdString(text));
}

void Announcer::Tell() {
  if (QApplication::activeModalWidget() != nullptr || !announcement_.Bar()->isActiveWindow()) return;
  const std::string text = told_.WhatChanged(main_, listening_());
  if (!text.empty()) Say(text);
}

}  // namespace bivouac
