#include "window/status_bar.h"

#include <QPainter>

#include "window/scale.h"
#include "window/text_fit.h"

namespace bivouac {
namespace {

constexpr int kLargestText = 11;  // Pixels at the window's opening size.
constexpr int kSmallestText = 9;  // A panel whose text needs less gets two lines.
constexpr QColor kGround(0xF0, 0xF0, 0xF0);
constexpr QColor kLine(0xB8, 0xB8, 0xB8);

}  // namespace

StatusBar::StatusBar(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("StatusBar1"));
  setAccessibleName(QStringLiteral("Status bar"));
  setAccessibleDescription(QStringLiteral("What is known of the current puzzle"));
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    const PanelRow& row = PanelTable()[i];
    const QString tip = QString::fromUtf8(row.ToolTip);
    auto* label = new TextLabel({.Alignment = Qt::AlignLeft | Qt::AlignVCenter}, this);
    label->setObjectName(QStringLiteral("StatusBar1.Panels(%1)").arg(i + 1));
    label->setAccessibleDescription(tip);
    label->setToolTip(tip);
    labels_[i] = label;
  }
}

void StatusBar::Draw(const FixedArray<Panel, 6>& panels) {
  bool changed = false;
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    const std::string& text = panels[static_cast<int>(i)].Text;
    if (text == drawn_[i]) continue;
    drawn_[i] = text;
    labels_[i]->SetText(QString::fromStdString(text));
    changed = true;
  }
  if (changed && unit_ > 0) FitTexts();
}

void StatusBar::LayOut(double unit) {
  unit_ = unit;
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    labels_[i]->setGeometry(RectOf(PlaceOfPanel(static_cast<int>(i), width(), height(), unit)));
  }
  FitTexts();
}

/// One size for all texts that fit on a line of at least the smallest size; others are wrapped.
void StatusBar::FitTexts() {
  // Rounded down: where a logical pixel is large, rounding up would wrap some texts and not the others.
  const int smallest = static_cast<int>(kSmallestText * unit_);
  int common = PixelsOf(kLargestText, unit_);
  for (TextLabel* label : labels_) {
    const QFont font =
        FittingFont(label->font(), label->Text(), label->TextRoom(), common, Wrapping::OneLine);
    if (font.pixelSize() >= smallest) common = font.pixelSize();
  }
  for (TextLabel* label : labels_) label->FitTextBelow(common);
}

void StatusBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), kGround);
  painter.fillRect(0, 0, width(), 1, kLine);
  int before = 0;
  for (const PanelRow& row : PanelTable().first(labels_.size() - 1)) {
    before += row.Width;
    painter.fillRect(width() * before / kPanelWidths, height() / 5, 1, height() * 3 / 5, kLine);
  }
}

}  // namespace bivouac
