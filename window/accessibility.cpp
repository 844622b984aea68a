#include "window/accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QTimer>

#include "window/announcer.h"
#include "window/board_widget.h"
#include "window/main_window.h"
#include "window/status_bar.h"
#include "window/widgets.h"

namespace bivouac {
namespace {

// A press may open a box and hold its caller: it waits for the event loop, so that the tool that asked gets
// its answer at once.

/// A text; where it takes clicks, a button in the shape of a text.
class AccessibleLabel : public QAccessibleWidget {
 public:
  explicit AccessibleLabel(TextLabel* label) : QAccessibleWidget(label) {}

  QAccessible::Role role() const override {
    return Label().TakesClicks() ? QAccessible::Button : QAccessible::StaticText;
  }
  QStringList actionNames() const override {
    const QStringList own = QAccessibleWidget::actionNames();
    return Label().TakesClicks() ? QStringList{pressAction()} + own : own;
  }
  void doAction(const QString& action) override {
    if (action != pressAction()) return QAccessibleWidget::doAction(action);
    QTimer::singleShot(0, widget(), [label = &Label()] { label->Press(); });
  }

 private:
  TextLabel& Label() const { return *static_cast<TextLabel*>(widget()); }
};

class AccessibleCell : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  explicit AccessibleCell(BoardCell* cell) : cell_(cell) {}

  bool isValid() const override { return cell_->Board().isVisible(); }
  QObject* object() const override { return cell_; }
  QWindow* window() const override { return cell_->Board().window()->windowHandle(); }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(&cell_->Board());
  }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }

  QRect rect() const override {
    const QRect own = Board().CellRect(cell_->Index());
    return {Board().mapToGlobal(own.topLeft()), own.size()};
  }
  /// Of all roles that a field could have, readers name this one least, and they say nothing of its parent.
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? Board().SpokenName(cell_->Index()) : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}
  QAccessible::State state() const override {
    QAccessible::State state;
    state.focusable = true;
    state.focused = Board().hasFocus() && Board().Current() == cell_->Index();
    state.invisible = !Board().isVisible();
    state.disabled = !Board().isEnabled();
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& action) override {
    if (action != pressAction()) return;
    QTimer::singleShot(0, cell_, [cell = cell_] { cell->Board().Press(cell->Index()); });
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  BoardWidget& Board() const { return cell_->Board(); }

  BoardCell* cell_;
};

class AccessibleBoard : public QAccessibleWidget {
 public:
  explicit AccessibleBoard(BoardWidget* board) : QAccessibleWidget(board, QAccessible::Grouping) {}

  int childCount() const override { return Board().Size() * Board().Size(); }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    return QAccessible::queryAccessibleInterface(&Board().Cell(index));
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* cell = dynamic_cast<BoardCell*>(child->object());
    return cell != nullptr ? cell->Index() : -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    return child(Board().CellAt(Board().mapFromGlobal(QPoint(x, y))));
  }
  QAccessibleInterface* focusChild() const override {
    return Board().hasFocus() ? child(Board().Current()) : nullptr;
  }

 private:
  BoardWidget& Board() const { return *static_cast<BoardWidget*>(widget()); }
};

class AccessibleMainWindow : public QAccessibleWidget {
 public:
  explicit AccessibleMainWindow(MainWindow* window) : QAccessibleWidget(window, QAccessible::Window) {}
};

/// A button that tells its keys.
class AccessibleButton : public QAccessibleWidget {
 public:
  explicit AccessibleButton(ColourButton* button) : QAccessibleWidget(button, QAccessible::Button) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Accelerator) return Own().Keys().join(QStringLiteral(", "));
    if (kind == QAccessible::Description && Own().WindowCameBack()) return {};
    return QAccessibleWidget::text(kind);
  }
  QStringList actionNames() const override {
    return QStringList{pressAction()} + QAccessibleWidget::actionNames();
  }
  void doAction(const QString& action) override {
    if (action != pressAction()) return QAccessibleWidget::doAction(action);
    QTimer::singleShot(0, widget(), [button = &Own()] { button->click(); });
  }
  QStringList keyBindingsForAction(const QString& action) const override {
    return action == pressAction() ? Own().Keys() : QStringList();
  }

 private:
  ColourButton& Own() const { return *static_cast<ColourButton*>(widget()); }
};

/// The status bar. Behind its panels stands the announcement.
class AccessibleStatusBar : public QAccessibleWidget {
 public:
  explicit AccessibleStatusBar(StatusBar* bar) : QAccessibleWidget(bar, QAccessible::StatusBar) {}

  int childCount() const override { return Panels() + (Voice() != nullptr ? 1 : 0); }
  QAccessibleInterface* child(int index) const override {
    return index == Panels() ? QAccessible::queryAccessibleInterface(Voice())
                             : QAccessibleWidget::child(index);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child->object() == Voice() ? Panels() : QAccessibleWidget::indexOfChild(child);
  }

 private:
  int Panels() const { return QAccessibleWidget::childCount(); }
  QObject* Voice() const {
    return widget()->findChild<QObject*>(kAnnouncementName, Qt::FindDirectChildrenOnly);
  }
};

class AccessibleAnnouncement : public QAccessibleObject {
 public:
  explicit AccessibleAnnouncement(Announcement* announcement) : QAccessibleObject(announcement) {}

  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(Own().Bar()); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::Notification; }
  QAccessible::State state() const override { return {}; }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? Own().Text() : QString();
  }

 private:
  Announcement& Own() const { return *static_cast<Announcement*>(object()); }
};

/// Where the board gets the focus, it is its field in the frame that a reader has to hear of: the board
/// itself says nothing that is worth a word.
void PassOn(QAccessibleEvent* event) {
  QAccessible::installUpdateHandler(nullptr);
  QObject* const focus = event->type() == QAccessible::Focus ? event->object() : nullptr;
  auto* board = dynamic_cast<BoardWidget*>(focus);
  if (board != nullptr && board->Size() > 0) {
    board->TellFocus();
  } else {
    if (dynamic_cast<ColourButton*>(focus) != nullptr) {
      QAccessibleEvent described(focus, QAccessible::DescriptionChanged);  // Tools keep what they were told.
      QAccessible::updateAccessibility(&described);
    }
    QAccessible::updateAccessibility(event);
  }
  QAccessible::installUpdateHandler(PassOn);
}

/// Asked with the name of each class that an object derives from; the objects themselves say what they are.
QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  if (auto* cell = dynamic_cast<BoardCell*>(object)) return new AccessibleCell(cell);
  if (auto* board = dynamic_cast<BoardWidget*>(object)) return new AccessibleBoard(board);
  if (auto* window = dynamic_cast<MainWindow*>(object)) return new AccessibleMainWindow(window);
  if (auto* label = dynamic_cast<TextLabel*>(object)) return new AccessibleLabel(label);
  if (auto* button = dynamic_cast<ColourButton*>(object)) return new AccessibleButton(button);
  if (auto* bar = dynamic_cast<StatusBar*>(object)) return new AccessibleStatusBar(bar);
  if (auto* said = dynamic_cast<Announcement*>(object)) return new AccessibleAnnouncement(said);
  return nullptr;
}

}  // namespace

Accessibility::Accessibility() {
  QAccessible::installFactory(MakeInterface);
  QAccessible::installUpdateHandler(PassOn);
}

}  // namespace bivouac
