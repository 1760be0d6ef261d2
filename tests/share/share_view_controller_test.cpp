// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "share/ShareSession.h"

#include <QApplication>
#include <QTextStream>
#include <QTimer>

using namespace velmora;

namespace {

TEST(ShareView, ClosingTheWindowCancelsTheRequest) {
    const velmora::test::TempContainer container;
    QString printed;
    QTextStream out(&printed);
    QTextStream err(&printed);
    ShareSession session(ShareOptions{}, {}, out, err);
    QString title;
    QSize size;
    // Once the window is up, close it as a window manager would.
    QTimer::singleShot(200, [&] {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<ShareWindow*>(top); window && window->isVisible()) {
                title = window->windowTitle();
                size = window->size();
                window->close();
            }
        }
    });
    // Should closing not end the request, this ends the wait and the test fails below.
    QTimer::singleShot(15000, [] { QApplication::quit(); });
    EXPECT_EQ(session.exec(), ShareSession::Cancelled);
    ASSERT_TRUE(session.outcome());
    ASSERT_TRUE(session.outcome()->error);
    EXPECT_EQ(session.outcome()->error->domain, QStringLiteral("NSCocoaErrorDomain"));
    EXPECT_EQ(session.outcome()->error->code, 3072);
    EXPECT_EQ(title, QStringLiteral("Share with Velmora"));
    EXPECT_EQ(size, QSize(600, 400));
    EXPECT_TRUE(printed.isEmpty()) << printed.toStdString();
}

} // namespace
