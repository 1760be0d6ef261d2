// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"
#include "directory/ExtensionAddress.h"
#include "platform/Log.h"

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

// Defaults for what is missing; a bad field or element is logged, what precedes it is kept.
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

// The last of a key given twice counts, also past the reader's small key table; numbers are text.
TEST(Contacts, OfAKeyGivenTwiceTheLastValueCountsAndNumbersAreText) {
    const velmora::test::TempContainer container;
    const QByteArray twice = "<key>mail</key><string>first@x.test</string>"
                             "<key>mail</key><string>last@x.test</string>"
                             "<key>firstName</key><true/><key>lastName</key><integer>42</integer>";
    QByteArray many;
    for (char key = 'a'; key < 'q'; ++key)
        many += QByteArray("<key>") + key + "</key><string/>";
    container.writeData(QStringLiteral("Contacts/Addresses.plist"),
                        "<plist><array><dict>" + twice + "</dict><dict>" + many + twice +
                            "</dict></array></plist>");
    const auto addresses = ExtensionUtilities::AddressesAndGroups().addresses;
    ASSERT_EQ(addresses.size(), 2);
    for (const auto& a : addresses)
        EXPECT_EQ(a->prettyprint(), QStringLiteral("1 42 <last@x.test>"));
}

TEST(ContactGroup, ReadsMembersAndShowsTheirCount) {
    const QVariantList members{QVariantMap{{"mail", "a@x"}}, QVariantMap{{"mail", "b@x"}},
                               QVariantMap{{"mail", "c@x"}}};
    const auto team = ExtensionGroup::initWithDictonary(
        QVariantMap{{"idx", "7"}, {"name", "Team"}, {"addresses", members}});
    EXPECT_EQ(team->idx(), QStringLiteral("7"));
    EXPECT_EQ(team->prettyprint(), QStringLiteral("Team (3)"));
    EXPECT_EQ(team->addresses().at(2)->mail(), QStringLiteral("c@x"));
    EXPECT_EQ(team->description(), QStringLiteral("ExtensionGroup Team"));

    const auto unnamed = ExtensionGroup::initWithDictonary(QVariantMap{});
    EXPECT_EQ(unnamed->name(), QStringLiteral("No Name"));
    EXPECT_EQ(unnamed->idx(), QStringLiteral(""));

    LogCapture log;
    const auto broken =
        ExtensionGroup::initWithDictonary(QVariantMap{{"name", "B"}, {"addresses", "x"}});
    EXPECT_EQ(broken->name(), QStringLiteral("B"));
    EXPECT_EQ(log.linesStartingWith(u"ExtensionGroup initWithDictonary ").size(), 1);
}

} // namespace
