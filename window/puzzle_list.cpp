#include "window/puzzle_list.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>

#include "hints/hints.h"
#include "window/boxes.h"
#include "window/puzzle_picture.h"
#include "window/scale.h"

namespace bivouac {
namespace {

constexpr int kText = 13;  // Pixels at the main window's opening size.
constexpr int kWidth = 960;
constexpr int kHeight = 520;
constexpr int kPicture = 240;
constexpr int kNeedsLeast = 60;
constexpr int kGoOn = 2;            // Beside the results of a QDialog, 0 and 1.
constexpr std::size_t kBatch = 50;  // Puzzles whose needs are told at a time.
constexpr int kColumnMargin = 2;    // Characters.

/// Home and End lead to the first and the last row, as in any list: nobody needs the ends of a row.
class RowView : public QTableView {
 public:
  using QTableView::QTableView;

 protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override {
    const int column = currentIndex().column();
    if (action == MoveHome) return model()->index(0, column);
    if (action == MoveEnd) return model()->index(model()->rowCount() - 1, column);
    return QTableView::moveCursor(action, modifiers);
  }
};

}  // namespace

PuzzleList::PuzzleList(const Main& main, QWidget* mainWindow)
    : QDialog(mainWindow), main_(main), listing_(main), table_(listing_), filter_(table_) {
  setObjectName(QStringLiteral("PuzzleList"));
  AddTable();
  auto* filters = new QHBoxLayout;
  AddFilters(*filters);
  picture_ = new PuzzlePicture(this);
  picture_->setAccessibleName(QString::fromLatin1(kListPicture));
  needs_ = new QListWidget(this);
  needs_->setObjectName(QStringLiteral("Needs"));
  auto* needsTitle = new QLabel(QString::fromLatin1(kNeedsTitle), this);
  needs_->setAccessibleName(needsTitle->text().remove(QLatin1Char('&')));
  needs_->setWordWrap(true);
  needs_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  needsTitle->setBuddy(needs_);
  summary_ = new QLabel(this);
  summary_->setObjectName(QStringLiteral("Summary"));
  summary_->setTextFormat(Qt::PlainText);

  auto* side = new QVBoxLayout;
  side->addWidget(picture_);
  side->addWidget(needsTitle);
  side->addWidget(needs_, 1);
  auto* middle = new QHBoxLayout;
  middle->addWidget(view_, 1);
  middle->addLayout(side);

  auto* buttons = new QHBoxLayout;
  open_ = AddButton(kListButtons[kListOpen]);  // In the order of Tab.
  goOn_ = AddButton(kListButtons[kListGoOn]);
  QPushButton* today = AddButton(kListButtons[kListToday]);
  QPushButton* close = AddButton(kListButtons[kListClose]);
  open_->setDefault(true);
  connect(open_, &QPushButton::clicked, this, [this] {
    if (SelectedRow() >= 0) accept();
  });
  connect(goOn_, &QPushButton::clicked, this, [this] { done(kGoOn); });
  connect(today, &QPushButton::clicked, this, [this] { SelectToday(); });
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  buttons->addWidget(summary_, 1);
  for (QPushButton* button : {today, goOn_, open_, close}) buttons->addWidget(button);

  auto* column = new QVBoxLayout(this);
  column->addLayout(filters);
  column->addLayout(middle, 1);
  column->addLayout(buttons);
}

PuzzleList::~PuzzleList() {
  EndSearch();
}

void PuzzleList::AddTable() {
  view_ = new RowView(this);
  view_->setObjectName(QStringLiteral("Puzzles"));
  view_->setAccessibleName(QStringLiteral("Puzzles"));
  view_->setModel(&filter_);
  view_->setSelectionBehavior(QAbstractItemView::SelectRows);
  view_->setSelectionMode(QAbstractItemView::SingleSelection);
  view_->setTabKeyNavigation(false);
  view_->setWordWrap(false);
  view_->setShowGrid(false);
  view_->setAlternatingRowColors(true);
  view_->verticalHeader()->hide();
  view_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view_->horizontalHeader()->setHighlightSections(false);
  view_->horizontalHeader()->setStretchLastSection(true);
  view_->setSortingEnabled(true);
  view_->sortByColumn(PuzzleListing::kNumber, Qt::AscendingOrder);
  connect(view_, &QTableView::doubleClicked, this, [this] { open_->click(); });
  connect(view_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { DrawChosen(); });
}

void PuzzleList::AddFilters(QHBoxLayout& row) {
  const auto add = [&](const char* caption, QWidget* widget) {
    auto* label = new QLabel(QString::fromLatin1(caption), this);
    label->setBuddy(widget);
    widget->setAccessibleName(label->text().remove(QLatin1Char('&')));
    row.addWidget(label);
    row.addWidget(widget);
  };
  level_ = new QComboBox(this);
  level_->setObjectName(QStringLiteral("LevelFilter"));
  level_->addItem(QString::fromLatin1(kEveryLevel));
  for (int level = 1; level <= PuzzleListing::kLevels; ++level) level_->addItem(QString::number(level));
  rule_ = new QComboBox(this);
  rule_->setObjectName(QStringLiteral("RuleFilter"));
  rule_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  rule_->addItem(QString::fromLatin1(kAnyRule));
  for (int rule = 1; rule <= kHintRuleCount; ++rule)
    rule_->addItem(QString::fromStdString(listing_.RuleText(rule)));
  unsolved_ = new QCheckBox(QString::fromLatin1(kUnsolvedFilter), this);
  unsolved_->setObjectName(QStringLiteral("UnsolvedFilter"));
  add(kLevelFilter, level_);
  add(kRuleFilter, rule_);
  row.addWidget(unsolved_);
  row.addStretch();
  connect(level_, &QComboBox::currentIndexChanged, this, [this] { Filter(); });
  connect(rule_, &QComboBox::currentIndexChanged, this, [this] { Filter(); });
  connect(unsolved_, &QCheckBox::toggled, this, [this] { Filter(); });
}

QPushButton* PuzzleList::AddButton(const ListButtonRow& row) {
  auto* button = new QPushButton(QString::fromLatin1(row.Caption), this);
  button->setObjectName(QString::fromLatin1(row.Name));
  button->setAccessibleName(button->text().remove(QLatin1Char('&')));
  button->setAccessibleDescription(QString::fromLatin1(row.Description));
  return button;
}

/// On a screen with little room everything is smaller.
void PuzzleList::Resize(double unit) {
  constexpr double kSmaller = 0.9;
  const QSize room = RoomOnScreen(*this);
  LayOut(unit);
  for (; PixelsOf(kText, unit) > 1 && minimumSizeHint() != minimumSizeHint().boundedTo(room); LayOut(unit))
    unit *= kSmaller;
  resize(QSize(PixelsOf(kWidth, unit), PixelsOf(kHeight, unit)).boundedTo(room));
  MoveOverParent(*this);
}

void PuzzleList::LayOut(double unit) {
  QFont plain = font();
  plain.setPixelSize(PixelsOf(kText, unit));
  setFont(plain);
  const QFontMetrics metrics(plain);
  view_->verticalHeader()->setDefaultSectionSize(metrics.height() + PixelsOf(4, unit));
  const QAbstractItemView& cells = *view_;
  int width = 2 * view_->frameWidth() + view_->verticalScrollBar()->sizeHint().width();
  for (int column = 0; column < PuzzleListing::kColumns; ++column) {
    const int contents =
        std::max(cells.sizeHintForColumn(column), view_->horizontalHeader()->sectionSizeHint(column));
    const int room = contents + kColumnMargin * metrics.averageCharWidth();
    view_->setColumnWidth(column, room);
    width += room;
  }
  view_->setMinimumWidth(width);
  picture_->setFixedSize(PixelsOf(kPicture, unit), PixelsOf(kPicture, unit));
  needs_->setFixedWidth(PixelsOf(kPicture, unit));
  needs_->setMinimumHeight(PixelsOf(kNeedsLeast, unit));
  // Of a window that was not shown yet, layouts do not notice what changes.
  layout()->invalidate();
  layout()->activate();
}

std::optional<PuzzleList::Choice> PuzzleList::Choose(double unit) {
  setWindowTitle(QString::fromStdString(listing_.Title()));
  setAccessibleName(windowTitle());
  EndSearch();
  table_.Refresh();
  Resize(unit);
  Filter();
  Select(std::clamp(main_.PuzzleNo, 1, std::max(1, table_.rowCount())) - 1);
  view_->setFocus();
  BeginSearch();
  const int result = exec();
  EndSearch();
  if (result == Rejected || !main_.cmdOpen.Enabled) return {};
  return Choice{SelectedRow() + 1, result == kGoOn};
}

/// Selects a puzzle where it is shown, else the first that is.
void PuzzleList::Select(int row) {
  QModelIndex index = filter_.mapFromSource(table_.index(row, 0));
  if (!index.isValid()) index = filter_.index(0, 0);
  view_->setCurrentIndex(index);
  view_->scrollTo(index, QAbstractItemView::PositionAtCenter);
  DrawChosen();
}

int PuzzleList::SelectedRow() const {
  return filter_.mapToSource(view_->currentIndex()).row();
}

void PuzzleList::SelectToday() {
  if (listing_.Count() == 0) return;
  level_->setCurrentIndex(0);
  rule_->setCurrentIndex(0);
  unsolved_->setChecked(false);
  Select(listing_.Today(QDate::currentDate().toJulianDay()));
  view_->setFocus();
}

void PuzzleList::Filter() {
  const int row = SelectedRow();
  filter_.Wanted = {level_->currentIndex(), unsolved_->isChecked(), rule_->currentIndex()};
  filter_.Apply();
  Select(std::max(0, row));
  DrawSummary();
}

void PuzzleList::DrawChosen() {
  const int row = SelectedRow();
  open_->setEnabled(listing_.CanOpen(row));
  goOn_->setEnabled(listing_.CanGoOn(row));
  picture_->Show(listing_.Begun(row));
  needs_->clear();
  if (row < 0) return;
  for (const std::string& line : listing_.NeedsText(row)) needs_->addItem(QString::fromStdString(line));
}

void PuzzleList::DrawSummary() {
  summary_->setText(QString::fromStdString(listing_.Summary(filter_.rowCount())));
}

/// Finds out what each puzzle needs, beside the window.
void PuzzleList::BeginSearch() {
  search_ = std::jthread([this, puzzles = listing_.All()](const std::stop_token& stop) {
    Workbench bench;
    std::vector<PuzzleStats> batch;
    const auto tell = [&] {
      const auto take = [this, puzzles, batch] {
        if (puzzles == listing_.All()) TakeNeeds(batch);
      };
      QMetaObject::invokeMethod(this, take, Qt::QueuedConnection);
      batch.clear();
    };
    for (const ListedPuzzle& puzzle : *puzzles) {
      if (stop.stop_requested()) return;
      batch.push_back(NeedsOf(bench, puzzle));
      if (batch.size() == kBatch) tell();
    }
    tell();
  });
}

void PuzzleList::EndSearch() {
  search_ = {};
}

void PuzzleList::TakeNeeds(const std::vector<PuzzleStats>& needs) {
  for (const PuzzleStats& one : needs) listing_.AddNeeds(one);
  for (int rule = 1; rule <= kHintRuleCount; ++rule)
    rule_->setItemText(rule, QString::fromStdString(listing_.RuleText(rule)));
  if (rule_->currentIndex() != 0) filter_.Apply();
  if (SelectedRow() < 0) Select(0);
  DrawSummary();
}

}  // namespace bivouac
