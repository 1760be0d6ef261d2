// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Shown.h"
#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"
#include "directory/ExtensionAddress.h"
#include "platform/Log.h"
#include "platform/PlistTestSupport.h"
#include "platform/PropertyList.h"

#include <QFileInfo>

using namespace velmora;

namespace {

class ContactsFiles : public ::testing::TestWithParam<bool> {
protected:
    void write(const QString& name, const QByteArray& json) {
        if (!velmora::test::writePlist(container.dataFolder() + QStringLiteral("/Contacts/") + name,
                                       json, GetParam()))
            GTEST_SKIP() << "python3 is needed to write property lists";
    }
    velmora::test::TempContainer container;
};

// Defaults for what is missing, the names shown; a field of the wrong type is logged and ends
// the reading of its record, which keeps what came before; an element that is no dictionary is
// logged and listed unfilled.
TEST_P(ContactsFiles, AddressesReadWithDefaultsShowTheirNamesAndKeepWhatPrecedesAFault) {
    write(QStringLiteral("Addresses.plist"), R"([
        {},
        {"mail": "ada@x.test", "firstName": "Ada", "lastName": "", "rank": 12},
        {"mail": "info@acme.test", "company": "Acme", "rank": "12"},
        {"mail": "zed@x.test", "lastName": "Zed", "nickname": "z"},
        {"mail": "g@x.test", "firstName": "Grace", "lastName": "Hopper", "company": "Navy"},
        {"mail": "", "firstName": "Nobody"},
        {"mail": "r@x.test", "firstName": "R", "rank": {"not": "a number"}},
        ["not", "a", "dictionary"]
    ])");
    write(QStringLiteral("Groups.plist"),
          R"([{"idx": "1", "name": "Team", "addresses": [{"mail": "a@x.test"}]}])");
    LogCapture log;
    const AddressesAndGroupsResult book = ExtensionUtilities::AddressesAndGroups();
    // Groups are read but never offered.
    EXPECT_TRUE(book.groups.isEmpty());
    QStringList shownAs;
    for (const auto& a : book.addresses)
        shownAs << a->prettyprint() + QStringLiteral(" | ") + a->fullName() +
                       QStringLiteral(" | ") + QString::number(a->rank());
    EXPECT_EQ(shownAs, (QStringList{"<No Mail> |  | 0", "Ada <ada@x.test> | Ada | 12",
                                    "Acme <info@acme.test> |  | 12", "Zed <zed@x.test> | Zed | 0",
                                    "Grace Hopper <g@x.test> | Grace Hopper | 0",
                                    "Nobody | Nobody | 0", "R <r@x.test> | R | 0", " |  | 0"}));
    EXPECT_TRUE(book.addresses.last()->mail().isNull());
    EXPECT_EQ(book.addresses.at(1)->description(), QStringLiteral("ExtensionAddress ada@x.test"));
    EXPECT_EQ(log.linesStartingWith(u"ExtensionAddress initWithDictonary ").size(), 2);
    EXPECT_EQ(log.lines().size(), 2) << log.lines().join(u'\n').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Formats, ContactsFiles, ::testing::Values(false, true),
                         [](const auto& info) { return info.param ? "binary" : "xml"; });

// A missing folder is made and reads as an empty book; one that cannot be made is logged.
TEST(Contacts, MissingFolderIsCreatedAndOneThatCannotBeIsLogged) {
    const velmora::test::TempContainer container;
    const QString folder = container.dataFolder() + QStringLiteral("/Contacts");
    LogCapture log;
    const AddressesAndGroupsResult book = ExtensionUtilities::AddressesAndGroups();
    EXPECT_TRUE(book.addresses.isEmpty());
    EXPECT_TRUE(book.groups.isEmpty());
    EXPECT_TRUE(QFileInfo(folder).isDir());
    EXPECT_TRUE(log.lines().isEmpty());

    // A dangling link takes the folder's name, so the folder cannot be made.
    ASSERT_TRUE(QDir(folder).removeRecursively());
    ASSERT_TRUE(QFile::link(container.root() + QStringLiteral("/nowhere/x"), folder));
    EXPECT_TRUE(ExtensionUtilities::AddressesAndGroups().addresses.isEmpty());
    EXPECT_EQ(log.linesStartingWith(u"[***ERROR***] AddressesAndGroups ").size(), 1)
        << log.lines().join(u'\n').toStdString();
}

// Every field of a record, null told apart from empty.
QStringList fieldsOf(const ExtensionAddress& a) {
    return velmora::test::shown({a.mail(), a.firstName(), a.lastName(), a.company(), a.nickname()})
           << QString::number(a.rank());
}

// Loads the book at Contacts/Addresses.plist as the composer does, dictionaries read from their
// entries, and again through the whole tree with one QVariantMap per dictionary; the records
// and the lines logged must be the same. Returns the composer's records.
QList<QStringList> loadBothWays(const QString& path) {
    LogCapture fromEntries;
    const auto addresses = ExtensionUtilities::AddressesAndGroups().addresses;
    const QStringList entryLines = fromEntries.lines();

    LogCapture fromTree;
    QList<QStringList> expected;
    for (const QVariant& element : PropertyList::arrayWithContentsOfFile(path).toList())
        expected.append(fieldsOf(*ExtensionAddress::initWithDictonary(element)));
    EXPECT_EQ(fromTree.lines(), entryLines);

    QList<QStringList> records;
    for (const auto& a : addresses)
        records.append(fieldsOf(*a));
    EXPECT_EQ(records, expected);
    return records;
}

TEST(Contacts, OddXmlBookReadsAsItsTree) {
    const velmora::test::TempContainer container;
    const QString path = container.writeData(QStringLiteral("Contacts/Addresses.plist"), R"(
<plist><array>
  <dict><key>mail</key><string>first@x.test</string><key>rank</key><string> 12abc</string>
        <key>mail</key><string>last@x.test</string></dict>
  <dict><key>mail</key><integer>42</integer><key>firstName</key><true/>
        <key>lastName</key><real>1.5</real><key>nickname</key><string></string>
        <key>rank</key><real>7.9</real></dict>
  <dict><key>mail</key><string>c@x.test</string><key>firstName</key><string>C</string>
        <key>lastName</key><dict/><key>company</key><string>never read</string></dict>
  <dict><key>company</key><data>AA==</data><key>rank</key><integer>5</integer></dict>
  <dict><key>rank</key><array/><key>nickname</key><string>n</string></dict>
  <dict><key>nickname</key><date>2024-02-29T23:59:58Z</date><key>rank</key><false/></dict>
  <string>not a dictionary</string>
  <array><dict/></array>
  <dict/>
  <dict><key>a</key><string/><key>b</key><string/><key>c</key><string/><key>d</key><string/>
        <key>e</key><string/><key>f</key><string/><key>g</key><string/><key>h</key><string/>
        <key>i</key><string/><key>j</key><string/><key>k</key><string/><key>l</key><string/>
        <key>mail</key><string>many@x.test</string><key>rank</key><string>-0x10</string>
        <key>mail</key><string>more@x.test</string><key>company</key><dict/>
        <key>rank</key><string>+3</string></dict>
</array></plist>)");
    const QList<QStringList> records = loadBothWays(path);
    ASSERT_EQ(records.size(), 10);
    // Spot checks of the rules both ways follow: the last duplicate wins, numbers and booleans
    // are text, a container stops the record, a non-dictionary leaves it unfilled.
    EXPECT_EQ(records[0].first(), QStringLiteral("\"last@x.test\""));
    EXPECT_EQ(records[0].last(), QStringLiteral("12"));
    EXPECT_EQ(records[1].mid(0, 2), (QStringList{"\"42\"", "\"1\""}));
    EXPECT_EQ(records[1].last(), QStringLiteral("7"));
    EXPECT_EQ(records[2].mid(2, 2), (QStringList{"<null>", "<null>"}));
    EXPECT_EQ(records[6].first(), QStringLiteral("<null>"));
    EXPECT_EQ(records[9].first(), QStringLiteral("\"more@x.test\""));
    EXPECT_EQ(records[9][3], QStringLiteral("<null>"));
}

TEST(Contacts, OddBinaryBookReadsAsItsTree) {
    using namespace velmora::test::bplist;
    const velmora::test::TempContainer container;
    // Keys and values are shared between dictionaries as writers share them; element 1 is
    // referred to twice, so it is kept whole; element 5 is a UID, a dictionary of its own kind.
    const QByteArray book = file({
        array({1, 2, 3, 4, 1, 5, 6, 7, 21}), // 0
        dict({10, 11, 10}, {12, 13, 14}),    // 1: duplicate "mail", rank as text
        dict({15, 10, 10}, {19, 12, 14}),    // 2: a dictionary as the first name
        dict({16, 17, 11}, {18, 18, 20}),    // 3: numbers and booleans as text
        dict({10, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 11, 10},
             {12, 18, 18, 18, 18, 18, 18, 18, 18, 18, 18, 18, 18, 18, 18, 18, 18, 20, 14}),
        bytes({0x81, 0x01, 0x02}),                // 5: a UID
        ascii("not a dictionary"),                // 6
        dict({}, {}),                             // 7
        bytes({0x09}),                            // 8: true
        ascii("x"),                               // 9
        ascii("mail"),                            // 10
        ascii("rank"),                            // 11
        ascii("a@x.test"),                        // 12
        ascii(" 12abc"),                          // 13
        utf16(QStringLiteral("zo\u00eb@x.test")), // 14
        ascii("firstName"),                       // 15
        ascii("lastName"),                        // 16
        ascii("nickname"),                        // 17
        real(7.9),                                // 18
        dict({}, {}),                             // 19
        bytes({0x08}),                            // 20: false
        dict({16, 11}, {8, 8}),                   // 21
    });
    const QString path = container.writeData(QStringLiteral("Contacts/Addresses.plist"), book);
    const QList<QStringList> records = loadBothWays(path);
    ASSERT_EQ(records.size(), 9);
    const QString zoe = QStringLiteral("\"zo\u00eb@x.test\"");
    EXPECT_EQ(records[0].first(), zoe);
    EXPECT_EQ(records[0], records[4]);
    EXPECT_EQ(records[1].mid(0, 2), (QStringList{zoe, "<null>"}));
    EXPECT_EQ(records[2].mid(2, 1), (QStringList{"\"7.9\""}));
    EXPECT_EQ(records[3].last(), QStringLiteral("0"));
    EXPECT_EQ(records[5].first(), QStringLiteral("\"No Mail\""));
    EXPECT_EQ(records[6].first(), QStringLiteral("<null>"));
    EXPECT_EQ(records[8].mid(2, 1), (QStringList{"\"1\""}));
    EXPECT_EQ(records[8].last(), QStringLiteral("1"));
}

TEST(ContactGroup, ReadsMembersAndShowsTheirCount) {
    auto dict = [](const QStringList& mails) {
        QVariantList members;
        for (const QString& m : mails)
            members.append(QVariantMap{{QStringLiteral("mail"), m}});
        return QVariantMap{{QStringLiteral("idx"), QStringLiteral("7")},
                           {QStringLiteral("name"), QStringLiteral("Team")},
                           {QStringLiteral("addresses"), members}};
    };
    const auto team = ExtensionGroup::initWithDictonary(
        dict({QStringLiteral("a@x"), QStringLiteral("b@x"), QStringLiteral("c@x")}));
    EXPECT_EQ(team->idx(), QStringLiteral("7"));
    EXPECT_EQ(team->prettyprint(), QStringLiteral("Team (3)"));
    EXPECT_EQ(team->addresses().at(2)->mail(), QStringLiteral("c@x"));
    EXPECT_EQ(team->description(), QStringLiteral("ExtensionGroup Team"));

    const auto unnamed = ExtensionGroup::initWithDictonary(QVariantMap{});
    EXPECT_EQ(unnamed->name(), QStringLiteral("No Name"));
    EXPECT_EQ(unnamed->idx(), QStringLiteral(""));

    LogCapture log;
    const auto broken = ExtensionGroup::initWithDictonary(
        QVariantMap{{QStringLiteral("name"), QStringLiteral("B")},
                    {QStringLiteral("addresses"), QStringLiteral("x")}});
    EXPECT_EQ(broken->name(), QStringLiteral("B"));
    EXPECT_EQ(log.linesStartingWith(u"ExtensionGroup initWithDictonary ").size(), 1);
}

} // namespace
