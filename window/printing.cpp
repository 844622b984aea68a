#include "window/printing.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include "events/presses.h"
#include "storage/pack_files.h"

namespace bivouac {
namespace {

constexpr int kPatience = 10'000;  // Milliseconds; a page takes some fifty.

void SayItFailed(Main& main, const QString& why) {
  main.desktop.Show(MessageBox{
      .Title = "Printing Failed", .Text = why.trimmed().toStdString(), .Symbol = BoxSymbol::Warning});
}

}  // namespace

Printing::Printing()
    : packMaker_(QStandardPaths::findExecutable(QStringLiteral("bivouac-packs"),
                                                {QCoreApplication::applicationDirPath()})) {}

void Printing::PrintPosition(Main& main) {
  if (!IsPuzzleOnShow(main) || main.Paused) return;
  QString digits;
  for (int cell = 0; cell < main.CellCount; ++cell) digits += QString::number(main.Board[cell]);
  const QString pdf =
      folder_.filePath(QStringLiteral("Bivouac %1x%1 %2.pdf").arg(main.BoardSize).arg(main.PuzzleNo));
  QProcess packMaker;
  packMaker.start(packMaker_,
                  {QStringLiteral("print"),
                   QFile::decodeName(QByteArray::fromStdString(PackPath(main.global, main.BoardSize))),
                   QString::number(main.PuzzleNo), QStringLiteral("--board"), digits,
                   QStringLiteral("--force"), QStringLiteral("-o"), pdf});
  if (!packMaker.waitForFinished(kPatience) || packMaker.exitStatus() != QProcess::NormalExit ||
      packMaker.exitCode() != 0) {
    const QString words = QString::fromLocal8Bit(packMaker.readAllStandardError());
    return SayItFailed(main, words.trimmed().isEmpty() ? packMaker.errorString() : words);
  }
  constexpr int kGood = 33;
  const std::string path = QFile::encodeName(pdf).toStdString();
  const ProgramAnswer viewer = main.desktop.FindExecutable(path, "");
  if (viewer.Code < kGood || main.desktop.ShellExecute("open", viewer.Program, path, "", 1) < kGood)
    SayItFailed(main, QStringLiteral("The page is made, but nothing opens it: ") + pdf);
}

}  // namespace bivouac
