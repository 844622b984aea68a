// Runs the window's tests with settings, data and sound in a folder of their own, whatever the surroundings.
#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "window/program.h"

int main(int argc, char** argv) {
  QTemporaryDir folder;
  if (!qEnvironmentVariableIsSet("BIVOUAC_TEST_WAYLAND"))
    qputenv("QT_QPA_PLATFORM", qgetenv("BIVOUAC_TEST_SCREEN").prepend("offscreen"));
  qputenv("XDG_CONFIG_HOME", folder.filePath("config").toUtf8());
  qputenv("XDG_DATA_HOME", folder.filePath("data").toUtf8());
  qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
  qputenv("PATH", folder.filePath("programs").toUtf8());  // No browser comes up.
  if (!qEnvironmentVariableIsSet("ALSOFT_DRIVERS")) qputenv("ALSOFT_DRIVERS", "wave");
  QFile sound(folder.filePath("alsoft.conf"));
  if (!sound.open(QFile::WriteOnly)) return 1;
  sound.write("[wave]\nfile = " + folder.filePath("heard.wav").toUtf8() + "\n");
  sound.close();
  qputenv("ALSOFT_CONF", sound.fileName().toUtf8());
  qputenv("BIVOUAC_TEST_FOLDER", folder.path().toUtf8());

  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  const int status = RUN_ALL_TESTS();
  folder.remove();
  bivouac::LeaveWayland(status);
  return status;
}
