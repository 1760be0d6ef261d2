// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "RecordingDesktop.h"
#include "TestSupport.h"
#include "composer/ExtensionComposerController.h"
#include "composer/HandOff.h"
#include "composer/StagingStatusView.h"
#include "platform/ExtensionContext.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QUrl>
#include <QUrlQuery>

using namespace velmora;

namespace {

const QString kMainApplication = QStringLiteral("it.zemlo.velmora");

// A window run of the composer whose share still has an item on its way and one left out, and
// whose main application is missing until the test installs it.
TEST(HandOffWindow, SendWaitsForStagingAndAFailedLaunchLosesNothing) {
    velmora::test::RecordingDesktop desktop;
    velmora::test::TempContainer container;
    QList<ExtensionContext::Outcome> outcomes;
    const auto context = std::make_shared<ExtensionContext>(
        ExtensionContext::Items{}, [&](const ExtensionContext::Outcome& o) { outcomes.append(o); });
    QWidget window;
    window.resize(600, 400);
    ExtensionComposerController composer(QRect(0, 0, 600, 400), context);
    composer.view()->setParent(&window);
    window.show();

    const std::shared_ptr<StagingStatus> status = context->stagingStatus();
    const quint64 big = status->begin();
    status->progress(big, QStringLiteral("/shared/big.bin"), 12 << 20, 340 << 20);
    status->leaveOut(QStringLiteral("/shared/f/pipe"),
                     QStringLiteral("cannot copy \"/shared/f/pipe\": not a file or folder"));
    StagingStatusView* cards = composer.handOff()->statusView();
    ASSERT_TRUE(QTest::qWaitFor([&] { return cards->cardCount() == 2; }));
    const QStringList texts = cards->cardTexts();
    EXPECT_TRUE(texts[0].startsWith(QStringLiteral("big.bin\n"))) << texts[0].toStdString();
    EXPECT_TRUE(texts[1].startsWith(QStringLiteral("pipe\n"))) << texts[1].toStdString();
    EXPECT_TRUE(texts[1].contains(QStringLiteral("not a file or folder")));
    EXPECT_GT(cards->width(), 0);

    composer.subjectField()->setText(QStringLiteral("Minutes"));
    QPushButton* send = composer.sendBtn();
    send->click();
    EXPECT_EQ(send->text(), QStringLiteral("Waiting for 1 file..."));
    send->click(); // a second press stops the wait
    EXPECT_EQ(send->text(), QStringLiteral("Send"));
    send->click();

    // The first alert is cancelled, the second answered with Try Again once Velmora is there.
    QStringList alerts;
    QObject::connect(composer.handOff(), &HandOff::alertShown, [&](QMessageBox* alert) {
        alerts.append(alert->informativeText());
        EXPECT_TRUE(outcomes.isEmpty());
        EXPECT_EQ(composer.subjectField()->text(), QStringLiteral("Minutes"));
        const QList<QAbstractButton*> buttons = alert->buttons();
        const auto button = [&](const char* text) {
            for (QAbstractButton* b : buttons)
                if (b->text() == QLatin1String(text))
                    return b;
            return static_cast<QAbstractButton*>(nullptr);
        };
        ASSERT_TRUE(button("Try Again") && button("Cancel"));
        if (alerts.size() == 1) {
            button("Cancel")->click();
            return;
        }
        desktop.addApplication(kMainApplication);
        button("Try Again")->click();
    });
    status->finish(big); // the item lands: the waiting Send goes on, and its launch fails
    ASSERT_TRUE(QTest::qWaitFor([&] { return alerts.size() == 1; }));
    EXPECT_TRUE(alerts[0].contains(QStringLiteral("it.zemlo.velmora.desktop")))
        << alerts[0].toStdString();
    EXPECT_TRUE(outcomes.isEmpty()) << "Cancel on the alert goes back to the composer";
    EXPECT_EQ(send->text(), QStringLiteral("Send"));

    send->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return outcomes.size() == 1; }));
    EXPECT_EQ(alerts.size(), 2);
    EXPECT_FALSE(outcomes[0].cancelled());
    const QStringList urls = desktop.takeArguments(kMainApplication);
    ASSERT_EQ(urls.size(), 1);
    EXPECT_EQ(QUrlQuery(QUrl(urls[0]).query())
                  .queryItemValue(QStringLiteral("subject"), QUrl::FullyDecoded),
              QStringLiteral("Minutes"));
}

} // namespace
