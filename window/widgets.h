// The widgets that the main window is made of. Each chooses the size of its text by measuring.
#pragma once

#include <QCheckBox>
#include <QImage>
#include <QPixmap>
#include <QPushButton>
#include <functional>

namespace bivouac {

/// A button in a colour of its own. Space and Enter press it.
class ColourButton : public QPushButton {
 public:
  ColourButton(const QString& text, QColor colour, QWidget* parent);

  /// The keys that press the button wherever the focus is, for its tool tip and for assistive tools.
  void SetKeys(const QStringList& keys) { keys_ = keys; }
  const QStringList& Keys() const { return keys_; }
  /// The focus is here because the window came back. Readers name the window then, so less is said.
  bool WindowCameBack() const { return windowCameBack_; }
  /// Fits the text. `unit` is the length of a pixel of the window's opening size.
  void FitText(double unit);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  QColor colour_;
  QStringList keys_;
  bool windowCameBack_ = false;
  double unit_ = 1;
};

/// A check box that grows with the window. Space and Enter change it.
class ScaledCheckBox : public QCheckBox {
 public:
  ScaledCheckBox(const QString& text, QWidget* parent);

  void FitText(double unit);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool hitButton(const QPoint& point) const override { return rect().contains(point); }

 private:
  double unit_ = 1;
};

/// How a TextLabel looks.
struct LabelLook {
  QColor Background = QColor();  ///< Invalid: none.
  QColor Text = Qt::black;
  Qt::Alignment Alignment = Qt::AlignCenter;
  int LargestText = 13;  ///< Pixels at the window's opening size.
  bool Bold = false;
};

/// Plain text that is wrapped at words and shrunk until it lies wholly within the label; or a picture,
/// stretched over it. Not a QLabel, which would lay the text out for itself, in fonts that are never shown.
class TextLabel : public QWidget {
 public:
  using Click = std::function<void()>;

  TextLabel(const LabelLook& look, QWidget* parent);

  const QString& Text() const { return text_; }
  void SetText(const QString& text);
  /// A valid `rim` goes round the letters, for a colour that hardly shows on the window's ground.
  void SetTextColour(QColor colour, QColor rim = QColor());
  void SetPicture(const QImage& picture);
  bool HasPicture() const { return !picture_.isNull(); }
  /// The label takes clicks: presses of any button of the mouse and, when it has the focus, Space and Enter.
  void SetClick(Click click);
  bool TakesClicks() const { return static_cast<bool>(click_); }
  void Press() {
    if (click_) click_();
  }
  void FitText(double unit);
  /// Fits the text into at most that size, in present pixels.
  void FitTextBelow(int largest);
  /// The room that the text has.
  virtual QSize TextRoom() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

  /// The text in its colour, and the rim around it.
  void PaintText(QPainter& painter, const QRect& room) const;
  double Unit() const { return unit_; }

 private:
  int Margin() const;

  LabelLook look_;
  QString text_;
  QColor rim_;
  Click click_;
  QImage picture_;
  QPixmap stretched_;
  double unit_ = 0;  ///< 0 until the label is laid out: no text is measured before.
};

}  // namespace bivouac
