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
    ::testing::InitGoogleTest(&argc, argv);
    // Results never depend on the machine's platform, locale or time zone.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("LANG", "C.UTF-8");
    qputenv("TZ", "Europe/Rome");
    tzset();
    TestApplication app(argc, argv);
#ifdef VELMORA_TEST_WIDGETS
    QApplication::setStyle(QStringLiteral("Fusion"));
#endif
    return RUN_ALL_TESTS();
}
