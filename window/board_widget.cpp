#include "window/board_widget.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "events/board_keys.h"
#include "game/spoken.h"
#include "window/keys.h"

namespace bivouac {
namespace {

/// Keys that click a field on until it holds the code.
constexpr std::pair<Qt::Key, int> kContentKeys[] = {
    {Qt::Key_O, CELL_OPEN}, {Qt::Key_G, CELL_GRASS}, {Qt::Key_T, CELL_TENT}};

constexpr std::pair<Qt::Key, FrameKey> kFrameKeys[] = {
    {Qt::Key_Left, FrameKey::Left},     {Qt::Key_Right, FrameKey::Right},
    {Qt::Key_Up, FrameKey::Up},         {Qt::Key_Down, FrameKey::Down},
    {Qt::Key_PageUp, FrameKey::PageUp}, {Qt::Key_PageDown, FrameKey::PageDown},
    {Qt::Key_Home, FrameKey::Home},     {Qt::Key_End, FrameKey::End}};

constexpr int kStepsInField = 8;  // Of a drag, looked at between two events.

bool IsOpen(const Main& main, int cell) {
  return cell <= main.Board.Upper() && main.Board[cell] == CELL_OPEN;
}

constexpr QColor kFrameOuter(0x00, 0x2A, 0x8C);
constexpr QColor kFrameInner(0xFF, 0xFF, 0xFF);

}  // namespace

BoardCell::BoardCell(BoardWidget& board, int index) : board_(board), index_(index) {
  setObjectName(QStringLiteral("Grid(%1)").arg(index));
}

BoardWidget::BoardWidget(const Main& main, Click click, QWidget* parent)
    : QWidget(parent), main_(main), click_(std::move(click)) {
  setObjectName(QStringLiteral("Grid"));
  setAccessibleName(QStringLiteral("Board"));
  setAccessibleDescription(QStringLiteral(
      "Arrow keys move from field to field, Space changes one, G, T and O make it grass, tent or open"));
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void BoardWidget::Draw() {
  const int visible = main_.Grid[0].Visible ? main_.CellCount : 0;
  if (visible != cells_.Upper() + 1) {
    size_ = static_cast<int>(std::lround(std::sqrt(visible)));
    current_ = current_ < visible ? current_ : 0;
    cells_.RedimPreserve(visible - 1);
    pictures_.RedimPreserve(visible - 1);
    for (int i = 0; i < visible; ++i) {
      if (cells_[i] == nullptr) cells_[i] = std::make_unique<BoardCell>(*this, i);
      pictures_[i] = main_.Grid[i].Picture;
    }
    LayOut();
    update();
    return;
  }
  for (int i = 0; i < visible; ++i) {
    int& drawn = pictures_[i];
    if (drawn == main_.Grid[i].Picture) continue;
    drawn = main_.Grid[i].Picture;
    update(CellRect(i));
    if (main_.Timer2.Enabled) continue;  // While cells blink, their names stay.
    focusCameByItself_ = false;
    TellName(i);
  }
}

void BoardWidget::SetScale(const Scale& scale) {
  if (scale == scale_) return;
  scale_ = scale;
  LayOut();
  update();
}

void BoardWidget::LayOut() {
  if (size_ == 0) return;
  ratio_ = devicePixelRatioF();
  edges_ = EdgesOfCells(main_, size_, scale_, ratio_);
  setGeometry(edges_.Room.Left, edges_.Room.Top, LogicalLength(edges_.Lefts[size_]),
              LogicalLength(edges_.Tops[size_]));
}

/// The logical pixels that hold so many device pixels.
int BoardWidget::LogicalLength(int devicePixels) const {
  return static_cast<int>(std::ceil(devicePixels / ratio_));
}

QRect BoardWidget::CellRect(int index) const {
  const QRect device = RectOf(edges_.Cell(index));
  return QRectF(device.left() / ratio_, device.top() / ratio_, device.width() / ratio_,
                device.height() / ratio_)
      .toAlignedRect();
}

int BoardWidget::CellAt(QPoint point) const {
  const auto lineAt = [&](const Array<int>& edges, int at) {
    const int device = static_cast<int>(std::floor(at * ratio_));
    for (int line = 0; line < size_; ++line) {
      if (device >= edges[line] && device < edges[line + 1]) return line;
    }
    return -1;
  };
  const int row = lineAt(edges_.Tops, point.y());
  const int col = lineAt(edges_.Lefts, point.x());
  return row < 0 || col < 0 ? -1 : row * size_ + col;
}

QString BoardWidget::SpokenName(int index) const {
  const bool alone = focusCameByItself_ && index == current_;
  return QString::fromStdString(alone ? SpokenFieldAlone(main_, index) : SpokenField(main_, index));
}

void BoardWidget::paintEvent(QPaintEvent* event) {
  if (size_ == 0) return;
  if (ratio_ != devicePixelRatioF()) LayOut();
  QPainter painter(this);
  painter.fillRect(rect(), QColor::fromRgb(kWindowBackground));  // Where a cell begins inside a pixel.
  // From here on one unit is one device pixel, and whole numbers lie on its edges.
  const QPointF corner = painter.deviceTransform().map(QPointF(0, 0));
  painter.scale(1 / ratio_, 1 / ratio_);
  painter.translate(std::round(corner.x()) - corner.x(), std::round(corner.y()) - corner.y());

  for (int i = 0; i < size_ * size_; ++i) {
    if (!event->region().intersects(CellRect(i))) continue;
    const QRect at = RectOf(edges_.Cell(i));
    // Neighbours overlap by the last pixels of a tile.
    painter.drawPixmap(at.topLeft(), tiles_.At(pictures_[i], edges_.Side), QRect(QPoint(0, 0), at.size()));
  }
  if (frameShown_ && hasFocus()) {
    const int width = std::max(2, edges_.Side / 10);
    QRect at = RectOf(edges_.Cell(current_));
    for (const QColor& colour : {kFrameOuter, kFrameInner}) {
      painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
      painter.drawRect(QRectF(at).adjusted(width / 2.0, width / 2.0, -width / 2.0, -width / 2.0));
      at.adjust(width, width, -width, -width);
    }
  }
}

void BoardWidget::mousePressEvent(QMouseEvent* event) {
  const int index = CellAt(event->position().toPoint());
  if (index < 0) return;
  SetFrameShown(false);
  MoveFrame(index);
  const bool wasOpen = IsOpen(main_, index);
  click_(index);
  dragged_ = wasOpen && !IsOpen(main_, index) && main_.Timer3.Enabled ? index : -1;
  dragPoint_ = event->position().toPoint();
}

void BoardWidget::mouseMoveEvent(QMouseEvent* event) {
  // A fast hand skips fields between two events.
  const QPoint end = event->position().toPoint();
  const QPoint way = end - dragPoint_;
  const int steps = 1 + way.manhattanLength() * kStepsInField / std::max(1, CellRect(0).width());
  const QPoint begin = dragPoint_;
  for (int step = 1; step <= steps && dragged_ >= 0; ++step) DragTo(begin + way * step / steps);
  dragPoint_ = end;
}

void BoardWidget::mouseReleaseEvent(QMouseEvent*) {
  dragged_ = -1;
}

/// A field that is open gets its click once the pointer is well inside.
void BoardWidget::DragTo(QPoint point) {
  const int cell = CellAt(point);
  if (cell < 0 || cell == dragged_ || !IsWellInside(point, cell)) return;
  dragged_ = cell;
  if (!IsOpen(main_, cell)) return;
  MoveFrame(cell);
  click_(cell);
  if (IsOpen(main_, cell) || !main_.Timer3.Enabled) dragged_ = -1;  // No game that takes clicks.
}

/// Whether the pointer has entered a field by a third of its width, from where the drag came.
bool BoardWidget::IsWellInside(QPoint point, int cell) const {
  const QRect at = CellRect(cell);
  const auto isInside = [](int from, int to, int depthFromStart, int length) {
    if (from == to) return true;
    return (from < to ? depthFromStart : length - 1 - depthFromStart) >= length / 3;
  };
  return isInside(dragged_ % size_, cell % size_, point.x() - at.left(), at.width()) &&
         isInside(dragged_ / size_, cell / size_, point.y() - at.top(), at.height());
}

void BoardWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

void BoardWidget::keyPressEvent(QKeyEvent* event) {
  if (size_ == 0) return QWidget::keyPressEvent(event);
  const bool control = event->modifiers().testFlag(Qt::ControlModifier);
  for (const auto& [key, code] : kContentKeys) {
    if (event->key() != key || control) continue;
    if (!ShowsFrameFirst() && !event->isAutoRepeat()) ClickUntil(main_, current_, code, click_);
    return;
  }
  if (IsPressKey(event->key())) {
    if (!ShowsFrameFirst() && !event->isAutoRepeat()) click_(current_);
    return;
  }
  const auto* move = std::find_if(std::begin(kFrameKeys), std::end(kFrameKeys),
                                  [&](const auto& row) { return row.first == event->key(); });
  if (move == std::end(kFrameKeys)) return QWidget::keyPressEvent(event);
  MoveFrame(FrameAfter(size_, current_, move->second, control));
  SetFrameShown(true);
}

/// Where no frame is shown the first key that clicks only shows it, so that nobody changes a field unseen.
/// Returns whether it did.
bool BoardWidget::ShowsFrameFirst() {
  if (frameShown_) return false;
  SetFrameShown(true);
  return true;
}

void BoardWidget::focusInEvent(QFocusEvent* event) {
  const Qt::FocusReason reason = event->reason();
  focusCameByItself_ = reason != Qt::TabFocusReason && reason != Qt::BacktabFocusReason;
  SetFrameShown(!focusCameByItself_ || reason == kFocusAfterKey || frameShown_);
  if (size_ > 0) update(CellRect(current_));
}

void BoardWidget::focusOutEvent(QFocusEvent*) {
  if (size_ > 0) update(CellRect(current_));
}

void BoardWidget::SetFrameShown(bool shown) {
  if (shown == frameShown_ || size_ == 0) return;
  frameShown_ = shown;
  update(CellRect(current_));
}

void BoardWidget::MoveFrame(int index) {
  if (index == current_) return;
  focusCameByItself_ = false;
  if (frameShown_) update(CellRect(current_));
  current_ = index;
  if (frameShown_) update(CellRect(current_));
  if (hasFocus()) TellFocus();
}

void BoardWidget::TellName(int index) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent changed(&Cell(index), QAccessible::NameChanged);
  QAccessible::updateAccessibility(&changed);
}

void BoardWidget::TellFocus() {
  if (!QAccessible::isActive()) return;
  TellName(current_);  // Tools keep names, and what is said of a field tells of its lines too.
  QAccessibleEvent focus(&Cell(current_), QAccessible::Focus);
  QAccessible::updateAccessibility(&focus);
}

}  // namespace bivouac
