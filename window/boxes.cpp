#include "window/boxes.h"

#include <QAbstractButton>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontInfo>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

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
      return {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok, QMessageBox::Cancel};
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

/// Qt wraps the text of a box at a width that does not grow with the font, and at half of a small screen: a
/// long text would be taller than the screen.
void WidenWhereNarrow(QMessageBox& dialog) {
  constexpr int kCharacters = 40;
  auto* label = dialog.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  if (label == nullptr) return;
  const int screen = dialog.screen()->availableGeometry().width();
  const int wrapped = std::min(500, screen / 2);  // About where Qt wraps.
  const int wished = std::min(kCharacters * QFontInfo(dialog.font()).pixelSize(), screen * 8 / 10);
  const int natural = QFontMetrics(dialog.font()).boundingRect({}, 0, dialog.text()).width();
  if (wished > wrapped && natural > wrapped) label->setMinimumWidth(std::min(wished, natural));
}

}  // namespace

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
  WidenWhereNarrow(dialog);
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
