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

std::vector<const void*> identities(const QList<Recipient>& found) {
    std::vector<const void*> out;
    for (const Recipient& r : found)
        out.push_back(
            std::visit([](const auto& record) -> const void* { return record.get(); }, r));
    return out;
}

TEST(SuggestionMatcher, GroupsWithMembersFollowTheAddresses) {
    const auto sam = contact(QStringLiteral("sam@x.test"), {}, {}, 1);
    const SuggestionMatcher matcher({sam}, {group(QStringLiteral("Sales"), 0),
                                            group(QStringLiteral("Sailing"), 2),
                                            group(QStringLiteral("Board"), 3)});
    const auto found = matcher.objectsForString(QStringLiteral("Sa"));
    EXPECT_EQ(identities(found.toList()),
              (std::vector<const void*>{sam.get(), matcher.groups()[1].get()}));
    EXPECT_EQ(displayString(toToken(found.at(1))), QStringLiteral("Sailing (2)"));
}

// The engine keeps lower-cased fields side by side; a plain walk that lower-cases every field
// for every query must find exactly the same suggestions in the same order. That walk states
// the rules: the mail anywhere, names, company and nickname at their start, by rank, equal
// ranks in file order, duplicates kept, nothing for an empty query.
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
    EXPECT_TRUE(SuggestionMatcher({contact(QStringLiteral("a@x.test"), {}, {})}, {})
                    .objectsForString(QString())
                    .isEmpty());
}

} // namespace
