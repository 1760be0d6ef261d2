// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Shown.h"
#include "TestSupport.h"
#include "message/ExtensionMessage.h"
#include "platform/Log.h"

#include <QBuffer>

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
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QString::fromLatin1(png.toBase64());
}

TEST(MessageRecord, InitGivesEmptyBodiesAndFourDistinctLists) {
    const auto message = ExtensionMessage::init();
    EXPECT_EQ(fields(*message),
              (QStringList{"<null>", "<null>", "<null>", "<null>", "<null>", "<null>", "\"\"",
                           "\"\"", "invalid", "invalid", "no date", "no image", "to", "files"}));
    EXPECT_TRUE(message->toString().isNull());
    ASSERT_TRUE(message->cc() && message->bcc());
    message->to()->append(std::make_shared<ExtensionAddress>());
    EXPECT_EQ(message->to()->size(), 1);
    EXPECT_TRUE(message->cc()->isEmpty());
    EXPECT_TRUE(message->bcc()->isEmpty());
    EXPECT_NE(message->cc(), message->bcc());
}

// Defaults for what is missing, fields as given (unread without a type check), and a fault
// logged once with the record kept as far as it was read: here up to the date.
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
        {"empty",
         {},
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
               {"date", qint64(86400)},
               {"avatar", wrapped}}),
         {"\"\"", "\"m1\"", "\"ada@x.test\"", "\"acc\"", "\"INBOX/Work\"", "\"2 Jan 1970\"",
          "<null>", "<null>", "int:3", "QString:1", "86400000", "4x3", "no to", "no files"},
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

// Time stamps pass through single precision: present-day ones land on multiples of 128 s.
// An avatar that is no image in base64 is no image, without a log line.
TEST(MessageRecord, DateGoesThroughSinglePrecisionAndBadAvatarsAreNoImage) {
    const struct {
        const char* name;
        QVariant value;
        qint64 msecs;
    } rows[] = {
        {"numeric_text", s("1700000001"), 1700000000000},
        {"rounds_up", qint64(1700000065), 1700000128000},
        {"fraction", 1.5, 1500},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto message = ExtensionMessage::initWithDictonary(dict({{"date", row.value}}));
        EXPECT_EQ(message->date().toMSecsSinceEpoch(), row.msecs);
    }
    LogCapture log;
    for (const QString& notAnImage : {s("!!! not base64 !!!"), s("aGVsbG8="), s("")}) {
        SCOPED_TRACE(notAnImage.toStdString());
        EXPECT_TRUE(
            ExtensionMessage::initWithDictonary(dict({{"avatar", notAnImage}}))->image().isNull());
    }
    EXPECT_TRUE(log.lines().isEmpty());
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
    EXPECT_TRUE(a->isEqual(a));

    const auto unset = record(QString(), s("acc"));
    EXPECT_TRUE(unset->isEqual(unset));
    EXPECT_FALSE(unset->isEqual(record(QString(), s("acc"))));
    EXPECT_FALSE(record(s(""), s("acc"))->isEqualToModel(*unset));
    EXPECT_TRUE(record(s(""), s(""))->isEqualToModel(*record(s(""), s(""))));

    EXPECT_EQ(record(s("m"), s("a"), s("Hello"))->description(), s("ExtensionMessage Hello"));
    EXPECT_EQ(record(s("m"), s("a"), QString())->description(), s("ExtensionMessage (null)"));
}

// The share intake adds files from several threads through the record's lock (ThreadSanitizer
// watches this one).
TEST(MessageRecord, AttachmentsGrowSafelyFromManyThreads) {
    const auto message = ExtensionMessage::init();
    const auto list = message->attachments();
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

} // namespace
