// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "recipients/TokenSplitting.h"

using namespace velmora;

namespace {

// Typed text becomes new, unranked, unnamed addresses, except a known contact's exact mail;
// records pass through as they are and a null record is dropped.
TEST(TokenSplitting, TextBecomesNewAddressesAndRecordsStay) {
    const auto known = std::make_shared<ExtensionAddress>();
    known->setMail(QStringLiteral("known@x.test"));
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
        {"tab", {QStringLiteral("a@x.test\tb@y.test")}, {"a@x.test", "b@y.test"}},
        {"not_validated", {QStringLiteral(" not an address ")}, {"not an address"}},
        {"white_space_only", {QStringLiteral(" \t ")}, {}},
        {"known_mail_yields_nothing", {QStringLiteral("known@x.test, new@x.test")}, {"new@x.test"}},
        {"known_mail_in_other_case", {QStringLiteral("Known@x.test")}, {"Known@x.test"}},
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

} // namespace
