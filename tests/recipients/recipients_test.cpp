// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "LowerEveryField.h"
#include "TestSupport.h"
#include "recipients/SuggestionMatcher.h"
#include "recipients/TokenEditor.h"
#include "recipients/TokenSplitting.h"

#include <QRandomGenerator>

using namespace velmora;

namespace {

std::shared_ptr<ExtensionAddress> contact(const QString& mail, const QString& first = {},
                                          const QString& last = {}, qint64 rank = 0,
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

QStringList shown(const QList<Token>& tokens) {
    QStringList out;
    for (const Token& t : tokens)
        out.append(isCommitted(t) ? QStringLiteral("[") + displayString(t) + u']' : textOf(t));
    return out;
}

TEST(TokenEditor, EditsAroundTokensAndKeepsSurrogatePairsWhole) {
    TokenEditor editor;
    editor.setTokens({contact("a@x.test"), contact("b@x.test")});
    editor.setCaret(1);
    editor.insertText(QStringLiteral("mid"));
    editor.moveToEnd(false);
    editor.insertText(QStringLiteral("end") + TokenEditor::kTokenCharacter);
    EXPECT_EQ(shown(editor.tokens()), (QStringList{"[<a@x.test>]", "mid", "[<b@x.test>]", "end"}));
    EXPECT_EQ(editor.editedTextToken(), 3);
    EXPECT_EQ(editor.committedTokenAt(4), 2);
    EXPECT_EQ(editor.committedTokenAt(2), -1);

    editor.setCaret(3);
    editor.setCaret(7, true);
    EXPECT_EQ(shown(editor.selectedTokens()), (QStringList{"d", "[<b@x.test>]", "en"}));
    EXPECT_EQ(editor.tokenIndex(), 1); // that of the selection's start, a token as one character

    // Backspace just after a token deletes the whole token; the texts around it become one.
    editor.setCaret(5);
    editor.deleteBackward();
    EXPECT_EQ(shown(editor.tokens()), (QStringList{"[<a@x.test>]", "midend"}));
    EXPECT_EQ(editor.caret(), 4);

    // Replacing a token by several, and by nothing, which lets the texts on both sides meet.
    editor.replaceToken(0, {contact("ann@x.test"), QStringLiteral("rest"), contact("c@x.test")});
    EXPECT_EQ(shown(editor.tokens()),
              (QStringList{"[<ann@x.test>]", "rest", "[<c@x.test>]", "midend"}));
    EXPECT_EQ(editor.caret(), 6);
    editor.replaceToken(2, {});
    EXPECT_EQ(shown(editor.tokens()), (QStringList{"[<ann@x.test>]", "restmidend"}));
    EXPECT_EQ(editor.caret(), 5);

    // A selection across a token and text is replaced by what is typed.
    editor.setCaret(0);
    editor.setCaret(2, true);
    editor.insertText(QStringLiteral("X"));
    EXPECT_EQ(shown(editor.tokens()), QStringList{"Xestmidend"});
    editor.moveToStart(false);
    editor.deleteForward();
    editor.deleteBackward();
    EXPECT_EQ(editor.text(), QStringLiteral("estmidend"));

    // Surrogate pairs move and delete whole.
    editor.setTokens({});
    EXPECT_EQ(editor.tokenIndex(), 0);
    editor.insertText(QStringLiteral("a\U0001F600b"));
    editor.moveLeft(false);
    editor.moveLeft(false);
    EXPECT_EQ(editor.caret(), 1);
    editor.setCaret(2); // inside the pair: snaps before it
    EXPECT_EQ(editor.caret(), 1);
    editor.moveRight(false);
    editor.deleteBackward();
    EXPECT_EQ(editor.text(), QStringLiteral("ab"));
}

// New addresses unranked and unnamed, none for a known contact's exact mail; null records go.
TEST(TokenSplitting, TextBecomesNewAddressesAndRecordsStay) {
    const auto known = contact("known@x.test");
    const auto group = std::make_shared<ExtensionGroup>();
    const AddressLookup lookup = [&](const QString& mail) {
        return mail == known->mail() ? known : nullptr;
    };
    const struct {
        const char* name;
        QList<Token> added;
        QStringList shown; // a new address as its mail, a record passed through as "record"
    } rows[] = {
        {"semicolon", {QStringLiteral("a@x.test;b@y.test")}, {"a@x.test", "b@y.test"}},
        {"comma_before_semicolon",
         {QStringLiteral("a@x.test;b , c@z.test")},
         {"a@x.test;b", "c@z.test"}},
        {"crlf_splits_at_cr",
         {QStringLiteral("a@x.test\r\nb@y.test\r\n")},
         {"a@x.test", "b@y.test"}},
        {"not_validated", {QStringLiteral(" not an address ")}, {"not an address"}},
        {"known_mail_yields_nothing", {QStringLiteral("known@x.test, new@x.test")}, {"new@x.test"}},
        {"records_stay_null_dropped",
         {known, std::shared_ptr<ExtensionAddress>(), group, QStringLiteral("n@x.test")},
         {"record", "record", "n@x.test"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QStringList shown;
        for (const Token& t : recipientsForAddedObjects(row.added, lookup)) {
            if (row.added.contains(t)) {
                shown.append(QStringLiteral("record"));
                continue;
            }
            const auto a = std::get<std::shared_ptr<ExtensionAddress>>(t);
            EXPECT_EQ(a->rank(), 0);
            EXPECT_EQ(a->fullName(), QStringLiteral(""));
            shown.append(a->mail());
        }
        EXPECT_EQ(shown, row.shown);
    }
}

std::shared_ptr<ExtensionGroup> group(const QString& name, int members) {
    auto g = std::make_shared<ExtensionGroup>();
    g->setName(name);
    QList<std::shared_ptr<ExtensionAddress>> list;
    for (int i = 0; i < members; ++i)
        list.append(contact(QStringLiteral("m%1@x.test").arg(i)));
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
    const auto sam = contact("sam@x.test", {}, {}, 1);
    const SuggestionMatcher matcher({sam}, {group(QStringLiteral("Sales"), 0),
                                            group(QStringLiteral("Sailing"), 2),
                                            group(QStringLiteral("Board"), 3)});
    const auto found = matcher.objectsForString(QStringLiteral("Sa"));
    EXPECT_EQ(identities(found.toList()),
              (std::vector<const void*>{sam.get(), matcher.groups()[1].get()}));
    EXPECT_EQ(displayString(toToken(found.at(1))), QStringLiteral("Sailing (2)"));
}

// The plain walk states the rules: the mail anywhere, other fields at their start, by rank.
TEST(SuggestionMatcher, AgreesWithLowerCasingEveryFieldOnRandomBooks) {
    // Few letters, so queries hit often; İ lower-cases to two units; every other book keeps to
    // the Latin-1 letters in front, which the index holds in bytes (š shares a's low byte).
    const QString alphabet = QStringLiteral("aAbB.@ ÉéΣσİš\U0001F600");
    QRandomGenerator rng(7);
    int letters = 0;
    auto word = [&](int maxLength) {
        QString w;
        const int n = int(rng.bounded(maxLength + 1));
        for (int i = 0; i < n; ++i)
            w += alphabet.at(rng.bounded(letters));
        return w;
    };
    for (int round = 0; round < 40; ++round) {
        SuggestionMatcher::Addresses book;
        letters = round % 2 ? 9 : int(alphabet.size());
        for (int i = 0; i < 60; ++i)
            book.append(contact(word(6), word(3), word(3), rng.bounded(4), word(3), word(2)));
        const SuggestionMatcher matcher(book, {});
        letters = int(alphabet.size());
        for (int q = 0; q < 40; ++q) {
            const QString query = word(3);
            ASSERT_EQ(identities(matcher.objectsForString(query).toList()),
                      identities(test::lowerEveryField(book, query)))
                << "query " << query.toStdString();
        }
    }
    EXPECT_TRUE(SuggestionMatcher({contact("a@x.test")}, {}).objectsForString(QString()).isEmpty());
}

} // namespace
