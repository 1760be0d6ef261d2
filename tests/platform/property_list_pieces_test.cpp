// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The XML reader that reads a root array a run of elements at a time, against the whole read of
// the same document: for every size of run, the same elements or the same fault.

#include "platform/PropertyList.h"
#include "platform/PropertyListPrivate.h"

#include <gtest/gtest.h>

namespace {

using velmora::PropertyList;
namespace plist = velmora::plist;

struct PiecesRow {
    const char* name;
    QByteArray xml;
    qint64 maxObjects = PropertyList::Limits().maxObjects;
};

void PrintTo(const PiecesRow& row, std::ostream* os) {
    *os << row.name;
}

const QByteArray kHead = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<array>
)";
const QByteArray kTail = "</array>\n</plist>\n";

QByteArray book(const QByteArray& elements) {
    return kHead + elements + kTail;
}

const QByteArray kDicts = "\t<dict>\n\t\t<key>mail</key>\n\t\t<string>ada@x.test</string>\n"
                          "\t\t<key>rank</key>\n\t\t<integer>3</integer>\n\t</dict>\n"
                          "\t<dict><key a='>' b=\"/>\">k</key><string/></dict>\n"
                          "\t<string><![CDATA[</array><x>]]>&lt;t&#62;</string>\n"
                          "\t<!-- </array> <dict> -->\n\t<array><true/><array/></array>\n";

class Pieces : public ::testing::TestWithParam<PiecesRow> {};

TEST_P(Pieces, ReadAsTheWholeDocumentDoesWhereverTheSeamsFall) {
    PropertyList::Limits limits;
    limits.maxObjects = GetParam().maxObjects;
    QString wholeError;
    const QVariant whole = PropertyList::fromXml(GetParam().xml, &wholeError, limits);
    for (qsizetype piece = 1; piece <= 48; ++piece) {
        SCOPED_TRACE(piece);
        QVariantList seen;
        QString error;
        try {
            plist::forEachXmlArrayElement(
                GetParam().xml, limits, [&](const QVariant& e) { seen.append(e); }, piece);
        } catch (const plist::Malformed& e) {
            error = QStringLiteral("XML property list: ") + e.message;
        }
        if (whole.typeId() == QMetaType::QVariantList) {
            EXPECT_TRUE(error.isEmpty()) << error.toStdString();
            EXPECT_EQ(QVariant(seen), whole);
        } else {
            EXPECT_FALSE(error.isEmpty());
            // A document that reads as something else than an array fails only here.
            if (!whole.isValid()) {
                EXPECT_EQ(error, wholeError);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Xml, Pieces,
    ::testing::Values(
        PiecesRow{"book", book(kDicts)}, PiecesRow{"bare_root", "<array>" + kDicts + "</array>"},
        PiecesRow{"empty_array", book("")},
        PiecesRow{"byte_order_mark_and_comments", "\xEF\xBB\xBF<!--a--><plist><!--b-->" +
                                                      ("<array>" + kDicts) + "</array></plist>"},
        PiecesRow{"text_between_elements", book("<true/>loose<false/>")},
        PiecesRow{"reference_between_elements", book("<true/>&#32;<false/>")},
        PiecesRow{"instruction_between_elements", book("<true/><?pi x?><false/>")},
        PiecesRow{"nul_between_elements", book(QByteArray("<true/>\0<false/>", 16))},
        PiecesRow{"mismatched_end_late", book(kDicts + "<dict></array>")},
        PiecesRow{"unclosed_root", kHead + kDicts},
        PiecesRow{"elements_after_the_root", book(kDicts) + "<array/>"},
        PiecesRow{"root_not_array", "<plist><dict/></plist>"},
        PiecesRow{"internal_subset", "<!DOCTYPE plist [<!ENTITY e \"x\">]><plist><array>" + kDicts +
                                         "</array></plist>"},
        PiecesRow{"latin1", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><array><string>"
                            "\xE9</string></array>"},
        PiecesRow{"utf16", QByteArray("\xFF\xFE<\0a\0r\0r\0a\0y\0/\0>\0", 18)},
        PiecesRow{"bad_value_late", book(kDicts + "<integer>x</integer>")},
        PiecesRow{"over_the_value_limit", book(kDicts), 12}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
