// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ImageSamples.h"
#include "Shown.h"
#include "TestSupport.h"
#include "message/ExtensionDate.h"
#include "message/ExtensionMessage.h"
#include "platform/Log.h"

#include <QTimeZone>

#include <gmock/gmock.h>
#include <set>
#include <thread>
#include <vector>

using namespace velmora;
using velmora::test::shown;

namespace {

QString s(const char* utf8) {
    return QString::fromUtf8(utf8);
}

QVariantMap dict(std::initializer_list<std::pair<const char*, QVariant>> entries) {
    QVariantMap map;
    for (const auto& [key, value] : entries)
        map.insert(s(key), value);
    return map;
}

// The local day (TZ=Europe/Rome, the C locale): the time for today, else the date.
TEST(DateService, DayKeyAndShownTextFollowTheLocalDay) {
    const ExtensionDate& dates = ExtensionDate::shared();
    EXPECT_EQ(dates.centralDate(QDateTime(QDate::currentDate(), QTime(0, 0, 1))),
              QStringLiteral("00:00:01"));
    const QDateTime lateUtc(QDate(2026, 1, 5), QTime(23, 30), QTimeZone::utc()); // Rome: the 6th
    EXPECT_EQ(dates.IntDate(lateUtc), 20260106);
    EXPECT_EQ(dates.centralDate(lateUtc), QStringLiteral("6 Jan 2026"));
    EXPECT_EQ(dates.IntDate(QDateTime()), 0);
    EXPECT_EQ(shown(dates.centralDate(QDateTime())), QStringLiteral("\"\""));
}

TEST(DateService, ReadsOnlyTheExactExchangeFormatAndLogsEachText) {
    const ExtensionDate& dates = ExtensionDate::shared();
    const QDateTime instant(QDate(2026, 11, 16), QTime(5, 22, 27), QTimeZone::utc());
    const struct {
        const char* name;
        QString text;
        QDateTime expected;
    } rows[] = {
        {"utc", QStringLiteral("2026-11-16T05:22:27Z"), instant},
        {"numeric_offset", QStringLiteral("2026-11-16T05:22:27+00:00"), {}},
        {"no_such_day", QStringLiteral("2026-02-30T05:22:27Z"), {}},
        {"hour_24", QStringLiteral("2026-11-16T24:00:00Z"), {}},
        {"wide_digits", QString::fromUtf8("２０２６-11-16T05:22:27Z"), {}},
        {"trailing_text", QStringLiteral("2026-11-16T05:22:27Z "), {}},
        {"empty", QStringLiteral(""), {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LogCapture log;
        const QDateTime read = dates.exchangeDate(row.text);
        EXPECT_EQ(read.isValid(), row.expected.isValid());
        if (row.expected.isValid()) {
            EXPECT_EQ(read.toMSecsSinceEpoch(), row.expected.toMSecsSinceEpoch());
            EXPECT_EQ(read.timeSpec(), Qt::UTC);
        }
        EXPECT_EQ(log.lines(), QStringList{QStringLiteral("exchangeDate ") + row.text});
    }
    LogCapture log;
    EXPECT_FALSE(dates.exchangeDate(QString()).isValid());
    EXPECT_TRUE(log.lines().isEmpty());
}

QString variant(const QVariant& v) {
    return v.isValid() ? QString::fromLatin1(v.typeName()) + u':' + v.toString() : s("invalid");
}

// Every field a dictionary gives, null told apart from empty, in one list.
QStringList fields(const ExtensionMessage& m) {
    QStringList out = shown({m.subject(), m.messageId(), m.from(), m.account(), m.folderPath(),
                             m.dateString(), m.htmlBody(), m.plainBody()});
    out << variant(m.folderStandardId()) << variant(m.unread())
        << (m.date().isValid() ? QString::number(m.date().toMSecsSinceEpoch()) : s("no date"))
        << (m.image().isNull()
                ? s("no image")
                : QStringLiteral("%1x%2").arg(m.image().width()).arg(m.image().height()))
        << (m.to() ? s("to") : s("no to")) << (m.attachments() ? s("files") : s("no files"));
    return out;
}

QString base64Png(int width, int height) {
    return QString::fromLatin1(
        test::encoded(test::twoColourImage(width, height), "png").toBase64());
}

// Unread unchecked, time stamps in single precision, an avatar that is no base64 left out.
TEST(MessageRecord, ReadsDictionariesWithDefaultsAndStopsAtAFault) {
    QString wrapped = base64Png(4, 3); // lenient base64: broken into lines, blanks between
    for (qsizetype at = wrapped.size() - 10; at > 0; at -= 10)
        wrapped.insert(at, at % 20 == 0 ? s("\r\n") : s(" \n"));
    const struct {
        const char* name;
        QVariantMap dictionary;
        QStringList fields;
        int faults;
    } rows[] = {
        {"defaults",
         dict({{"avatar", s("!!! not base64 !!!")}}),
         {"\"No subject\"", "\"\"", "\"\"", "\"\"", "\"\"", "\"1 Jan 1970\"", "<null>", "<null>",
          "int:0", "int:0", "0", "no image", "no to", "no files"},
         0},
        {"as_given",
         dict({{"subject", s("")},
               {"messageId", s("m1")},
               {"from", s("ada@x.test")},
               {"account", s("acc")},
               {"folder", s("INBOX/Work")},
               {"folderStid", 3},
               {"isUnread", s("1")},
               {"date", s("1700000065")},
               {"avatar", wrapped}}),
         {"\"\"", "\"m1\"", "\"ada@x.test\"", "\"acc\"", "\"INBOX/Work\"", "\"14 Nov 2023\"",
          "<null>", "<null>", "int:3", "QString:1", "1700000128000", "4x3", "no to", "no files"},
         0},
        {"fault_in_date",
         dict({{"subject", s("Hi")},
               {"account", s("acc")},
               {"folder", s("INBOX")},
               {"isUnread", 1},
               {"date", dict({{"not", s("a number")}})},
               {"avatar", base64Png(2, 2)}}),
         {"\"Hi\"", "\"\"", "\"\"", "\"acc\"", "\"INBOX\"", "<null>", "<null>", "<null>", "int:0",
          "int:1", "no date", "no image", "no to", "no files"},
         1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LogCapture log;
        EXPECT_EQ(fields(*ExtensionMessage::initWithDictonary(row.dictionary)), row.fields);
        EXPECT_EQ(log.linesStartingWith(u"ExtensionMessage initWithDictonary ").size(), row.faults);
        EXPECT_EQ(log.lines().size(), row.faults);
    }
    // Not a dictionary at all: nothing is read.
    LogCapture log;
    EXPECT_TRUE(ExtensionMessage::initWithDictonary(QVariantList{s("x")})->subject().isNull());
    EXPECT_EQ(log.linesStartingWith(u"ExtensionMessage initWithDictonary ").size(), 1);
}

std::shared_ptr<ExtensionMessage> record(const QString& id, const QString& account,
                                         const QString& subject = s("s")) {
    auto message = ExtensionMessage::init();
    message->setMessageId(id);
    message->setAccount(account);
    message->setSubject(subject);
    return message;
}

TEST(MessageRecord, EqualityIsMessageIdAndAccountOnly) {
    const auto a = record(s("m1"), s("acc"), s("one"));
    EXPECT_TRUE(a->isEqual(record(s("m1"), s("acc"), s("two"))));
    EXPECT_FALSE(a->isEqual(record(s("m1"), s("other"))));
    EXPECT_FALSE(a->isEqual(record(s("m2"), s("acc"))));
    EXPECT_FALSE(a->isEqual(nullptr));

    const auto unset = record(QString(), s("acc"));
    EXPECT_TRUE(unset->isEqual(unset));
    EXPECT_FALSE(unset->isEqual(record(QString(), s("acc"))));
    EXPECT_FALSE(record(s(""), s("acc"))->isEqualToModel(*unset));
    EXPECT_TRUE(record(s(""), s(""))->isEqualToModel(*record(s(""), s(""))));

    EXPECT_EQ(record(s("m"), s("a"), s("Hello"))->description(), s("ExtensionMessage Hello"));
}

// Through the record's lock, which ThreadSanitizer watches here; the four lists are distinct.
TEST(MessageRecord, AttachmentsGrowSafelyFromManyThreads) {
    const auto message = ExtensionMessage::init();
    const auto list = message->attachments();
    const std::set<const void*> lists{message->to().get(), message->cc().get(),
                                      message->bcc().get(), list.get()};
    EXPECT_TRUE(lists.size() == 4 && !lists.contains(nullptr));
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&message, t] {
            for (int i = 0; i < 200; ++i) {
                if (i % 2)
                    message->appendAttachment(QStringLiteral("/tmp/%1-%2").arg(t).arg(i));
                else
                    message->appendAttachment(
                        QUrl::fromLocalFile(QStringLiteral("/tmp/%1").arg(i)));
                message->subject();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(message->attachments(), list);
    EXPECT_EQ(message->withLock([&] { return list->size(); }), 8 * 200);
}

std::shared_ptr<ExtensionAddress> address(const QString& mail) {
    auto a = std::make_shared<ExtensionAddress>();
    a->setMail(mail);
    return a;
}

TEST(CommandUrl, WritesOnlyTheFieldsThatHoldText) {
    const auto message = ExtensionMessage::init();
    EXPECT_EQ(message->queryUrl(s("send")).toString(), s("velmora://send?"));
    message->setSubject(s("Hi there"));

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

    const QString url = message->queryUrl(s("send")).toString();
    EXPECT_THAT(url.mid(url.indexOf(u'?') + 1).split(u'&'),
                ::testing::UnorderedElementsAre(
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

std::shared_ptr<ExtensionMessage> withBodies(const QString& html, const QString& plain) {
    auto message = ExtensionMessage::init();
    message->setHtmlBody(html);
    message->setPlainBody(plain);
    return message;
}

TEST(HtmlRendering, HtmlBodyGetsTheAttachmentsAsImagesOnEveryCall) {
    const auto message = withBodies(s("<p>x</p>"), s("plain is ignored"));
    message->attachments()->append({s("/tmp/a.png"), s("/tmp/b c.jpg")});
    const QString images =
        s("<img src=\"file:///tmp/a.png\"/><br/><img src=\"file:///tmp/b c.jpg\"/><br/>");
    EXPECT_EQ(message->renderHtml(), s("<p>x</p>") + images);
    EXPECT_EQ(message->renderHtml(), s("<p>x</p>") + images + images);
    EXPECT_EQ(message->plainBody(), s("plain is ignored"));

    const auto url = withBodies(s(""), s(""));
    url->attachments()->append(QUrl::fromLocalFile(s("/tmp/z.pdf")));
    EXPECT_EQ(url->renderHtml(), s("<img src=\"file://file:///tmp/z.pdf\"/><br/>"));
    EXPECT_EQ(shown(withBodies(QString(), QString())->renderHtml()), shown(s("")));
    EXPECT_EQ(withBodies(s(""), s("a\nb"))->renderHtml(), s("a<br>b")); // only the plain one
}

// Each repeat of a link doubles its occurrences; growth stops at 1 MiB and says so once.
TEST(HtmlRendering, RepeatedLinksStopAtTheGrowthLimit) {
    QString body;
    for (int i = 0; i < 40; ++i)
        body += s("http://h.test\n");
    LogCapture log;
    const auto message = withBodies(QString(), body);
    const QString rendered = message->renderHtml();
    EXPECT_LE(rendered.size(), 1 << 20);
    EXPECT_TRUE(rendered.startsWith(s("<a href='<a href='<a href='")));
    EXPECT_TRUE(rendered.endsWith(s("</a></a><br>")));
    EXPECT_EQ(shown({message->htmlBody(), message->plainBody()}), shown({QString(), rendered}));
    EXPECT_EQ(log.lines(), QStringList{s("renderHtml links left out past 1048576 characters")});
}

TEST(LinkDetection, FindsLinksInProse) {
    const struct {
        const char* name;
        QString text;
        QStringList links;
    } rows[] = {
        {"none", s("no links here, just a.b and c@d"), {}},
        {"prose_punctuation",
         s("(at http://h.test/a?b=1), or http://h.test/c!?:; then"),
         {s("http://h.test/a?b=1"), s("http://h.test/c")}},
        {"balanced_parenthesis",
         s("http://w.test/wiki/Foo_(bar)."),
         {s("http://w.test/wiki/Foo_(bar)")}},
        {"closing_quotes",
         s("“https://h.test/q” and 'ftp://f.test/a'"),
         {s("https://h.test/q"), s("ftp://f.test/a")}},
        {"file_and_custom",
         s("file:///tmp/x y and velmora://send?a=1"),
         {s("file:///tmp/x"), s("velmora://send?a=1")}},
        {"www_host", s("visit WWW.H.test.org/x?y=1, now"), {s("http://www.h.test.org/x?y=1")}},
        {"www_at_sentence_end", s("at www.h.test.org."), {s("http://www.h.test.org")}},
        {"www_too_short", s("www.test or xwww.a.test.org"), {}},
        {"email", s("write to ada.l+x@mail.h.test."), {s("mailto:ada.l+x@mail.h.test")}},
        {"mailto", s("mailto:ada@h.test?subject=Hi"), {s("mailto:ada@h.test?subject=Hi")}},
        {"normalised", s("HTTP://H.Test/ä%zz"), {s("http://h.test/%C3%A4%25zz")}},
        {"ipv6", s("[http://[::1]:8080/x]"), {s("http://[::1]:8080/x")}},
        {"no_host", s("http:// and http://. and https:///x"), {}},
        {"scheme_without_slashes", s("tel:123 and news:x"), {}},
        {"digit_before_scheme", s("1http://h.test"), {s("http://h.test")}},
    };
    const ExtensionMessage message;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(message.searchUrlsDetector(row.text), row.links);
    }
}

} // namespace
