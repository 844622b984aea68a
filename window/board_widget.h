// The board: the cells of Grid, drawn from the tile pictures.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "game/array.h"
#include "game/game_state.h"
#include "window/scale.h"
#include "window/tiles.h"

namespace bivouac {

class BoardWidget;

/// A cell as assistive tools see it. Its object name is "Grid(Index)".
class BoardCell : public QObject {
 public:
  BoardCell(BoardWidget& board, int index);

  BoardWidget& Board() const { return board_; }
  int Index() const { return index_; }

 private:
  BoardWidget& board_;
  int index_;
};

/// Why the game gives the focus to a control after a key other than Tab.
inline constexpr Qt::FocusReason kFocusAfterKey = Qt::ShortcutFocusReason;

class BoardWidget : public QWidget {
 public:
  using Click = std::function<void(int Index)>;

  /// `click` runs at every press of a button of the mouse, and of Space or Enter on the cell in the frame.
  BoardWidget(const Main& main, Click click, QWidget* parent);

  /// Repaints the cells that differ from what was last drawn.
  void Draw();
  /// Moves the board to where its cells stand at that scale.
  void SetScale(const Scale& scale);

  /// Cells in a line.
  int Size() const { return size_; }
  /// The cell in the frame, which arrow keys move.
  int Current() const { return current_; }
  /// Where a cell stands, in logical pixels of this widget.
  QRect CellRect(int index) const;
  /// The cell at a point in logical pixels of this widget, -1 if there is none.
  int CellAt(QPoint point) const;
  BoardCell& Cell(int index) const { return *cells_[index]; }
  /// What is said of a cell.
  QString SpokenName(int index) const;
  /// Tells assistive tools of the cell in the frame. Requires: the board has cells.
  void TellFocus();
  void Press(int index) { click_(index); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void LayOut();
  int LogicalLength(int devicePixels) const;
  void MoveFrame(int index);
  void DragTo(QPoint point);
  bool IsWellInside(QPoint point, int cell) const;
  bool ShowsFrameFirst();
  void SetFrameShown(bool shown);
  void TellName(int index);

  const Main& main_;
  Click click_;
  Scale scale_;
  Tiles tiles_;
  Array<std::unique_ptr<BoardCell>> cells_;

  // What was last drawn.
  Array<int> pictures_;
  int size_ = 0;

  CellEdges edges_;
  double ratio_ = 1;

  int dragged_ = -1;  // The field that a drag came to last; -1 when none is going on.
  QPoint dragPoint_;

  int current_ = 0;
  bool frameShown_ = false;
  /// No Tab brought the focus here, but what came before: a box, a hint or a pause ended. Other things are
  /// said at that moment, so of the field only its content is.
  bool focusCameByItself_ = false;
};

}  // namespace bivouac
