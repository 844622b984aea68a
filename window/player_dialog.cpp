#include "window/player_dialog.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "window/boxes.h"
#include "window/keys.h"
#include "window/scale.h"

namespace bivouac {
namespace {

constexpr int kText = 13;  // Pixels at the main window's opening size.
constexpr int kListWidth = 190;
constexpr int kListHeight = 170;
constexpr int kListLeast = 40;  // Two names.

/// The text with a word in it that no line ends in, though it has hyphens.
QString Unbroken(QString text, const QString& word) {
  constexpr QChar kJoiner(0x2060);
  QString joined;
  for (const QChar sign : word) joined += QString(joined.isEmpty() ? QString() : QString(kJoiner)) + sign;
  return text.replace(word, joined);
}

void Name(QWidget* control, const PlayerControlRow& row) {
  control->setObjectName(QString::fromLatin1(row.ObjectName));
  control->setAccessibleName(QString::fromLatin1(row.Name));
  control->setAccessibleDescription(QString::fromLatin1(row.Description));
}

}  // namespace

PlayerDialog::PlayerDialog(FormNamen& form, EventRoad& road, QWidget* mainWindow)
    : QDialog(mainWindow), form_(form), road_(road) {
  Name(this, kPlayerForm);
  setWindowTitle(accessibleName());

  auto* text = new QLabel(this);
  Name(text, kPlayerText);
  text->setText(Unbroken(text->accessibleName(), QStringLiteral("-or-")));
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);

  list_ = new QListWidget(this);
  Name(list_, kPlayerList);
  list_->setUniformItemSizes(true);
  list_->installEventFilter(this);
  connect(list_, &QListWidget::itemSelectionChanged, this, [this] { TakeSelection(); });
  connect(list_, &QListWidget::itemDoubleClicked, this,
          [this] { Run([this] { NaamLijst_DblClick(form_); }); });

  field_ = new QLineEdit(this);
  Name(field_, kPlayerField);
  field_->installEventFilter(this);
  connect(field_, &QLineEdit::textEdited, this, [this](const QString& edited) { KeepFieldShort(edited); });

  auto* buttonColumn = new QVBoxLayout;
  for (const PlayerButtonRow& row : PlayerButtonTable()) {
    auto* button = new QPushButton(QString::fromLatin1(row.Caption), this);
    Name(button, {row.Name, row.Caption, row.Description});
    button->setAccessibleName(button->text().remove(QLatin1Char('&')));
    // Enter in the field must press no button.
    button->setAutoDefault(false);
    button->installEventFilter(this);
    connect(button, &QPushButton::clicked, this,
            [this, &row] { Run([this, &row] { PressPlayerButton(form_, row); }); });
    buttonColumn->addWidget(button);
    buttons_.push_back(button);
  }
  buttonColumn->addStretch();

  auto* grid = new QGridLayout(this);
  grid->addWidget(text, 0, 0, 1, 2);
  grid->addWidget(list_, 1, 0);
  grid->addWidget(field_, 2, 0);
  grid->addLayout(buttonColumn, 1, 1, 2, 1);
  grid->setColumnStretch(0, 1);
}

/// On a screen with little room the list is lower, and when that is not enough, everything is smaller.
void PlayerDialog::Resize(double unit) {
  constexpr double kSmaller = 0.9;
  const QSize room = RoomOnScreen(*this);
  QSize size = LayOut(unit, kListLeast);
  for (; PixelsOf(kText, unit) > 1 && size != size.boundedTo(room); size = LayOut(unit, kListLeast))
    unit *= kSmaller;
  const int left = static_cast<int>((room.height() - size.height()) / unit);
  resize(LayOut(unit, std::min(kListHeight, kListLeast + left)));
}

/// `listHeight` in pixels of the window's opening size. Returns the size that the dialog needs.
QSize PlayerDialog::LayOut(double unit, int listHeight) {
  QFont plain = font();
  plain.setPixelSize(PixelsOf(kText, unit));
  setFont(plain);
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  fixed.setPixelSize(PixelsOf(kText, unit));
  list_->setFont(fixed);
  field_->setFont(fixed);
  for (QPushButton* button : buttons_) {
    const int textWidth = QFontMetrics(plain).horizontalAdvance(button->text());
    button->setMinimumSize(textWidth + PixelsOf(20, unit), PixelsOf(26, unit));
  }
  list_->setMinimumSize(PixelsOf(kListWidth, unit), PixelsOf(listHeight, unit));
  layout()->setContentsMargins(PixelsOf(12, unit), PixelsOf(12, unit), PixelsOf(12, unit),
                               PixelsOf(12, unit));
  layout()->setSpacing(PixelsOf(8, unit));
  // Of a dialog that was not shown yet, layouts do not notice what changes.
  layout()->invalidate();
  layout()->activate();
  const int width = layout()->totalMinimumSize().width();
  return {width, layout()->totalMinimumHeightForWidth(width)};
}

void PlayerDialog::ShowModal(double unit) {
  Resize(unit);
  form_.Visible = true;
  Form_Activate(form_);
  drawnFocus_.reset();
  Draw();
  MoveOverParent(*this);
  exec();
  form_.Visible = false;
  hide();
}

void PlayerDialog::Draw() {
  if (!form_.Visible) {
    if (isVisible()) done(Rejected);
    return;
  }
  // What gets enabled comes first and what gets disabled last: the focus goes in between, and nowhere else.
  list_->setEnabled(list_->isEnabled() || form_.NaamLijst.Enabled);
  field_->setEnabled(field_->isEnabled() || form_.NaamInvoerveld.Enabled);
  DrawList();
  const QString text = QString::fromStdString(form_.NaamInvoerveld.Text);
  if (field_->text() != text) field_->setText(text);
  DrawFocus();
  list_->setEnabled(form_.NaamLijst.Enabled);
  field_->setEnabled(form_.NaamInvoerveld.Enabled);
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    buttons_[i]->setEnabled((form_.*PlayerButtonTable()[i].Value).Enabled);
  }
}

void PlayerDialog::DrawList() {
  const QSignalBlocker silence(list_);
  if (drawnItems_ != form_.NaamLijst.Items) {
    drawnItems_ = form_.NaamLijst.Items;
    list_->clear();
    for (const std::string& item : drawnItems_) list_->addItem(QString::fromStdString(item));
  }
  const int index = form_.NaamLijst.ListIndex;
  if (index < 0) {
    list_->setCurrentRow(-1);
    list_->clearSelection();
  } else {
    list_->setCurrentRow(index);
  }
}

void PlayerDialog::DrawFocus() {
  if (form_.Focus == drawnFocus_) return;
  drawnFocus_ = form_.Focus;
  if (form_.Focus == FormNamen::FocusOn::NaamInvoerveld) {
    field_->setFocus();
    field_->end(false);
  } else {
    list_->setFocus();
  }
}

void PlayerDialog::Run(const EventRoad::Handler& press) {
  if (!IsHeld(form_, road_)) road_.Run(press);
}

void PlayerDialog::TakeSelection() {
  const QModelIndexList selected = list_->selectionModel()->selectedRows();
  const int index = selected.isEmpty() ? -1 : selected.front().row();
  Run([this, index] { SelectPlayer(form_, index); });
}

void PlayerDialog::KeepFieldShort(const QString& text) {
  const int cursor = field_->cursorPosition();
  const QString tail = text.mid(cursor);
  const QString head =
      QString::fromStdString(TypeName(form_, text.left(cursor).toStdString(), tail.toStdString()));
  if (head.size() == cursor) return;
  field_->setText(head + tail);
  field_->setCursorPosition(static_cast<int>(head.size()));
}

void PlayerDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  Run([this] { KnopAnnuleren_Click(form_); });
}

/// Escape anywhere but in the field.
void PlayerDialog::reject() {
  Run([this] { PressEscape(form_); });
}

bool PlayerDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (watched == field_) {
    if (!IsEnter(key) && key != Qt::Key_Escape) return false;
    Run([this, key] { NaamInvoerveld_KeyPress(form_, IsEnter(key) ? Key::Enter : Key::Escape); });
    return true;
  }
  if (watched == list_) return ListKey(key);
  if (auto* button = qobject_cast<QPushButton*>(watched); button != nullptr && IsEnter(key)) {
    button->click();
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

/// Enter chooses the selected player. With none selected, the first arrow key selects the first.
bool PlayerDialog::ListKey(int key) {
  if (IsEnter(key)) {
    Run([this] { PressEnterOnList(form_); });
    return true;
  }
  const int first = SelectedByFirstArrow(form_);
  if ((key != Qt::Key_Down && key != Qt::Key_Up) || first < 0) return false;
  list_->setCurrentRow(first);
  list_->item(first)->setSelected(true);
  return true;
}

}  // namespace bivouac
