// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The Cc/Bcc row of the composer: on show only when a share brings Cc, Bcc or a notice, every
// recipient visible with its remove button, and what is sent is what it shows.
#include "TestSupport.h"
#include "composer/ExtensionComposerController.h"
#include "composer/ExtensionContentTextView.h"
#include "composer/ExtensionCopyRecipientsView.h"
#include "directory/ExtensionAddress.h"
#include "platform/ExtensionContext.h"
#include "recipients/ExtensionTokenField.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QUrl>
#include <QUrlQuery>

using namespace velmora;
using Field = ExtensionCopyRecipientsView::Field;

namespace {

std::shared_ptr<ExtensionAddress> address(const char* mail) {
    auto a = std::make_shared<ExtensionAddress>();
    a->setMail(QString::fromLatin1(mail));
    return a;
}

QToolButton* removeButton(QWidget* row, const QString& mail) {
    for (QToolButton* button : row->findChildren<QToolButton*>()) {
        if (button->isVisible() && button->accessibleName().endsWith(mail))
            return button;
    }
    return nullptr;
}

TEST(CopyRecipients, ShownOnlyWithContentEveryRecipientVisibleAndSentAsShown) {
    velmora::test::TempContainer container;
    QStringList sent;
    auto context = std::make_shared<ExtensionContext>(ExtensionContext::Items{},
                                                      [](const ExtensionContext::Outcome&) {});
    ExtensionComposerController composer(QRect(0, 0, 600, 400), context);
    composer.setCommandLauncher([&](const QList<UrlText>& urls, bool) {
        for (const UrlText& url : urls)
            sent.append(url.toString());
        return true;
    });
    QWidget window;
    window.resize(600, 400);
    composer.view()->setParent(&window);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    ExtensionCopyRecipientsView* row = composer.copyRecipientsView();
    QWidget* body = composer.contentTextView();
    const int usualBodyHeight = body->height();
    EXPECT_FALSE(row->isVisible());

    for (const char* mail : {"first.long.address@example.org", "second.long.address@example.org",
                             "third.long.address@example.org", "fourth.long.address@example.org"})
        row->addRecipient(Field::Cc, address(mail));
    row->addRecipient(Field::Bcc, address("hidden@example.org"));
    row->setNotice(QStringLiteral("Not attached: /etc/passwd"));
    QCoreApplication::processEvents();

    ASSERT_TRUE(row->isVisible());
    EXPECT_GT(row->geometry().top(), composer.toField()->geometry().bottom());
    EXPECT_LT(row->geometry().bottom(), composer.subjectField()->geometry().top());
    EXPECT_LT(body->height(), usualBodyHeight);
    // Four long addresses do not fit one line: the row wraps, and every label lies inside it.
    const QList<QLabel*> labels = row->findChildren<QLabel*>();
    QStringList shown;
    for (const QLabel* label : labels) {
        if (!label->isVisible())
            continue;
        shown.append(label->text());
        EXPECT_TRUE(row->rect().contains(label->geometry())) << label->text().toStdString();
        EXPECT_GE(label->width(), label->sizeHint().width()) << label->text().toStdString();
    }
    for (const char* text :
         {"Cc:", "Bcc:", "first.long.address@example.org", "fourth.long.address@example.org",
          "hidden@example.org", "Not attached: /etc/passwd"})
        EXPECT_TRUE(shown.contains(QString::fromLatin1(text))) << text;

    QToolButton* remove = removeButton(row, QStringLiteral("second.long.address@example.org"));
    ASSERT_TRUE(remove);
    QTest::mouseClick(remove, Qt::LeftButton);
    QCoreApplication::processEvents();
    composer.sendBtn()->click();
    ASSERT_EQ(sent.size(), 1);
    const QUrlQuery q(QUrl(sent.first()).query(QUrl::FullyEncoded));
    EXPECT_EQ(q.queryItemValue(QStringLiteral("cc"), QUrl::FullyDecoded),
              QStringLiteral("first.long.address@example.org;third.long.address@example.org;"
                             "fourth.long.address@example.org;"));
    EXPECT_EQ(q.queryItemValue(QStringLiteral("bcc"), QUrl::FullyDecoded),
              QStringLiteral("hidden@example.org;"));

    // Emptied, the row goes and the body has its room back.
    while (!row->recipients(Field::Cc).isEmpty())
        row->removeRecipient(Field::Cc, 0);
    QTest::mouseClick(removeButton(row, QStringLiteral("hidden@example.org")), Qt::LeftButton);
    row->setNotice(QString());
    QCoreApplication::processEvents();
    EXPECT_FALSE(row->isVisible());
    EXPECT_EQ(body->height(), usualBodyHeight);
}

} // namespace
