#include "tests/window/game_run.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QProcess>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include "tests/support/installation.h"

namespace bivouac {

GameRun::GameRun(const char* size) {
  QSettings settings("Bivouac", "Bivouac");
  settings.clear();
  settings.setValue("Options/Size", size);
  settings.sync();
  QDir(DataFolder()).removeRecursively();
  QDir().mkpath(DataFolder());
  const QDir packs(BIVOUAC_SOURCE_DIR "/assets/packs");
  for (const QString& pack : packs.entryList({"*.bvq"})) {
    QFile::copy(packs.filePath(pack), DataFolder() + "/" + pack);
    QFile::setPermissions(DataFolder() + "/" + pack, QFile::ReadOwner | QFile::WriteOwner);
  }
  qApp->installEventFilter(this);
}

GameRun::~GameRun() {
  for (const Expected& missing : expected_) {
    ADD_FAILURE() << "box did not come: " << missing.Title.toStdString();
  }
}

QString GameRun::DataFolder() {
  return qEnvironmentVariable("XDG_DATA_HOME") + "/Bvc";
}

QString GameRun::SettingsFile() {
  return qEnvironmentVariable("XDG_CONFIG_HOME") + "/Bivouac/Bivouac.conf";
}

void GameRun::Setting(const char* key, const QString& value) {
  QSettings settings("Bivouac", "Bivouac");
  settings.setValue(key, value);
  settings.sync();
}

void GameRun::Expect(const QString& title, Answer answer) {
  expected_.push_back({title, std::move(answer)});
}

int GameRun::Run(const Script& script) {
  Program program;
  QTimer::singleShot(0, &program.Window(), [&] {
    if (!program.Window().isVisible()) return;
    script(program);
    program.Window().close();
  });
  const int status = program.Run();
  // A program that ended before its event loop began leaves Qt in the mood to leave every loop at once.
  QTimer::singleShot(0, qApp, [] { QApplication::exit(); });
  QApplication::exec();
  return status;
}

int GameRun::Play(int puzzle, const Script& script) {
  return Run([&](Program& program) {
    OpenPuzzle(*this, program, puzzle);
    script(program);
  });
}

bool GameRun::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show) {
    if (auto* box = qobject_cast<QDialog*>(watched)) {
      QTimer::singleShot(0, box, [this, box] { AnswerBox(*box); });
    }
  }
  return false;
}

void GameRun::AnswerBox(QDialog& box) {
  if (Answerer) return Answerer(box);
  const auto* message = qobject_cast<QMessageBox*>(&box);
  Titles.push_back(box.windowTitle());
  Texts.push_back(message != nullptr ? message->text() : QString());
  if (expected_.empty() || expected_.front().Title != box.windowTitle()) {
    ADD_FAILURE() << "unexpected box: " << box.windowTitle().toStdString() << ": "
                  << Texts.back().toStdString();
    box.close();
    return;
  }
  const Answer act = expected_.front().Act;
  expected_.pop_front();
  act(box);
}

void MakeOpener(const QByteArray& shell) {
  const QString folder = qEnvironmentVariable("BIVOUAC_TEST_FOLDER") + "/programs";
  QDir().mkpath(folder);
  QFile opener(folder + "/xdg-open");
  ASSERT_TRUE(opener.open(QFile::WriteOnly));
  opener.write("#!/bin/sh\nPATH=/bin\n" + shell);
  opener.close();
  opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void RunInItsOwnProcess(const QString& filter, const QString& variable, const QString& value) {
  QProcess child;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(variable, value);
  child.setProcessEnvironment(environment);
  child.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=" + filter});
  ASSERT_TRUE(child.waitForFinished(120000));
  const std::string output = child.readAllStandardOutput().toStdString();
  EXPECT_EQ(child.exitCode(), 0) << output;
  EXPECT_NE(output.find("[  PASSED  ] 1 test."), std::string::npos) << output;
}

GameRun::Answer Press(Qt::Key key) {
  return [key](QDialog& box) { QTest::keyClick(box.focusWidget() ? box.focusWidget() : &box, key); };
}

GameRun::Answer Type(const QString& text) {
  return [text](QDialog& box) {
    QTest::keyClicks(box.focusWidget(), text);
    QTest::keyClick(box.focusWidget(), Qt::Key_Return);
  };
}

QWidget* Named(Program& program, const QString& name) {
  auto* widget = program.Window().findChild<QWidget*>(name);
  if (widget == nullptr) throw std::runtime_error("no control " + name.toStdString());
  return widget;
}

void ClickOn(Program& program, const QString& name) {
  QTest::mouseClick(Named(program, name), Qt::LeftButton);
}

void ClickCell(Program& program, int index, Qt::MouseButton button) {
  BoardWidget& board = program.Window().Board();
  QTest::mouseClick(&board, button, {}, board.CellRect(index).center());
}

void OpenPuzzle(GameRun& run, Program& program, int number) {
  run.Expect("Select Puzzle", Type(QString::number(number)));
  ClickOn(program, "cmdOpen");
}

void Solve(Program& program) {
  ClickRightFields(program.State(), [&](int cell) { ClickCell(program, cell); });
}

}  // namespace bivouac
