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

#include "game/play.h"
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
constexpr int kTableLeast = 520;
constexpr int kLevels = 5;
constexpr int kGoOn = 2;            // Beside the results of a QDialog, 0 and 1.
constexpr std::size_t kBatch = 50;  // Puzzles whose needs are told at a time.
/// Characters that each column of the table has room for.
constexpr int kColumnWidths[PuzzleTable::kState] = {11, 9, 9, 22, 12};

/// What hints need to solve a puzzle; nothing for one that cannot be started.
PuzzleStats NeedsOf(Workbench& bench, const ListedPuzzle& puzzle) {
  try {
    if (puzzle.Readable) return StatsOfPuzzle(bench.main, puzzle.Record);
  } catch (const RunTimeError&) {
  }
  return {};
}

QString NameOfRule(const HintRule& rule) {
  return QString::fromUtf8(rule.Title);
}

}  // namespace

PuzzleList::PuzzleList(const Main& main, QWidget* mainWindow)
    : QDialog(mainWindow), main_(main), table_(main), filter_(table_) {
  setObjectName(QStringLiteral("PuzzleList"));
  AddTable();
  auto* filters = new QHBoxLayout;
  AddFilters(*filters);
  picture_ = new PuzzlePicture(this);
  picture_->setAccessibleName(QStringLiteral("Picture of the chosen puzzle"));
  needs_ = new QListWidget(this);
  needs_->setObjectName(QStringLiteral("Needs"));
  needs_->setAccessibleName(QStringLiteral("Rules that it needs"));
  auto* needsTitle = new QLabel(QStringLiteral("&Rules that it needs"), this);
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
  open_ = AddButton("Open", "&Open", "Opens the chosen puzzle");
  open_->setDefault(true);
  connect(open_, &QPushButton::clicked, this, [this] {
    if (SelectedRow() >= 0) accept();
  });
  goOn_ = AddButton("GoOn", "&Go On", "Goes on with the kept game of the chosen puzzle");
  connect(goOn_, &QPushButton::clicked, this, [this] { done(kGoOn); });
  QPushButton* today = AddButton("Today", "&Today's", "Chooses the puzzle of the day");
  connect(today, &QPushButton::clicked, this, [this] { SelectToday(); });
  QPushButton* close = AddButton("Close", "&Close", "Closes without opening a puzzle");
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
  view_ = new QTableView(this);
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
  view_->sortByColumn(PuzzleTable::kNumber, Qt::AscendingOrder);
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
  level_->addItem(QStringLiteral("All"));
  for (int level = 1; level <= kLevels; ++level) level_->addItem(QString::number(level));
  rule_ = new QComboBox(this);
  rule_->setObjectName(QStringLiteral("RuleFilter"));
  rule_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  rule_->addItem(QStringLiteral("Any"));
  for (const HintRule& rule : HintRules()) rule_->addItem(NameOfRule(rule));
  unsolved_ = new QCheckBox(QStringLiteral("&Unsolved only"), this);
  unsolved_->setObjectName(QStringLiteral("UnsolvedFilter"));
  add("&Level", level_);
  add("&Needs", rule_);
  row.addWidget(unsolved_);
  row.addStretch();
  connect(level_, &QComboBox::currentIndexChanged, this, [this] { Filter(); });
  connect(rule_, &QComboBox::currentIndexChanged, this, [this] { Filter(); });
  connect(unsolved_, &QCheckBox::toggled, this, [this] { Filter(); });
}

QPushButton* PuzzleList::AddButton(const char* name, const char* caption, const char* description) {
  auto* button = new QPushButton(QString::fromLatin1(caption), this);
  button->setObjectName(QString::fromLatin1(name));
  button->setAccessibleName(button->text().remove(QLatin1Char('&')));
  button->setAccessibleDescription(QString::fromLatin1(description));
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
  for (int column = 0; column < PuzzleTable::kState; ++column)  // The last has what is left.
    view_->setColumnWidth(column, kColumnWidths[column] * metrics.averageCharWidth());
  view_->setMinimumWidth(PixelsOf(kTableLeast, unit));
  picture_->setFixedSize(PixelsOf(kPicture, unit), PixelsOf(kPicture, unit));
  needs_->setFixedWidth(PixelsOf(kPicture, unit));
  needs_->setMinimumHeight(PixelsOf(kNeedsLeast, unit));
  // Of a window that was not shown yet, layouts do not notice what changes.
  layout()->invalidate();
  layout()->activate();
}

std::optional<PuzzleList::Choice> PuzzleList::Choose(double unit) {
  const QString size = QString::number(main_.BoardSize);
  setWindowTitle(QStringLiteral("Puzzles %1x%1").arg(size));
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
  const int count = table_.rowCount();
  if (count == 0) return;
  level_->setCurrentIndex(0);
  rule_->setCurrentIndex(0);
  unsolved_->setChecked(false);
  Select(PuzzleOfDay(QDate::currentDate().toJulianDay(), main_.BoardSize, count) - 1);
  view_->setFocus();
}

void PuzzleList::Filter() {
  const int row = SelectedRow();
  filter_.Level = level_->currentIndex();
  filter_.Unsolved = unsolved_->isChecked();
  const int rule = rule_->currentIndex();
  filter_.Cases = rule == 0 ? 0 : CasesOf(HintRules()[rule - 1]);
  filter_.Apply();
  Select(std::max(0, row));
  DrawSummary();
}

void PuzzleList::DrawChosen() {
  const int row = SelectedRow();
  open_->setEnabled(row >= 0 && main_.cmdOpen.Enabled);
  goOn_->setEnabled(open_->isEnabled() && table_.IsKept(row));
  bool shown = row >= 0 && table_.Puzzles()->at(static_cast<std::size_t>(row)).Readable;
  try {
    if (shown) {
      LayOutRecord(bench_.main, table_.Puzzles()->at(static_cast<std::size_t>(row)).Record);
      StartPuzzle(bench_.main);
    }
  } catch (const RunTimeError&) {  // A damaged record has no picture.
    shown = false;
  }
  picture_->Show(shown ? &bench_.main : nullptr);
  DrawNeeds();
}

/// Of the chosen puzzle at once, though the search may not have come to it.
void PuzzleList::DrawNeeds() {
  needs_->clear();
  const int row = SelectedRow();
  if (row < 0) return;
  const PuzzleStats* known = table_.NeedsOf(row);
  const PuzzleStats needs =
      known != nullptr ? *known : NeedsOf(walker_, table_.Puzzles()->at(static_cast<std::size_t>(row)));
  for (const HintRule& rule : HintRules()) {
    if ((needs.Cases & CasesOf(rule)) != 0) needs_->addItem(NameOfRule(rule));
  }
  if (!needs.Finished) needs_->addItem(QStringLiteral("Hints end before the solution."));
}

void PuzzleList::DrawSummary() {
  QString text = QString::fromStdString(SolvedText(main_, *table_.Puzzles()));
  if (filter_.rowCount() != table_.rowCount()) text += QStringLiteral("; %1 shown").arg(filter_.rowCount());
  if (!main_.cmdOpen.Enabled) text += QStringLiteral(". For looking only now");
  summary_->setText(text);
}

/// Finds out what each puzzle needs, beside the window.
void PuzzleList::BeginSearch() {
  search_ = std::jthread([this, puzzles = table_.Puzzles()](const std::stop_token& stop) {
    Workbench bench;
    std::vector<PuzzleStats> batch;
    const auto tell = [&] {
      const auto take = [this, puzzles, batch] {
        if (puzzles == table_.Puzzles()) TakeNeeds(batch);
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
  for (const PuzzleStats& one : needs) table_.AddNeeds(one);
  int place = 0;
  for (const HintRule& rule : HintRules()) {
    const long count = table_.CountNeeding(CasesOf(rule));
    rule_->setItemText(++place, QStringLiteral("%1, %2 %3")
                                    .arg(NameOfRule(rule))
                                    .arg(count)
                                    .arg(QLatin1String(count == 1 ? "puzzle" : "puzzles")));
  }
  if (rule_->currentIndex() != 0) filter_.Apply();
  if (SelectedRow() < 0) Select(0);
  DrawSummary();
}

}  // namespace bivouac
