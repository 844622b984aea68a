#include "window/widgets.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "game/controls.h"
#include "window/keys.h"
#include "window/scale.h"
#include "window/text_fit.h"

namespace bivouac {
namespace {

constexpr int kButtonText = 13;  // Pixels at the window's opening size.
constexpr double kCorner = 3.5;
constexpr QColor kFocus(0x00, 0x2A, 0x8C);
constexpr QColor kFaintText(0x7A, 0x7A, 0x7A);

/// Returns whether the key was Enter, which clicks the button as Space does; held down, it clicks once.
bool ClickedByEnter(QAbstractButton& button, const QKeyEvent& event) {
  if (!IsEnter(event.key())) return false;
  if (!event.isAutoRepeat()) button.click();
  return true;
}

QColor Mixed(const QColor& a, const QColor& b, double shareOfB) {
  const auto mix = [&](int x, int y) { return static_cast<int>(std::lround(x + (y - x) * shareOfB)); };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

/// A ring that stands out on every colour.
void PaintFocus(QPainter& painter, const QRectF& rect, double unit) {
  const double width = std::max(1.0, 2 * unit);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kFocus, width));
  const double inset = width / 2;
  painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), kCorner * unit, kCorner * unit);
  painter.setPen(QPen(Qt::white, std::max(1.0, unit)));
  const double inner = width + unit / 2;
  painter.drawRoundedRect(rect.adjusted(inner, inner, -inner, -inner), kCorner * unit, kCorner * unit);
}

}  // namespace

ColourButton::ColourButton(const QString& text, QColor colour, QWidget* parent)
    : QPushButton(parent), colour_(colour) {
  // Not sooner: a text makes what assistive tools see of an object, and this is a plain button until here.
  setText(text);
  setAccessibleName(text);
  setFocusPolicy(Qt::StrongFocus);
}

void ColourButton::FitText(double unit) {
  unit_ = unit;
  const int margin = MarginOf(5, unit);
  const QSize room = size() - QSize(2 * margin, 2);
  setFont(FittingFont(font(), text(), room, PixelsOf(kButtonText, unit), Wrapping::OneLine));
}

void ColourButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor ground = QColor::fromRgb(kWindowBackground);
  QColor face = colour_;
  if (!isEnabled()) {
    face = Mixed(face, ground, 0.75);
  } else if (isDown()) {
    face = face.darker(118);
  } else if (underMouse()) {
    face = Mixed(face, Qt::white, 0.35);
  }
  const double line = std::max(1.0, unit_);
  const QRectF rim = QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2);
  QLinearGradient shine(rim.topLeft(), rim.bottomLeft());
  const bool raised = isEnabled() && !isDown();
  shine.setColorAt(0, raised ? Mixed(face, Qt::white, 0.30) : face);
  shine.setColorAt(1, raised ? Mixed(face, Qt::black, 0.06) : face);
  painter.setBrush(shine);
  painter.setPen(QPen(isEnabled() ? Mixed(colour_, Qt::black, 0.55) : Mixed(ground, Qt::black, 0.2), line));
  painter.drawRoundedRect(rim, kCorner * unit_, kCorner * unit_);
  if (hasFocus()) PaintFocus(painter, rect(), unit_);
  painter.setPen(isEnabled() ? QColor(Qt::black) : kFaintText);
  painter.drawText(isDown() ? rect().translated(1, 1) : rect(), Qt::AlignCenter, text());
}

void ColourButton::keyPressEvent(QKeyEvent* event) {
  if (ClickedByEnter(*this, *event)) return;
  // Arrow keys belong to the board, not to the order of the buttons.
  if (event->key() == Qt::Key_Space) return QPushButton::keyPressEvent(event);
  QWidget::keyPressEvent(event);
}

void ColourButton::focusInEvent(QFocusEvent* event) {
  windowCameBack_ = event->reason() == Qt::ActiveWindowFocusReason;
  QPushButton::focusInEvent(event);
}

void ColourButton::enterEvent(QEnterEvent* event) {
  QPushButton::enterEvent(event);
  update();
}

void ColourButton::leaveEvent(QEvent* event) {
  QPushButton::leaveEvent(event);
  update();
}

ScaledCheckBox::ScaledCheckBox(const QString& text, QWidget* parent) : QCheckBox(text, parent) {
  setAccessibleName(text);
  setFocusPolicy(Qt::StrongFocus);
}

void ScaledCheckBox::FitText(double unit) {
  unit_ = unit;
  const QSize room(width() - MarginOf(24, unit), height());
  setFont(FittingFont(font(), text(), room, PixelsOf(kButtonText, unit), Wrapping::OneLine));
}

void ScaledCheckBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double side = 14 * unit_;
  const QRectF box(4 * unit_, (height() - side) / 2, side, side);
  painter.setPen(QPen(isEnabled() ? QColor(0x55, 0x55, 0x55) : kFaintText, std::max(1.0, unit_)));
  painter.setBrush(isEnabled() ? QColor(Qt::white) : QColor::fromRgb(kWindowBackground));
  painter.drawRoundedRect(box, 2 * unit_, 2 * unit_);
  if (isChecked()) {
    QPainterPath tick;
    tick.moveTo(box.left() + side * 0.22, box.top() + side * 0.52);
    tick.lineTo(box.left() + side * 0.43, box.top() + side * 0.74);
    tick.lineTo(box.left() + side * 0.80, box.top() + side * 0.26);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(
        QPen(isEnabled() ? kFocus : kFaintText, 2.2 * unit_, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(tick);
  }
  if (hasFocus()) PaintFocus(painter, rect(), unit_);
  painter.setPen(isEnabled() ? QColor(Qt::black) : kFaintText);
  const int textLeft = MarginOf(22, unit_);
  painter.drawText(rect().adjusted(textLeft, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, text());
}

void ScaledCheckBox::keyPressEvent(QKeyEvent* event) {
  if (ClickedByEnter(*this, *event)) return;
  if (event->key() == Qt::Key_Space) return QCheckBox::keyPressEvent(event);
  QWidget::keyPressEvent(event);
}

TextLabel::TextLabel(const LabelLook& look, QWidget* parent) : QWidget(parent), look_(look) {
  QFont own = font();
  own.setBold(look.Bold);
  setFont(own);
}

void TextLabel::SetText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  setAccessibleName(text);
  if (unit_ > 0) FitText(unit_);
}

void TextLabel::SetTextColour(QColor colour, QColor rim) {
  if (colour == look_.Text && rim == rim_) return;
  look_.Text = colour;
  rim_ = rim;
  update();
}

void TextLabel::SetPicture(const QImage& picture) {
  picture_ = picture;
  picture_.setDevicePixelRatio(1);
  stretched_ = {};
  update();
}

void TextLabel::SetClick(Click click) {
  click_ = std::move(click);
}

int TextLabel::Margin() const {
  return look_.Background.isValid() ? MarginOf(4, unit_) : 0;
}

QSize TextLabel::TextRoom() const {
  return size() - QSize(2 * Margin(), 0);
}

void TextLabel::FitText(double unit) {
  unit_ = unit;
  FitTextBelow(PixelsOf(look_.LargestText, unit));
}

void TextLabel::FitTextBelow(int largest) {
  setFont(FittingFont(font(), text_, TextRoom(), largest, Wrapping::AtWords));
  update();
}

void TextLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (look_.Background.isValid()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(look_.Background);
    painter.drawRoundedRect(rect(), kCorner * unit_, kCorner * unit_);
  }
  if (!picture_.isNull()) {
    const double ratio = devicePixelRatioF();
    const QSize device = (QSizeF(size()) * ratio).toSize();
    if (stretched_.size() != device) {
      stretched_ =
          QPixmap::fromImage(picture_.scaled(device, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
      stretched_.setDevicePixelRatio(ratio);
    }
    painter.drawPixmap(0, 0, stretched_);
  }
  PaintText(painter, {QPoint(Margin(), 0), TextRoom()});
  if (hasFocus()) PaintFocus(painter, rect(), unit_);
}

void TextLabel::PaintText(QPainter& painter, const QRect& room) const {
  const int flags = static_cast<int>(look_.Alignment) | Qt::TextWordWrap;
  if (rim_.isValid()) {
    const double width = std::max(0.8, 0.8 * unit_);
    painter.setPen(rim_);
    for (int turn = 0; turn < 8; ++turn) {
      const double angle = turn * 3.14159265 / 4;
      const QPointF shift(width * std::cos(angle), width * std::sin(angle));
      painter.drawText(QRectF(room).translated(shift), flags, text_);
    }
  }
  painter.setPen(look_.Text);
  painter.drawText(room, flags, text_);
}

void TextLabel::mousePressEvent(QMouseEvent* event) {
  if (!click_) return QWidget::mousePressEvent(event);
  click_();
}

void TextLabel::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

void TextLabel::keyPressEvent(QKeyEvent* event) {
  if (!click_ || !IsPressKey(event->key())) return QWidget::keyPressEvent(event);
  if (!event->isAutoRepeat()) click_();
}

}  // namespace bivouac
