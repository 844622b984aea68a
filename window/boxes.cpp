#include "window/boxes.h"

#include <QAbstractButton>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontInfo>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace bivouac {
namespace {

QMessageBox::Icon IconOf(BoxSymbol symbol) {
  switch (symbol) {
    case BoxSymbol::None:
      return QMessageBox::NoIcon;
    case BoxSymbol::Information:
      return QMessageBox::Information;
    case BoxSymbol::Question:
      return QMessageBox::Question;
    case BoxSymbol::Warning:
      return QMessageBox::Warning;
    case BoxSymbol::Error:
      return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

struct ButtonChoice {
  QMessageBox::StandardButtons Shown;
  QMessageBox::StandardButton Enter;
  QMessageBox::StandardButton Escape;
};

ButtonChoice ChoiceOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::Ok:
      return {QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok};
    case BoxButtons::OkCancel:
      // Asked before something is lost for good.
      return {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel, QMessageBox::Cancel};
    case BoxButtons::YesNo:
      return {QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No};
  }
  return {QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok};
}

BoxAnswer AnswerOf(int button) {
  switch (button) {
    case QMessageBox::Yes:
      return BoxAnswer::Yes;
    case QMessageBox::No:
      return BoxAnswer::No;
    case QMessageBox::Cancel:
      return BoxAnswer::Cancel;
    default:
      return BoxAnswer::Ok;
  }
}

/// Line ends of every kind become one line feed, so that none shows as a stray sign.
QString LinesOf(const std::string& text) {
  QString lines = QString::fromStdString(text);
  for (const char* end : {"\r\n", "\n\r", "\r"}) lines.replace(QLatin1String(end), QLatin1String("\n"));
  return lines;
}

/// The name of a button is the text that it shows; its object name is that text as well.
void NameButtons(const QDialogButtonBox& box) {
  for (QAbstractButton* button : box.buttons()) {
    const QString text = button->text().remove(QLatin1Char('&'));
    button->setObjectName(text);
    button->setAccessibleName(text);
  }
}

/// About where Qt wraps the text of a box.
int WrappedWidth(const QMessageBox& dialog) {
  return std::min(500, RoomOnScreen(dialog).width() / 2);
}

/// What the text of a box may take, so that Qt, which makes no box wider than its limit, cuts nothing off.
int WidestText(const QMessageBox& dialog) {
  constexpr int kBeside = 110;  // Symbol and margins.
  const int screen = RoomOnScreen(dialog).width();
  const int limit = screen <= 1024 ? screen : std::min(screen - 480, 1000);
  return limit - kBeside;
}

/// Qt wraps the text of a box at a width that does not grow with the font, and at half of a small screen: a
/// long text would be taller than the screen.
void WidenWhereNarrow(QMessageBox& dialog, QLabel& label) {
  constexpr int kCharacters = 40;
  const int wished = std::min(kCharacters * QFontInfo(dialog.font()).pixelSize(), WidestText(dialog));
  const int natural = QFontMetrics(dialog.font()).boundingRect({}, 0, dialog.text()).width();
  const int wrapped = WrappedWidth(dialog);
  if (wished > wrapped && natural > wrapped) label.setMinimumWidth(std::min(wished, natural));
}

/// Where the box would still be taller than the screen, its text scrolls, by mouse and by the keys that move
/// in a text.
void ScrollWhereTall(QMessageBox& dialog, QLabel& label, QGridLayout& grid) {
  const int room = RoomOnScreen(dialog).height();
  const int width = std::max(label.minimumWidth(), WrappedWidth(dialog));
  label.setWordWrap(true);
  if (grid.totalHeightForWidth(std::max(width, grid.totalMinimumSize().width())) <= room) return;

  auto* area = new QScrollArea(&dialog);
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidgetResizable(true);
  delete grid.replaceWidget(&label, area);
  label.setMinimumWidth(0);
  label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
  area->setWidget(&label);
  QScrollBar* bar = area->verticalScrollBar();
  area->setFixedSize(width + bar->sizeHint().width(), 1);
  grid.activate();
  area->setFixedHeight(std::max(1, room - grid.totalMinimumSize().height()));
  const std::pair<Qt::Key, QAbstractSlider::SliderAction> keys[] = {
      {Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd},
      {Qt::Key_Up, QAbstractSlider::SliderSingleStepSub},
      {Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
      {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub},
      {Qt::Key_End, QAbstractSlider::SliderToMaximum},
      {Qt::Key_Home, QAbstractSlider::SliderToMinimum}};
  for (const auto& [key, action] : keys) {
    QObject::connect(new QShortcut(QKeySequence(key), &dialog), &QShortcut::activated, bar,
                     [bar, scroll = action] { bar->triggerAction(scroll); });
  }
}

/// Qt indents a text without a symbol as if there were one.
void LeaveNoIndent(QGridLayout& grid) {
  grid.setHorizontalSpacing(0);
  for (int i = 0; i < grid.count(); ++i) {
    if (QSpacerItem* const indent = grid.itemAt(i)->spacerItem()) indent->changeSize(0, 0);
  }
  grid.invalidate();
}

/// A text stays readable, and its box on the screen.
void FitToScreen(QMessageBox& dialog) {
  auto* label = dialog.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  auto* grid = qobject_cast<QGridLayout*>(dialog.layout());
  if (label == nullptr || grid == nullptr) return;
  if (dialog.icon() == QMessageBox::NoIcon) LeaveNoIndent(*grid);
  WidenWhereNarrow(dialog, *label);
  ScrollWhereTall(dialog, *label, *grid);
}

}  // namespace

QSize RoomOnScreen(const QWidget& window) {
  constexpr QSize kFrame(12, 36);  // What the desktop puts around a window, at most.
  return window.screen()->availableGeometry().size() - kFrame;
}

void MoveOverParent(QWidget& window) {
  if (window.parentWidget() == nullptr) return;
  const QPoint least = window.screen()->availableGeometry().topLeft();
  const QSize spare = RoomOnScreen(window) - window.size();
  const QPoint middle = window.parentWidget()->geometry().center() - window.rect().center();
  window.move(std::max(least.x(), std::min(middle.x(), least.x() + spare.width())),
              std::max(least.y(), std::min(middle.y(), least.y() + spare.height())));
}

BoxAnswer ShowMessageBox(QWidget* parent, const MessageBox& box) {
  const ButtonChoice choice = ChoiceOf(box.Buttons);
  const QString text = LinesOf(box.Text);
  QMessageBox dialog(parent);
  if (parent != nullptr) dialog.setFont(parent->font());
  dialog.setObjectName(QStringLiteral("MessageBox"));
  dialog.setWindowTitle(QString::fromStdString(box.Title));
  dialog.setAccessibleName(dialog.windowTitle());
  dialog.setTextFormat(Qt::PlainText);
  dialog.setText(text);
  dialog.setIcon(IconOf(box.Symbol));
  dialog.setStandardButtons(choice.Shown);
  dialog.setDefaultButton(choice.Enter);
  dialog.setEscapeButton(choice.Escape);
  NameButtons(*dialog.findChild<QDialogButtonBox*>());
  FitToScreen(dialog);
  // A box that is taken away because the program ends counts as closed.
  const int answer = dialog.exec();
  return AnswerOf(dialog.clickedButton() == nullptr ? choice.Escape : answer);
}

std::string ShowInputBox(QWidget* parent, const InputBox& box) {
  QDialog dialog(parent);
  if (parent != nullptr) dialog.setFont(parent->font());
  dialog.setObjectName(QStringLiteral("InputBox"));
  dialog.setWindowTitle(QString::fromStdString(box.Title));
  dialog.setAccessibleName(dialog.windowTitle());

  auto* prompt = new QLabel(LinesOf(box.Prompt), &dialog);
  prompt->setTextFormat(Qt::PlainText);
  prompt->setObjectName(QStringLiteral("Prompt"));
  prompt->setAccessibleName(prompt->text());
  auto* field = new QLineEdit(QString::fromStdString(box.Default), &dialog);
  field->setObjectName(QStringLiteral("Field"));
  field->setAccessibleName(QStringLiteral("Answer"));  // The dialog says the question.
  field->selectAll();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  NameButtons(*buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);

  auto* column = new QVBoxLayout(&dialog);
  column->addWidget(prompt);
  column->addWidget(field);
  column->addWidget(buttons);
  column->setSizeConstraint(QLayout::SetFixedSize);
  field->setFocus();
  return dialog.exec() == QDialog::Accepted ? field->text().toStdString() : std::string();
}

}  // namespace bivouac
