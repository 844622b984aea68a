#include "window/own_files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace bivouac {
namespace {

/// `installed`: the folder's path from the program's, which holds once the program is installed.
std::string Folder(const char* installed) {
  const QDir program(QCoreApplication::applicationDirPath());
  const QString folder = QDir::cleanPath(program.filePath(QString::fromUtf8(installed)));
  return QFile::encodeName(QDir(folder).exists() ? folder : program.path()).toStdString();
}

}  // namespace

std::string OwnFolder() {
  return Folder(BIVOUAC_DATA_FROM_PROGRAM);
}

std::string OwnModule(const std::string& name) {
  return Folder(BIVOUAC_MODULES_FROM_PROGRAM) + '/' + name;
}

std::string OwnGuide() {
  const QDir program(QCoreApplication::applicationDirPath());
  QString folder = program.filePath(QStringLiteral(BIVOUAC_GUIDE_FROM_PROGRAM));
  if (!QDir(folder).exists()) folder = program.filePath(QStringLiteral("guide"));  // Not installed.
  return QFile::encodeName(QDir::cleanPath(folder)).toStdString() + '/';
}

}  // namespace bivouac
