// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Shown.h"
#include "TestSupport.h"
#include "message/ExtensionMessage.h"

#include <gmock/gmock.h>

using namespace velmora;
using velmora::test::shown;

namespace {

QString s(const char* utf8) {
    return QString::fromUtf8(utf8);
}

std::shared_ptr<ExtensionAddress> address(const QString& mail) {
    auto a = std::make_shared<ExtensionAddress>();
    a->setMail(mail);
    return a;
}

QStringList queryPairs(const UrlText& url) {
    const QString text = url.toString();
    return text.mid(text.indexOf(u'?') + 1).split(u'&', Qt::SkipEmptyParts);
}

TEST(CommandUrl, WritesOnlyTheFieldsThatHoldText) {
    const auto message = ExtensionMessage::init();
    EXPECT_EQ(message->queryUrl(s("send")).toString(), s("velmora://send?"));
    message->setSubject(s("Hi there"));
    EXPECT_EQ(message->queryUrl(s("send")).toString(), s("velmora://send?subject=Hi%20there"));

    message->setPlainBody(s("a+b & c"));
    message->setHtmlBody(s("<p>ü</p>"));
    message->setFrom(s("me@x.test"));
    message->setAccount(s("acc 1"));
    message->to()->append({address(s("A")), address(s("B"))});
    message->bcc()->append(address(QString()));
    message->attachments()->append(
        {s("/tmp/x y.png"), QUrl::fromLocalFile(s("/tmp/z.pdf")), 42, s("/tmp/last")});
    message->setMessageId(s("never-written"));
    message->setToString(s("never-written"));

    const QStringList pairs = queryPairs(message->queryUrl(s("send")));
    EXPECT_THAT(pairs, ::testing::UnorderedElementsAre(
                           s("subject=Hi%20there"), s("plainBody=a%2Bb%20%26%20c"),
                           s("htmlBody=%3Cp%3E%C3%BC%3C%2Fp%3E"), s("from=me%40x.test"),
                           s("account=acc%201"), s("to=A%3BB%3B"), s("bcc=%28null%29%3B"),
                           s("attachment_0=%2Ftmp%2Fx%20y.png"), s("attachment_1=%2Ftmp%2Fz.pdf"),
                           s("attachment_3=%2Ftmp%2Flast")));

    // Read back: the same texts, recipients as texts only, the attachments as paths.
    const auto read = ExtensionMessage::ExtensionMessageWithUrl(message->queryUrl(s("send")));
    EXPECT_EQ(shown({read->subject(), read->plainBody(), read->htmlBody(), read->from(),
                     read->account(), read->toString(), read->bccString(), read->messageId()}),
              shown({message->subject(), message->plainBody(), message->htmlBody(), message->from(),
                     message->account(), s("A;B;"), s("(null);"), QString()}));
    EXPECT_TRUE(read->to()->isEmpty());
    EXPECT_THAT(*read->attachments(), ::testing::UnorderedElementsAre(
                                          s("/tmp/x y.png"), s("/tmp/z.pdf"), s("/tmp/last")));
}

// QUrl would lowercase the command and may rewrite escapes; the URL carries the built text.
TEST(CommandUrl, KeepsTheBuiltTextExactlyAndRefusesInvalidOnes) {
    const auto message = ExtensionMessage::init();
    message->setSubject(s("%41 %2b ~ %%"));
    const UrlText url = message->queryUrl(s("Send"));
    EXPECT_EQ(url.toString(), s("velmora://Send?subject=%2541%20%252b%20~%20%25%25"));
    EXPECT_EQ(ExtensionMessage::ExtensionMessageWithUrl(url)->subject(), s("%41 %2b ~ %%"));
    EXPECT_EQ(ExtensionMessage::ExtensionMessageWithUrl(url.toUrl())->subject(), s("%41 %2b ~ %%"));

    EXPECT_TRUE(message->queryUrl(s("se nd")).isNull());
    // What the reader does not write back: "+" as a space, and keys it does not know.
    EXPECT_EQ(ExtensionMessage::ExtensionMessageWithUrl(
                  UrlText::fromString(s("velmora://send?subject=a+b&unknown=1")))
                  ->subject(),
              s("a b"));
}

} // namespace
