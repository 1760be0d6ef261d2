// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "bridge/ShareFolder.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionComposerController.h"
#include "composer/ExtensionContentTextView.h"
#include "platform/ExtensionContext.h"
#include "platform/ExtensionItem.h"
#include "platform/ItemProviders.h"
#include "share/ShareSession.h"
#include "share/ShareViewController.h"
#include "views/FlippedView.h"

#include <QApplication>
#include <QFileInfo>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTextStream>
#include <QTimer>

using namespace velmora;

namespace {

TEST(ShareView, SharedItemsFillTheComposerWhoseRootFollowsItsWindow) {
    const velmora::test::TempContainer container;
    QTemporaryDir files;
    velmora::test::writeFile(files.filePath(QStringLiteral("notes.txt")), "n");
    auto item = std::make_shared<ExtensionItem>();
    item->setAttributedContentText(RichText::fromPlainText(QStringLiteral("Hello there")));
    item->setAttachments({ItemProviders::file(files.filePath(QStringLiteral("notes.txt")))});
    auto context = std::make_shared<ExtensionContext>(ExtensionContext::Items{item});
    ShareViewController controller(context);
    QWidget window;
    FlippedView* root = controller.view();
    ExtensionComposerController* composer = controller.composer();
    ASSERT_NE(composer, nullptr);
    EXPECT_EQ(composer->myExtensionContext(), context);
    EXPECT_EQ(root->geometry(), QRect(0, 0, 600, 400));
    EXPECT_EQ(composer->view()->parentWidget(), root);
    EXPECT_EQ(composer->view()->geometry(), QRect(0, 0, 600, 400));

    QSignalSpy takenIn(composer, &ExtensionComposerController::messageTakenIn);
    ASSERT_TRUE(takenIn.wait(15000));
    EXPECT_TRUE(
        composer->contentTextView()->toPlainText().startsWith(QStringLiteral("Hello there")))
        << composer->contentTextView()->toPlainText().toStdString();
    ASSERT_EQ(composer->attachmentController()->rowCount(), 1);
    // Staged into this share's own folder of the staging folder.
    const QString folder = ShareFolder::current(QStringLiteral("ShareFull"))->path();
    EXPECT_EQ(QFileInfo(folder).path(), container.dataFolder() + QStringLiteral("/ShareFull"));
    EXPECT_EQ(ExtensionAttachmentController::pathOfAttachment(
                  composer->attachmentController()->arrangedObjects().value(0)),
              folder + QStringLiteral("/notes.txt"));

    window.resize(600, 400);
    root->setParent(&window);
    window.show();
    window.resize(700, 450);
    EXPECT_TRUE(QTest::qWaitFor([&] { return root->size() == QSize(700, 450); }));
}

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
