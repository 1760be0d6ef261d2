// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "FilledComposer.h"

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

namespace velmora::test {

void FilledComposer::SetUp() {
    QApplication::setPalette(lightPalette());
    const bool written =
        writePlist(container.dataFolder() + QStringLiteral("/Accounts.plist"),
                   R"([{"mail": "ada@x.test", "type": 1, "enabled": true}])", false) &&
        writePlist(container.dataFolder() + QStringLiteral("/Contacts/Addresses.plist"),
                   R"([{"mail": "alan@x.test", "firstName": "Alan", "lastName": "Turing",
                        "rank": 4},
                       {"mail": "alice@y.test", "firstName": "Alice"},
                       {"mail": "ada@z.test", "firstName": "Ada", "lastName": "Lovelace"}])",
                   false);
    if (!written)
        GTEST_SKIP() << "python3 is needed to write property lists";

    context = std::make_shared<ExtensionContext>(ExtensionContext::Items{});
    composer = std::make_unique<ExtensionComposerController>(QRect(0, 0, 600, 400), context);
    window.resize(600, 400);
    composer->view()->setParent(&window);
    composer->collectionView()->setThumbnailsSynchronous(true);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));

    auto message = ExtensionMessage::init();
    message->setSubject(QStringLiteral("Lake Bled"));
    message->setHtmlBody(QStringLiteral("<p>Plain words of the body</p>"
                                        "<p><a href=\"https://example.org/bled\">"
                                        "https://example.org/bled</a></p>"));
    message->attachments()->append(
        writeImage(desktop.files() + QStringLiteral("/picture.png"), QSize(64, 48), Qt::darkCyan));
    message->attachments()->append(
        writeBytes(desktop.files() + QStringLiteral("/notes.txt"), "Notes\n"));
    attachmentNames = {QStringLiteral("picture.png"), QStringLiteral("notes.txt")};
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

void FilledComposer::TearDown() {
    QApplication::setPalette(lightPalette());
}

QPalette FilledComposer::lightPalette() {
    return QApplication::style()->standardPalette();
}

QPalette FilledComposer::darkPalette() {
    QPalette palette;
    const std::pair<QPalette::ColorRole, QRgb> colours[] = {
        {QPalette::Window, 0x2a2e32},
        {QPalette::WindowText, 0xfcfcfc},
        {QPalette::Base, 0x1b1e20},
        {QPalette::AlternateBase, 0x2a2e32},
        {QPalette::Text, 0xfcfcfc},
        {QPalette::Button, 0x31363b},
        {QPalette::ButtonText, 0xfcfcfc},
        {QPalette::Highlight, 0x3daee9},
        {QPalette::HighlightedText, 0xfcfcfc},
        {QPalette::Link, 0x4db6f6},
        {QPalette::PlaceholderText, 0x96fcfcfc}};
    for (const auto& [role, rgb] : colours)
        palette.setColor(role, QColor::fromRgba(qAlpha(rgb) ? rgb : rgb | 0xff000000));
    return palette;
}

} // namespace velmora::test
