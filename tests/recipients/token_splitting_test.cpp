// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "recipients/TokenSplitting.h"

using namespace velmora;

namespace {

struct SplitCase {
    const char* name;
    QString text;
    QStringList mails;
};

class TokenSplitting : public ::testing::TestWithParam<SplitCase> {};

TEST_P(TokenSplitting, TextBecomesNewAddresses) {
    const auto known = std::make_shared<ExtensionAddress>();
    known->setMail(QStringLiteral("known@x.test"));
    const AddressLookup lookup = [&](const QString& mail) {
        return mail == known->mail() ? known : nullptr;
    };
    QStringList mails;
    for (const Token& t : recipientsForAddedObjects({GetParam().text}, lookup)) {
        const auto a = std::get<std::shared_ptr<ExtensionAddress>>(t);
        EXPECT_NE(a, known);
        EXPECT_EQ(a->rank(), 0);
        EXPECT_EQ(a->fullName(), QStringLiteral(""));
        mails.append(a->mail());
    }
    EXPECT_EQ(mails, GetParam().mails);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TokenSplitting,
    ::testing::Values(SplitCase{"semicolon",
                                QStringLiteral("a@x.test;b@y.test"),
                                {QStringLiteral("a@x.test"), QStringLiteral("b@y.test")}},
                      SplitCase{"comma_before_semicolon",
                                QStringLiteral("a@x.test;b , c@z.test"),
                                {QStringLiteral("a@x.test;b"), QStringLiteral("c@z.test")}},
                      SplitCase{"crlf_splits_at_cr",
                                QStringLiteral("a@x.test\r\nb@y.test\r\n"),
                                {QStringLiteral("a@x.test"), QStringLiteral("b@y.test")}},
                      SplitCase{"tab",
                                QStringLiteral("a@x.test\tb@y.test"),
                                {QStringLiteral("a@x.test"), QStringLiteral("b@y.test")}},
                      SplitCase{"not_validated",
                                QStringLiteral(" not an address "),
                                {QStringLiteral("not an address")}},
                      SplitCase{"white_space_only", QStringLiteral(" \t "), {}},
                      SplitCase{"known_mail_yields_nothing",
                                QStringLiteral("known@x.test, new@x.test"),
                                {QStringLiteral("new@x.test")}},
                      SplitCase{"known_mail_in_other_case",
                                QStringLiteral("Known@x.test"),
                                {QStringLiteral("Known@x.test")}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TokenSplittingObjects, RecordsStayAndNothingIsDropped) {
    const auto address = std::make_shared<ExtensionAddress>();
    const auto group = std::make_shared<ExtensionGroup>();
    const QList<Token> out = recipientsForAddedObjects(
        {address, std::shared_ptr<ExtensionAddress>(), group, QStringLiteral("n@x.test")}, nullptr);
    ASSERT_EQ(out.size(), 3);
    EXPECT_EQ(std::get<std::shared_ptr<ExtensionAddress>>(out[0]), address);
    EXPECT_EQ(std::get<std::shared_ptr<ExtensionGroup>>(out[1]), group);
    EXPECT_EQ(std::get<std::shared_ptr<ExtensionAddress>>(out[2])->mail(),
              QStringLiteral("n@x.test"));
}

} // namespace
