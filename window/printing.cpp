#include "window/printing.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <cerrno>
#include <csignal>
#include <unistd.h>

#include "events/presses.h"
#include "storage/pack_files.h"

namespace bivouac {
namespace {

constexpr int kPatience = 10'000;  // Milliseconds; a page takes some fifty.

/// Folders of pages begin so, then comes the number of the process.
QString FolderPrefix() {
  return QDir::temp().filePath(QStringLiteral("Bivouac-"));
}

void RemoveFoldersOfTheDead() {
  const QFileInfo prefix(FolderPrefix());
  const QStringList names =
      prefix.dir().entryList({prefix.fileName() + QStringLiteral("*-??????")}, QDir::Dirs);
  for (const QString& name : names) {
    const QFileInfo folder(prefix.dir(), name);
    const int process = name.section(QLatin1Char('-'), 1, 1).toInt();
    const bool isDead = process > 0 && kill(process, 0) != 0 && errno == ESRCH;
    if (isDead && folder.ownerId() == getuid() && !folder.isSymLink())
      QDir(folder.filePath()).removeRecursively();
  }
}

}  // namespace

Printing::Printing(Main& main, EventRoad& road)
    : main_(main),
      road_(road),
      packMaker_(QStandardPaths::findExecutable(QStringLiteral("bivouac-packs"),
                                                {QCoreApplication::applicationDirPath()})) {
  if (IsOffered()) RemoveFoldersOfTheDead();
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
  if (!folder_) {
    folder_ = std::make_unique<QTemporaryDir>(FolderPrefix() + QString::number(getpid()) +
                                              QStringLiteral("-XXXXXX"));
  }
  QString digits;
  for (int cell = 0; cell < main_.CellCount; ++cell) digits += QString::number(main_.Board[cell]);
  page_ = folder_->filePath(QStringLiteral("Bivouac %1x%1 %2.pdf").arg(main_.BoardSize).arg(main_.PuzzleNo));
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
  constexpr int kGood = 33;
  const std::string path = QFile::encodeName(page_).toStdString();
  const ProgramAnswer viewer = main_.desktop.FindExecutable(path, "");
  if (viewer.Code < kGood || main_.desktop.ShellExecute("open", viewer.Program, path, "", 1) < kGood)
    SayItFailed(QStringLiteral("The page is made, but nothing opens it: ") + page_);
}

}  // namespace bivouac
