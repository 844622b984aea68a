#include "window/printing.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "events/presses.h"
#include "storage/pack_files.h"

namespace bivouac {
namespace {

constexpr int kPatience = 10'000;  // Milliseconds; a page takes some fifty.

}  // namespace

Printing::Printing(Main& main, EventRoad& road)
    : main_(main),
      road_(road),
      packMaker_(QStandardPaths::findExecutable(QStringLiteral("bivouac-packs"),
                                                {QCoreApplication::applicationDirPath()})) {
  patience_.setSingleShot(true);
  patience_.setInterval(kPatience);
  QObject::connect(&patience_, &QTimer::timeout, &process_, &QProcess::kill);
  QObject::connect(&process_, &QProcess::finished, &process_, [this] { road_.Run([this] { Show(); }); });
  QObject::connect(&process_, &QProcess::errorOccurred, &process_, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) road_.Run([this] { SayItFailed(process_.errorString()); });
  });
}

Printing::~Printing() {
  process_.disconnect();
  process_.kill();
  process_.waitForFinished();
}

void Printing::SayItFailed(const QString& why) {
  main_.desktop.Show(MessageBox{
      .Title = "Printing Failed", .Text = why.trimmed().toStdString(), .Symbol = BoxSymbol::Warning});
}

void Printing::PrintPosition() {
  if (!IsPuzzleOnShow(main_) || main_.Paused || process_.state() != QProcess::NotRunning) return;
  QString digits;
  for (int cell = 0; cell < main_.CellCount; ++cell) digits += QString::number(main_.Board[cell]);
  // The desktop clears that folder away when its session ends, and a viewer may outlive the game.
  const QDir folder(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation));
  page_ = folder.filePath(QStringLiteral("Bivouac %1x%1 %2.pdf").arg(main_.BoardSize).arg(main_.PuzzleNo));
  process_.start(packMaker_,
                 {QStringLiteral("print"),
                  QFile::decodeName(QByteArray::fromStdString(PackPath(main_.global, main_.BoardSize))),
                  QString::number(main_.PuzzleNo), QStringLiteral("--board"), digits,
                  QStringLiteral("--force"), QStringLiteral("-o"), page_});
  patience_.start();
}

void Printing::Show() {
  patience_.stop();
  if (process_.exitStatus() != QProcess::NormalExit || process_.exitCode() != 0) {
    const QString words = QString::fromLocal8Bit(process_.readAllStandardError());
    return SayItFailed(words.trimmed().isEmpty() ? QStringLiteral("The pack maker does not answer.") : words);
  }
  const std::string path = QFile::encodeName(page_).toStdString();
  const ProgramAnswer viewer = main_.desktop.FindExecutable(path, "");
  if (viewer.Code < kFirstGoodCode ||
      main_.desktop.ShellExecute("open", viewer.Program, path, "", 1) < kFirstGoodCode)
    SayItFailed(QStringLiteral("The page is made, but nothing opens it: ") + page_);
}

}  // namespace bivouac
