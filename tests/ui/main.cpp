// The desktop's tests run in real windows without a screen, and remember nothing beyond their run.
#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include "ui/style.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  ::testing::InitGoogleTest(&argc, argv);
  QApplication app(argc, argv);
  const QTemporaryDir settings;
  QCoreApplication::setOrganizationName("Tallwick");
  QCoreApplication::setApplicationName("Tests");
  QSettings::setDefaultFormat(QSettings::IniFormat);
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
  QApplication::setQuitOnLastWindowClosed(false);
  tallwick::ApplyStyle(app, tallwick::Scheme::kLight);
  return RUN_ALL_TESTS();
}
