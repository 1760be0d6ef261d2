// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "LowerEveryField.h"
#include "TestSupport.h"
#include "recipients/SuggestionMatcher.h"

#include <QRandomGenerator>

using namespace velmora;

namespace {

std::shared_ptr<ExtensionAddress> contact(const QString& mail, const QString& first,
                                          const QString& last, qint64 rank = 0,
                                          const QString& company = {},
                                          const QString& nickname = {}) {
    auto a = std::make_shared<ExtensionAddress>();
    a->setMail(mail);
    a->setFirstName(first);
    a->setLastName(last);
    a->setCompany(company);
    a->setNickname(nickname);
    a->setRank(rank);
    return a;
}

std::shared_ptr<ExtensionGroup> group(const QString& name, int members) {
    auto g = std::make_shared<ExtensionGroup>();
    g->setName(name);
    QList<std::shared_ptr<ExtensionAddress>> list;
    for (int i = 0; i < members; ++i)
        list.append(contact(QStringLiteral("m%1@x.test").arg(i), {}, {}));
    g->setAddresses(list);
    return g;
}

QStringList names(const Suggestions& found) {
    QStringList out;
    for (qsizetype row = 0; row < found.size(); ++row)
        out.append(displayString(toToken(found.at(row))));
    return out;
}

std::vector<const void*> identities(const QList<Recipient>& found) {
    std::vector<const void*> out;
    for (const Recipient& r : found)
        out.push_back(
            std::visit([](const auto& record) -> const void* { return record.get(); }, r));
    return out;
}

TEST(SuggestionMatcher, MailAnywhereNamesAtTheirStartByRank) {
    const SuggestionMatcher matcher(
        {contact(QStringLiteral("jo@x.test"), QStringLiteral("Jo"), QStringLiteral("Smith"), 2),
         contact(QStringLiteral("asmith@y.test"), QStringLiteral("Al"), QStringLiteral("Ray"), 9),
         contact(QStringLiteral("k@x.test"), QStringLiteral("Keith"), QStringLiteral("Faith"), 50),
         contact(QStringLiteral("mk@x.test"), QStringLiteral("Mira"), QStringLiteral("Kent"), 1),
         contact(QStringLiteral("z@x.test"), {}, {}, 0, QStringLiteral("Smirnoff Ltd"),
                 QStringLiteral("zed"))},
        {});
    const QStringList smi = {QStringLiteral("Al Ray <asmith@y.test>"),
                             QStringLiteral("Jo Smith <jo@x.test>"),
                             QStringLiteral("Smirnoff Ltd <z@x.test>")};
    EXPECT_EQ(names(matcher.objectsForString(QStringLiteral("smi"))), smi);
    EXPECT_EQ(names(matcher.objectsForString(QStringLiteral("SMI"))), smi);
    // "ith" is inside a mail, but names must start with the query.
    EXPECT_EQ(names(matcher.objectsForString(QStringLiteral("ith"))),
              QStringList{QStringLiteral("Al Ray <asmith@y.test>")});
    EXPECT_EQ(names(matcher.objectsForString(QStringLiteral("mira k"))),
              QStringList{QStringLiteral("Mira Kent <mk@x.test>")});
    EXPECT_EQ(names(matcher.objectsForString(QStringLiteral("ZE"))),
              QStringList{QStringLiteral("Smirnoff Ltd <z@x.test>")});
    // A query spanning the end of one mail and the start of the next matches neither.
    EXPECT_TRUE(matcher.objectsForString(QStringLiteral("testk@")).isEmpty());
    EXPECT_TRUE(matcher.objectsForString(QString()).isEmpty());
    EXPECT_TRUE(matcher.objectsForString(QStringLiteral("")).isEmpty());
}

TEST(SuggestionMatcher, EqualRanksKeepFileOrderAndDuplicatesStay) {
    const SuggestionMatcher matcher(
        {contact(QStringLiteral("b1@x.test"), {}, {}, 0),
         contact(QStringLiteral("b2@x.test"), {}, {}, 5),
         contact(QStringLiteral("b3@x.test"), {}, {}, 0),
         contact(QStringLiteral("b4@x.test"), {}, {}, 5),
         contact(QStringLiteral("b1@x.test"), QStringLiteral("Again"), {}, 0)},
        {});
    EXPECT_EQ(names(matcher.objectsForString(QStringLiteral("b"))),
              (QStringList{QStringLiteral("<b2@x.test>"), QStringLiteral("<b4@x.test>"),
                           QStringLiteral("<b1@x.test>"), QStringLiteral("<b3@x.test>"),
                           QStringLiteral("Again <b1@x.test>")}));
}

TEST(SuggestionMatcher, GroupsWithMembersFollowTheAddresses) {
    const SuggestionMatcher matcher({contact(QStringLiteral("sam@x.test"), {}, {}, 1)},
                                    {group(QStringLiteral("Sales"), 0),
                                     group(QStringLiteral("Sailing"), 2),
                                     group(QStringLiteral("Board"), 3)});
    const auto found = matcher.objectsForString(QStringLiteral("Sa"));
    EXPECT_EQ(names(found),
              (QStringList{QStringLiteral("<sam@x.test>"), QStringLiteral("Sailing (2)")}));
    EXPECT_EQ(std::get<std::shared_ptr<ExtensionGroup>>(found.at(1)), matcher.groups()[1]);
    // A copy shares the rows, and the records are the contacts themselves.
    const Suggestions copy = found;
    EXPECT_EQ(std::get<std::shared_ptr<ExtensionAddress>>(copy.toList().at(0)),
              matcher.addresses()[0]);
}

TEST(SuggestionMatcher, AddressForMailIsExact) {
    const auto first = contact(QStringLiteral("Ada@X.test"), QStringLiteral("Ada"), {});
    const SuggestionMatcher matcher(
        {first, contact(QStringLiteral("Ada@X.test"), QStringLiteral("Second"), {})}, {});
    EXPECT_EQ(matcher.addressForMail(QStringLiteral("Ada@X.test")), first);
    EXPECT_EQ(matcher.addressForMail(QStringLiteral("ada@x.test")), nullptr);
    EXPECT_EQ(matcher.addressForMail(QStringLiteral(" Ada@X.test")), nullptr);
}

// The engine keeps lower-cased fields side by side; a plain walk that lower-cases every field
// for every query must find exactly the same suggestions in the same order.
TEST(SuggestionMatcher, AgreesWithLowerCasingEveryFieldOnRandomBooks) {
    // Few letters, mixed case and non-ASCII with case (É, Σ, İ whose lower case is two units),
    // so that queries hit often, also across the boundaries between mails.
    const QString alphabet = QStringLiteral("aAbB.@ ÉéΣσİ\U0001F600");
    QRandomGenerator rng(7);
    auto word = [&](int maxLength) {
        QString w;
        const int n = int(rng.bounded(maxLength + 1));
        for (int i = 0; i < n; ++i)
            w += alphabet.at(rng.bounded(int(alphabet.size())));
        return w;
    };
    for (int round = 0; round < 20; ++round) {
        SuggestionMatcher::Addresses book;
        for (int i = 0; i < 60; ++i)
            book.append(contact(word(6), word(3), word(3), rng.bounded(4), word(3), word(2)));
        const SuggestionMatcher matcher(book, {});
        for (int q = 0; q < 40; ++q) {
            const QString query = word(3);
            ASSERT_EQ(identities(matcher.objectsForString(query).toList()),
                      identities(test::lowerEveryField(book, query)))
                << "query " << query.toStdString();
        }
    }
}

} // namespace
