#include <QApplication>
#include <QStandardPaths>
#include <cstdlib>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // A screen of its own, and settings in the test's folder.
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    QStandardPaths::setTestModeEnabled(true);
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("sweeply"));
    QApplication::setApplicationName(QStringLiteral("test"));
    return RUN_ALL_TESTS();
}
