// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ComposerWindow.h"

#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionCopyRecipientsView.h"
#include "directory/ExtensionAddress.h"
#include "message/ExtensionMessage.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/ExtensionSuggestionTableView.h"
#include "recipients/ExtensionTokenField.h"

#include <QApplication>
#include <QStyle>
#include <QTest>
#include <QUrlQuery>

namespace velmora::test {

void ComposerWindow::SetUp() {
    QApplication::setPalette(QApplication::style()->standardPalette());
    // Three contacts, one with a rank, as the address book's XML property list.
    writeFile(container.dataFolder() + QStringLiteral("/Contacts/Addresses.plist"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><array>"
              "<dict><key>mail</key><string>alan@x.test</string><key>firstName</key>"
              "<string>Alan</string><key>lastName</key><string>Turing</string>"
              "<key>rank</key><integer>4</integer></dict>"
              "<dict><key>mail</key><string>alice@y.test</string><key>firstName</key>"
              "<string>Alice</string></dict>"
              "<dict><key>mail</key><string>ada@z.test</string><key>firstName</key>"
              "<string>Ada</string><key>lastName</key><string>Lovelace</string></dict>"
              "</array></plist>");
    writeAccounts(R"([
        {"mail": "ada@x.test", "type": 1, "enabled": true,
         "aliases": [{"mail": "al1@x.test", "account": "acc-1"}, {"mail": "al2@x.test"}]},
        {"mail": "old@x.test", "type": 3, "enabled": true},
        {"mail": "off@x.test", "type": 1, "enabled": false},
        {"mail": "bob@y.test", "type": 0, "enabled": true}])");
    window.resize(600, 400);
    open();
}

void ComposerWindow::TearDown() {
    QApplication::setPalette(QApplication::style()->standardPalette());
}

void ComposerWindow::writeAccounts(const char* json) {
    EXPECT_TRUE(
        writePlist(container.dataFolder() + QStringLiteral("/Accounts.plist"), json, false));
}

void ComposerWindow::open() {
    composer.reset();
    context = std::make_shared<ExtensionContext>(
        ExtensionContext::Items{},
        [this](const ExtensionContext::Outcome& o) { outcomes.append(o); });
    composer = std::make_unique<ExtensionComposerController>(QRect(0, 0, 600, 400), context);
    composer->setCommandLauncher([this](const QList<UrlText>& urls, bool) {
        for (const UrlText& url : urls)
            launches.append(url.toString());
        return true;
    });
    composer->view()->setParent(&window);
    composer->view()->show();
    composer->collectionView()->setThumbnailsSynchronous(true);
    // The first composer is in the window before it is shown, as the share window does it.
    if (!window.isVisible()) {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
}

QString ComposerWindow::sentItem(const char* key) const {
    EXPECT_EQ(launches.size(), 1);
    const QUrlQuery query(QUrl(launches.value(0)).query(QUrl::FullyEncoded));
    const QString name = QString::fromLatin1(key);
    return query.hasQueryItem(name) ? query.queryItemValue(name, QUrl::FullyDecoded) : QString();
}

void ComposerWindow::fill() {
    auto message = ExtensionMessage::init();
    message->setSubject(QStringLiteral("Lake Bled"));
    message->setHtmlBody(QStringLiteral("<p>Plain words of the body</p>"
                                        "<p><a href=\"https://example.org/bled\">"
                                        "https://example.org/bled</a></p>"));
    message->attachments()->append(
        writeImage(desktop.file("picture.png"), QSize(64, 48), Qt::darkCyan));
    message->attachments()->append(writeBytes(desktop.file("notes.txt"), "Notes\n"));
    composer->update(message);
    ASSERT_TRUE(QTest::qWaitFor([&] { return composer->collectionView()->count() == 2; }));

    auto cc = std::make_shared<ExtensionAddress>();
    cc->setMail(QStringLiteral("copy@x.test"));
    composer->copyRecipientsView()->addRecipient(ExtensionCopyRecipientsView::Field::Cc, cc);
    composer->copyRecipientsView()->setNotice(QStringLiteral("Not attached: secret.key"));

    ExtensionTokenField* to = composer->toField();
    to->setObjectValue(
        {composer->suggestionController()->addressForMail(QStringLiteral("ada@z.test"))});
    to->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return to->hasFocus(); }));
    QTest::keyClicks(to, QStringLiteral("al"));
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return composer->suggestionController()->visible() &&
               composer->suggestionController()->table()->model()->rowCount() == 2;
    }));
}

} // namespace velmora::test
