// The window in which a player chooses a puzzle of the present size.
#pragma once

#include <QDialog>
#include <atomic>
#include <optional>
#include <thread>

#include "window/puzzle_table.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QListWidget;
class QPushButton;
class QTableView;

namespace bivouac {

class PuzzlePicture;

class PuzzleList : public QDialog {
 public:
  PuzzleList(const Main& main, QWidget* mainWindow);
  ~PuzzleList() override;

  struct Choice {
    int Number;
    bool GoOn;  ///< With the kept game, instead of from the start.
  };
  /// Shows the puzzles and holds the caller until one is chosen or the window is closed. `unit` is the length
  /// of a pixel of the main window's opening size.
  std::optional<Choice> Choose(double unit);

  /// Chooses today's puzzle, whatever the filters.
  void SelectToday();

 private:
  void AddFilters(QHBoxLayout& row);
  void AddTable();
  QPushButton* AddButton(const ListButtonRow& row);
  void Resize(double unit);
  void LayOut(double unit);
  void Select(int row);
  int SelectedRow() const;
  void Filter();
  void DrawChosen();
  void DrawNeeds();
  void DrawSummary();
  void BeginSearch();
  void EndSearch();
  void TakeNeeds(const std::vector<PuzzleStats>& needs);

  const Main& main_;
  PuzzleListing listing_;
  PuzzleTable table_;
  PuzzleFilter filter_;
  std::jthread search_;

  QComboBox* level_ = nullptr;
  QComboBox* rule_ = nullptr;
  QCheckBox* unsolved_ = nullptr;
  QTableView* view_ = nullptr;
  PuzzlePicture* picture_ = nullptr;
  QListWidget* needs_ = nullptr;
  QLabel* summary_ = nullptr;
  QPushButton* open_ = nullptr;
  QPushButton* goOn_ = nullptr;
};

}  // namespace bivouac
