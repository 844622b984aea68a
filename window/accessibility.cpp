#include "window/accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QTimer>

#include "window/board_widget.h"
#include "window/main_window.h"
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
  QAccessible::Role role() const override { return QAccessible::Button; }
  QString text(QAccessible::Text kind) const override {
    const int row = cell_->Index() / Board().Size() + 1;
    const int column = cell_->Index() % Board().Size() + 1;
    if (kind == QAccessible::Name) {
      return QStringLiteral("Row %1, column %2: %3")
          .arg(row)
          .arg(column)
          .arg(Board().Content(cell_->Index()));
    }
    if (kind == QAccessible::Description) return QStringLiteral("Field of the board");
    return {};
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

/// Asked with the name of each class that an object derives from; the objects themselves say what they are.
QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  if (auto* cell = dynamic_cast<BoardCell*>(object)) return new AccessibleCell(cell);
  if (auto* board = dynamic_cast<BoardWidget*>(object)) return new AccessibleBoard(board);
  if (auto* window = dynamic_cast<MainWindow*>(object)) return new AccessibleMainWindow(window);
  if (auto* label = dynamic_cast<TextLabel*>(object)) return new AccessibleLabel(label);
  return nullptr;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(MakeInterface);
}

}  // namespace bivouac
