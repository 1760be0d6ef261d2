// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "request/UrlText.h"

#include <gtest/gtest.h>

using namespace velmora;

namespace {

// The shortcut that checks only the head must agree with QUrl's strict check of the whole text.
TEST(UrlText, HeadAndQueryAgreesWithTheWholeTextsStrictCheck) {
    const struct {
        const char16_t* head;
        const char16_t* query;
    } cases[] = {
        {u"velmora://send?", u"subject=Hi%20there&to=a%40b.test%3B"},
        {u"velmora://send?", u""},
        {u"velmora://Send?", u"a=1&a=2&x-y.z_~=%7e"},
        {u"velmora://se nd?", u"subject=x"},        // a space in the head
        {u"velmora://send?", u"subject=a b"},       // a space in the query
        {u"velmora://send?", u"bad=%4"},            // a cut escape
        {u"velmora://send?", u"bad=%zz"},           // not an escape
        {u"velmora://send?", u"list[]=1&list[]=2"}, // brackets: left to QUrl
        {u"velmora://[::1?", u"a=1"},               // a broken host
    };
    for (const auto& c : cases) {
        const QString head = QString::fromUtf16(c.head);
        const QString query = QString::fromUtf16(c.query);
        EXPECT_EQ(UrlText::fromHeadAndQuery(head, query), UrlText::fromString(head + query))
            << (head + query).toStdString();
    }
}

} // namespace
