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

TEST_P(ContactsFiles, AddressesReadWithDefaultsAndShowTheirNames) {
    write(QStringLiteral("Addresses.plist"), R"([
        {},
        {"mail": "ada@x.test", "firstName": "Ada", "lastName": "", "rank": 12},
        {"mail": "info@acme.test", "company": "Acme", "rank": "12"},
        {"mail": "zed@x.test", "lastName": "Zed", "nickname": "z"},
        {"mail": "g@x.test", "firstName": "Grace", "lastName": "Hopper", "company": "Navy"},
        {"mail": "", "firstName": "Nobody"}
    ])");
    write(QStringLiteral("Groups.plist"),
          R"([{"idx": "1", "name": "Team", "addresses": [{"mail": "a@x.test"}]}])");
    LogCapture log;
    const AddressesAndGroupsResult book = ExtensionUtilities::AddressesAndGroups();
    ASSERT_EQ(book.addresses.size(), 6);
    // Groups are read but never offered.
    EXPECT_TRUE(book.groups.isEmpty());

    const auto& a = book.addresses;
    EXPECT_EQ(a[0]->mail(), QStringLiteral("No Mail"));
    EXPECT_EQ(a[0]->firstName(), QStringLiteral(""));
    EXPECT_EQ(a[0]->rank(), 0);
    EXPECT_EQ(a[0]->prettyprint(), QStringLiteral("<No Mail>"));
    EXPECT_EQ(a[1]->fullName(), QStringLiteral("Ada"));
    EXPECT_EQ(a[1]->rank(), 12);
    EXPECT_EQ(a[1]->prettyprint(), QStringLiteral("Ada <ada@x.test>"));
    EXPECT_EQ(a[2]->rank(), 12);
    EXPECT_EQ(a[2]->prettyprint(), QStringLiteral("Acme <info@acme.test>"));
    EXPECT_EQ(a[3]->fullName(), QStringLiteral("Zed"));
    EXPECT_EQ(a[3]->nickname(), QStringLiteral("z"));
    EXPECT_EQ(a[4]->prettyprint(), QStringLiteral("Grace Hopper <g@x.test>"));
    EXPECT_EQ(a[5]->prettyprint(), QStringLiteral("Nobody"));
    EXPECT_EQ(a[1]->description(), QStringLiteral("ExtensionAddress ada@x.test"));
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join(u'\n').toStdString();
}

TEST_P(ContactsFiles, MalformedAddressIsLoggedAndKeptPartlyFilled) {
    write(QStringLiteral("Addresses.plist"), R"([
        {"mail": "r@x.test", "firstName": "R", "rank": {"not": "a number"}},
        ["not", "a", "dictionary"],
        {"mail": "ok@x.test"}
    ])");
    LogCapture log;
    const auto addresses = ExtensionUtilities::AddressesAndGroups().addresses;
    ASSERT_EQ(addresses.size(), 3);
    EXPECT_EQ(addresses[0]->mail(), QStringLiteral("r@x.test"));
    EXPECT_EQ(addresses[0]->rank(), 0);
    EXPECT_TRUE(addresses[1]->mail().isNull());
    EXPECT_EQ(addresses[2]->mail(), QStringLiteral("ok@x.test"));
    EXPECT_EQ(log.linesStartingWith(u"ExtensionAddress initWithDictonary ").size(), 2);
}

INSTANTIATE_TEST_SUITE_P(Formats, ContactsFiles, ::testing::Values(false, true),
                         [](const auto& info) { return info.param ? "binary" : "xml"; });

TEST(Contacts, MissingFolderIsCreatedAndReadsAsEmpty) {
    const velmora::test::TempContainer container;
    LogCapture log;
    const AddressesAndGroupsResult book = ExtensionUtilities::AddressesAndGroups();
    EXPECT_TRUE(book.addresses.isEmpty());
    EXPECT_TRUE(book.groups.isEmpty());
    EXPECT_TRUE(QFileInfo(container.dataFolder() + QStringLiteral("/Contacts")).isDir());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(Contacts, FolderThatCannotBeCreatedIsLogged) {
    const velmora::test::TempContainer container;
    QDir().mkpath(container.dataFolder());
    // A dangling link takes the folder's name, so the folder cannot be made.
    ASSERT_TRUE(QFile::link(container.root() + QStringLiteral("/nowhere/x"),
                            container.dataFolder() + QStringLiteral("/Contacts")));
    LogCapture log;
    EXPECT_TRUE(ExtensionUtilities::AddressesAndGroups().addresses.isEmpty());
    EXPECT_EQ(log.linesStartingWith(u"[***ERROR***] AddressesAndGroups ").size(), 1)
        << log.lines().join(u'\n').toStdString();
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
    EXPECT_EQ(ExtensionGroup::initWithDictonary(dict({}))->prettyprint(), QStringLiteral("Team"));

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
