// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#ifdef VELMORA_TEST_WIDGETS
#include <QApplication>
using TestApplication = QApplication;
#else
#include <QGuiApplication>
using TestApplication = QGuiApplication;
#endif

#include <ctime>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Tests never read the developer's own data: the environment comes from CTest, and each
    // test that needs a container makes its own.
    ::testing::InitGoogleTest(&argc, argv);
    // A fixed platform, locale and time zone, so that results never depend on the machine;
    // widgets need no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("LANG", "C.UTF-8");
    qputenv("TZ", "Europe/Rome");
    tzset();
    TestApplication app(argc, argv);
#ifdef VELMORA_TEST_WIDGETS
    // One style everywhere, so that sizes and pictures do not depend on the desktop.
    QApplication::setStyle(QStringLiteral("Fusion"));
#endif
    return RUN_ALL_TESTS();
}
