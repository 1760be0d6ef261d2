// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "PlistTestSupport.h"
#include "TestSupport.h"
#include "platform/Log.h"
#include "platform/PropertyList.h"

#include <QVariantList>

using namespace velmora;

namespace {

QVariantList visitAll(const QString& path, bool* ok) {
    QVariantList seen;
    *ok = PropertyList::forEachArrayElementInFile(path, [&](const QVariant& e) { seen.append(e); });
    return seen;
}

TEST(PropertyListFile, StreamsTheRootArrayInOrderAndAgreesWithTheWholeRead) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("a.plist"));
    velmora::test::writeFile(path, "<plist><array><dict><key>n</key><integer>1</integer></dict>"
                                   "<string>two</string><array/></array></plist>");
    bool ok = false;
    const QVariantList seen = visitAll(path, &ok);
    EXPECT_TRUE(ok);
    ASSERT_EQ(seen.size(), 3);
    EXPECT_EQ(seen[0].toMap().value(QStringLiteral("n")).toLongLong(), 1);
    EXPECT_EQ(seen[1].toString(), QStringLiteral("two"));
    EXPECT_EQ(QVariant(seen), PropertyList::arrayWithContentsOfFile(path));
}

// A file that is no array is an expected case and is not logged.
TEST(PropertyListFile, FaultAfterSomeElementsOrAnotherRootIsNoArray) {
    QTemporaryDir dir;
    const LogCapture log;
    const QString broken = dir.filePath(QStringLiteral("broken.plist"));
    velmora::test::writeFile(broken, "<plist><array><string>a</string><string>b</string>"
                                     "<integer>x</integer></array></plist>");
    bool ok = true;
    EXPECT_EQ(visitAll(broken, &ok).size(), 2) << "the elements before the fault were visited";
    EXPECT_FALSE(ok);
    EXPECT_TRUE(PropertyList::arrayWithContentsOfFile(broken).isNull());

    const QString dict = dir.filePath(QStringLiteral("dict.plist"));
    velmora::test::writeFile(dict, "<plist><dict/></plist>");
    EXPECT_TRUE(visitAll(dict, &ok).isEmpty());
    EXPECT_FALSE(ok);
    EXPECT_TRUE(PropertyList::arrayWithContentsOfFile(dict).isNull());
    EXPECT_TRUE(visitAll(dir.filePath(QStringLiteral("missing.plist")), &ok).isEmpty());
    EXPECT_FALSE(ok);
    EXPECT_TRUE(PropertyList::arrayWithContentsOfFile(dir.filePath(QStringLiteral("missing.plist")))
                    .isNull());
    // The whole read of a file keeps to the input limit too.
    const QString binary = dir.filePath(QStringLiteral("binary.plist"));
    velmora::test::writeFile(
        binary, velmora::test::bplist::file({velmora::test::bplist::array({1}),
                                             velmora::test::bplist::ascii("a@example.org")}));
    EXPECT_EQ(PropertyList::arrayWithContentsOfFile(binary), QVariantList{"a@example.org"});
    PropertyList::Limits limits;
    limits.maxInputBytes = 20;
    EXPECT_TRUE(PropertyList::arrayWithContentsOfFile(binary, limits).isNull());
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join(u'\n').toStdString();
    // Something other than a regular file in the file's place is refused unread, and logged.
    EXPECT_TRUE(PropertyList::arrayWithContentsOfFile(dir.path()).isNull());
    EXPECT_EQ(log.lines().size(), 1);
}

TEST(PropertyListFile, BinaryElementsThatShareObjectsAreEachComplete) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("shared.plist"));
    // plistlib writes equal strings once, so both dictionaries refer to the same key and value
    // objects; the second element must not lose them when the first is released.
    if (!velmora::test::writePlist(
            path, R"([{"mail": "same@x.test"}, {"mail": "same@x.test"}, "same@x.test"])", true))
        GTEST_SKIP() << "python3 is needed to write property lists";
    bool ok = false;
    const QVariantList seen = visitAll(path, &ok);
    ASSERT_TRUE(ok);
    ASSERT_EQ(seen.size(), 3);
    EXPECT_EQ(seen[0], seen[1]);
    EXPECT_EQ(seen[1].toMap().value(QStringLiteral("mail")), seen[2]);
}

// Inputs on which the element-by-element reader once disagreed with the whole read.
TEST(PropertyListFile, StreamingAgreesWithTheWholeReadOnOddInputs) {
    QTemporaryDir dir;
    // A NUL inside the markup.
    const QString nul = dir.filePath(QStringLiteral("nul.plist"));
    velmora::test::writeFile(nul, QByteArray("<array/\0>", 9));
    bool ok = false;
    const QVariantList seen = visitAll(nul, &ok);
    const QVariant whole = PropertyList::arrayWithContentsOfFile(nul);
    EXPECT_EQ(ok, whole.isValid());
    EXPECT_EQ(QVariant(seen), ok ? whole : QVariant(QVariantList()));

    // A binary root that is a set of two objects (true and "a"): a list either way.
    const QString set = dir.filePath(QStringLiteral("set.plist"));
    velmora::test::writeFile(
        set, QByteArray::fromHex("62706c6973743030c20102095161080b0c0000000000000101000000000000000"
                                 "30000000000000000000000000000000e"));
    const QVariant wholeSet = PropertyList::arrayWithContentsOfFile(set);
    ASSERT_EQ(wholeSet.typeId(), QMetaType::QVariantList);
    EXPECT_EQ(QVariant(visitAll(set, &ok)), wholeSet);
    EXPECT_TRUE(ok);
}

// Writes down what a typed reader is handed: dictionaries as their entries, the rest as trees.
class Recorder final : public PropertyListElementVisitor {
public:
    void dictionary(std::span<const PropertyListEntry> entries) override {
        QStringList pairs;
        for (const PropertyListEntry& e : entries)
            pairs.append(*e.key + u'=' + e.value->toString());
        seen.append(QStringLiteral("entries ") + pairs.join(u','));
    }
    void value(const QVariant& element) override {
        seen.append(QStringLiteral("value ") + QString::fromLatin1(element.typeName()));
    }
    QStringList seen;
};

TEST(PropertyListFile, DictionariesComeAsTheirEntriesInFileOrder) {
    QTemporaryDir dir;
    const QString xml = dir.filePath(QStringLiteral("a.plist"));
    velmora::test::writeFile(xml,
                             "<plist><array><dict><key>b</key><integer>1</integer>"
                             "<key>a</key><string>x</string><key>b</key><true/></dict>"
                             "<string>s</string><dict/><array><dict/></array></array></plist>");
    Recorder recorder;
    EXPECT_TRUE(PropertyList::forEachArrayElementInFile(xml, recorder));
    EXPECT_EQ(recorder.seen, (QStringList{"entries b=1,a=x,b=true", "value QString", "entries ",
                                          "value QVariantList"}));

    // A dictionary that two elements refer to is kept whole for both; a UID is a value too.
    using namespace velmora::test::bplist;
    const QString binary = dir.filePath(QStringLiteral("b.plist"));
    velmora::test::writeFile(binary, file({array({1, 2, 1, 3}), dict({4}, {5}), dict({4}, {5}),
                                           bytes({0x81, 0x01, 0x02}), ascii("k"), integer(7)}));
    Recorder binaryRecorder;
    EXPECT_TRUE(PropertyList::forEachArrayElementInFile(binary, binaryRecorder));
    EXPECT_EQ(binaryRecorder.seen, (QStringList{"value QVariantMap", "entries k=7",
                                                "value QVariantMap", "value QVariantMap"}));

    // A fault after some elements: those were handed over, and the file reads as no array.
    const QString broken = dir.filePath(QStringLiteral("broken.plist"));
    velmora::test::writeFile(broken,
                             "<plist><array><dict/><dict><key>k</key></dict></array></plist>");
    Recorder brokenRecorder;
    EXPECT_FALSE(PropertyList::forEachArrayElementInFile(broken, brokenRecorder));
    EXPECT_EQ(brokenRecorder.seen, QStringList{"entries "});
}

} // namespace
