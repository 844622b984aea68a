// A run of the whole program for a test: fresh settings and data, a script of what the person does, and
// answers to the boxes that come up.
#pragma once

#include <QDialog>
#include <deque>
#include <functional>
#include <vector>

#include "window/program.h"

namespace bivouac {

class GameRun : public QObject {
 public:
  using Script = std::function<void(Program& program)>;
  using Answer = std::function<void(QDialog& box)>;

  /// Clears the settings and the data folder of the tests, and puts the packs into it.
  explicit GameRun(const char* size = "12");
  ~GameRun() override;

  void Setting(const char* key, const QString& value);
  /// Answers the next box, which must have that title. Boxes without an answer fail the test.
  void Expect(const QString& title, Answer answer);
  /// Answers all boxes, if set.
  Answer Answerer;
  /// Runs the program until it ends; the script runs when the window has been shown. Whatever goes on after
  /// it is ended by the close box. Returns the status.
  int Run(const Script& script);
  /// The same with a puzzle of the pack opened first, by its number.
  int Play(int puzzle, const Script& script);

  /// Titles and texts of the boxes so far.
  std::vector<QString> Titles;
  std::vector<QString> Texts;

  static QString DataFolder();
  static QString SettingsFile();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AnswerBox(QDialog& box);

  struct Expected {
    QString Title;
    Answer Act;
  };
  std::deque<Expected> expected_;
};

/// Makes a program of the shell that opens files and pages. It has the usual PATH.
void MakeOpener(const QByteArray& shell);
/// Runs one test of this program again, in a process of its own with a variable of the environment set.
void RunInItsOwnProcess(const QString& filter, const QString& variable, const QString& value);
/// An answer: one key.
GameRun::Answer Press(Qt::Key key);
/// An answer: a text, and Enter.
GameRun::Answer Type(const QString& text);

QWidget* Named(Program& program, const QString& name);
/// A click of the left button on the control of that name.
void ClickOn(Program& program, const QString& name);
/// A press and release of a button of the mouse on a cell.
void ClickCell(Program& program, int index, Qt::MouseButton button = Qt::LeftButton);
/// Opens a puzzle of the pack by its number.
void OpenPuzzle(GameRun& run, Program& program, int number);
/// Clicks every cell round to the solution.
void Solve(Program& program);

}  // namespace bivouac
