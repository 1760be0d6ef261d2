// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "message/ExtensionMessage.h"
#include "platform/Log.h"

#include <QBuffer>

#include <thread>
#include <vector>

using namespace velmora;

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

TEST(MessageRecord, InitGivesEmptyBodiesAndFourDistinctLists) {
    const auto message = ExtensionMessage::init();
    EXPECT_EQ(message->htmlBody(), s(""));
    EXPECT_FALSE(message->htmlBody().isNull());
    EXPECT_FALSE(message->plainBody().isNull());
    ASSERT_TRUE(message->to() && message->cc() && message->bcc() && message->attachments());
    message->to()->append(std::make_shared<ExtensionAddress>());
    EXPECT_EQ(message->to()->size(), 1);
    EXPECT_TRUE(message->cc()->isEmpty());
    EXPECT_TRUE(message->bcc()->isEmpty());
    EXPECT_NE(message->cc(), message->bcc());
    EXPECT_TRUE(message->subject().isNull());
    EXPECT_TRUE(message->toString().isNull());
    EXPECT_FALSE(message->date().isValid());
    EXPECT_FALSE(message->unread().isValid());
}

TEST(MessageRecord, EmptyDictionaryGivesTheDefaults) {
    LogCapture log;
    const auto message = ExtensionMessage::initWithDictonary(QVariantMap());
    EXPECT_EQ(message->subject(), s("No subject"));
    for (const QString& field :
         {message->messageId(), message->from(), message->account(), message->folderPath()}) {
        EXPECT_EQ(field, s(""));
        EXPECT_FALSE(field.isNull());
    }
    EXPECT_EQ(message->folderStandardId(), QVariant(0));
    EXPECT_EQ(message->unread(), QVariant(0));
    EXPECT_EQ(message->date().toMSecsSinceEpoch(), 0);
    EXPECT_EQ(message->dateString(), s("1 Jan 1970"));
    EXPECT_TRUE(message->image().isNull());
    EXPECT_TRUE(message->htmlBody().isNull());
    EXPECT_TRUE(message->plainBody().isNull());
    EXPECT_FALSE(message->to() || message->attachments());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(MessageRecord, ReadsFieldsAsGiven) {
    const auto message = ExtensionMessage::initWithDictonary(dict({
        {"subject", s("")},
        {"messageId", s("m1")},
        {"from", s("ada@x.test")},
        {"account", s("acc")},
        {"folder", s("INBOX/Work")},
        {"folderStid", 3},
        {"isUnread", s("1")},
    }));
    // A present empty subject stays empty.
    EXPECT_EQ(message->subject(), s(""));
    EXPECT_FALSE(message->subject().isNull());
    EXPECT_EQ(message->messageId(), s("m1"));
    EXPECT_EQ(message->folderPath(), s("INBOX/Work"));
    EXPECT_EQ(message->folderStandardId(), QVariant(3));
    // Stored as given, without a type check.
    EXPECT_EQ(message->unread(), QVariant(s("1")));
}

// Time stamps pass through single precision: present-day ones land on multiples of 128 s.
TEST(MessageRecord, DateGoesThroughSinglePrecision) {
    const struct {
        const char* name;
        QVariant value;
        qint64 msecs;
    } rows[] = {
        {"number", qint64(1700000000), 1700000000000},
        {"numeric_text", s("1700000000"), 1700000000000},
        {"rounds_down", qint64(1700000001), 1700000000000},
        {"rounds_up", qint64(1700000065), 1700000128000},
        {"fraction", 1.5, 1500},
        {"negative", -86400.0, -86400000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto message = ExtensionMessage::initWithDictonary(dict({{"date", row.value}}));
        EXPECT_EQ(message->date().toMSecsSinceEpoch(), row.msecs);
    }
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

TEST(MessageRecord, AvatarIsLenientBase64OfAnImage) {
    QString wrapped = base64Png(4, 3);
    for (qsizetype at = wrapped.size() - 10; at > 0; at -= 10)
        wrapped.insert(at, at % 20 == 0 ? s("\r\n") : s(" \n"));
    LogCapture log;
    const QImage image = ExtensionMessage::initWithDictonary(dict({{"avatar", wrapped}}))->image();
    EXPECT_EQ(image.size(), QSize(4, 3));

    for (const QString& notAnImage : {s("!!! not base64 !!!"), s("aGVsbG8="), s("a"), s("")}) {
        SCOPED_TRACE(notAnImage.toStdString());
        EXPECT_TRUE(
            ExtensionMessage::initWithDictonary(dict({{"avatar", notAnImage}}))->image().isNull());
    }
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(MessageRecord, FaultIsLoggedAndTheRecordKeptAsFarAsRead) {
    LogCapture log;
    const auto message = ExtensionMessage::initWithDictonary(dict({
        {"subject", s("Hi")},
        {"messageId", s("m1")},
        {"from", s("f@x.test")},
        {"account", s("acc")},
        {"folder", s("INBOX")},
        {"isUnread", 1},
        {"date", dict({{"not", s("a number")}})},
        {"avatar", base64Png(2, 2)},
    }));
    EXPECT_EQ(log.linesStartingWith(u"ExtensionMessage initWithDictonary ").size(), 1);
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_EQ(message->subject(), s("Hi"));
    EXPECT_EQ(message->account(), s("acc"));
    EXPECT_EQ(message->folderPath(), s("INBOX"));
    EXPECT_EQ(message->unread(), QVariant(1));
    EXPECT_EQ(message->folderStandardId(), QVariant(0));
    EXPECT_FALSE(message->date().isValid());
    EXPECT_TRUE(message->dateString().isNull());
    EXPECT_TRUE(message->image().isNull());

    // Not a dictionary at all: nothing is read.
    log.clear();
    const auto nothing = ExtensionMessage::initWithDictonary(QVariantList{s("x")});
    EXPECT_EQ(log.linesStartingWith(u"ExtensionMessage initWithDictonary ").size(), 1);
    EXPECT_TRUE(nothing->subject().isNull());
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
}

TEST(MessageRecord, DescriptionShowsTheSubject) {
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
