// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "PlistTestSupport.h"
#include "TestSupport.h"
#include "platform/Log.h"
#include "platform/PropertyList.h"

using namespace velmora;
using namespace velmora::test::bplist;

namespace {

// Elements before a fault are handed over; the whole read gives the same list, or none on a fault.
TEST(PropertyListFile, ElementsComeInOrderAndAgreeWithTheWholeRead) {
    const QVariantMap same{{"k", "same"}};
    const struct {
        const char* name;
        QByteArray content;
        bool ok;
        QVariantList elements;
        PropertyList::Limits limits = {};
    } rows[] = {
        {"xml",
         "<plist><array><dict><key>b</key><integer>1</integer><key>a</key><string>x</string>"
         "<key>b</key><true/></dict><string>s</string><dict/><array><dict/></array></array></"
         "plist>",
         true,
         {QVariantMap{{"a", "x"}, {"b", true}}, "s", QVariantMap{}, QVariantList{QVariantMap{}}}},
        {"xml_fault_after_two_elements",
         "<plist><array><dict/><string>b</string><dict><key>k</key></dict></array></plist>",
         false,
         {QVariantMap{}, "b"}},
        // Dictionaries and a string that share their key and value objects, each complete however
        // the ones before were released; a UID is a value too.
        {"binary_shared_objects",
         file({array({1, 2, 3, 3, 4, 6}), dict({5}, {6}), dict({5}, {6}), dict({5}, {6}),
               bytes({0x81, 0x01, 0x02}), ascii("k"), ascii("same")}),
         true,
         {same, same, same, same, QVariantMap{{"CF$UID", qint64(258)}}, "same"}},
        {"binary_over_the_input_limit",
         file({array({1}), ascii("a@example.org")}),
         false,
         {},
         {.maxInputBytes = 20}},
        // Inputs on which the element-by-element readers once disagreed with the whole read.
        {"nul_inside_the_markup", QByteArray("<array/\0>", 9), true, {}},
        {"binary_root_set",
         file({array({1, 2}, 0xC), bytes({0x09}), ascii("a")}),
         true,
         {true, "a"}},
    };
    QTemporaryDir dir;
    const LogCapture log;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QString path = dir.filePath(QString::fromLatin1(row.name));
        velmora::test::writeFile(path, row.content);
        QVariantList seen;
        EXPECT_EQ(PropertyList::forEachArrayElementInFile(
                      path, [&](const QVariant& e) { seen.append(e); }, row.limits),
                  row.ok);
        EXPECT_EQ(seen, row.elements);
        EXPECT_EQ(PropertyList::arrayWithContentsOfFile(path, row.limits),
                  row.ok ? QVariant(row.elements) : QVariant());
    }
    // A malformed file is expected, not logged; a folder in the file's place is refused, logged.
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join(u'\n').toStdString();
    EXPECT_TRUE(PropertyList::arrayWithContentsOfFile(dir.path()).isNull());
    EXPECT_EQ(log.lines().size(), 1);
}

} // namespace
