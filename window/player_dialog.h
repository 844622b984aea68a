// The dialog of the players, drawn from the values of FormNamen.
#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <optional>
#include <vector>

#include "events/player_presses.h"

namespace bivouac {

class PlayerDialog : public QDialog {
 public:
  PlayerDialog(FormNamen& form, EventRoad& road, QWidget* mainWindow);

  /// Shows the dialog over the middle of the main window and holds the caller until it is hidden. `unit` is
  /// the length of a pixel of the window's opening size.
  void ShowModal(double unit);
  /// Draws what changed in the values, and hides the dialog once they say so.
  void Draw();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void reject() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Run(const EventRoad::Handler& press);
  void Resize(double unit);
  QSize LayOut(double unit, int listHeight);
  void KeepFieldShort(const QString& text);
  void TakeSelection();
  bool ListKey(int key);
  void DrawList();
  void DrawFocus();

  FormNamen& form_;
  EventRoad& road_;
  QListWidget* list_;
  QLineEdit* field_;
  std::vector<QPushButton*> buttons_;  ///< In the order of PlayerButtonTable.
  std::vector<std::string> drawnItems_;
  std::optional<FormNamen::FocusOn> drawnFocus_;  ///< Nothing at each showing.
};

}  // namespace bivouac
