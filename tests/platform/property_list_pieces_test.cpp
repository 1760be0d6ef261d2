// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The root array read a run of bytes at a time, for every run size: as the whole read reads it.

#include "platform/PropertyList.h"
#include "platform/PropertyListPrivate.h"

#include <gtest/gtest.h>

namespace {

using velmora::PropertyList;
namespace plist = velmora::plist;

const QByteArray kHead = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<array>
)";

QByteArray book(const QByteArray& elements) {
    return kHead + elements + "</array>\n</plist>\n";
}

const QByteArray kDicts = "\t<dict>\n\t\t<key>mail</key>\n\t\t<string>ada@x.test</string>\n"
                          "\t\t<key>rank</key>\n\t\t<integer>3</integer>\n\t</dict>\n"
                          "\t<dict><key a='>' b=\"/>\">k</key><string/></dict>\n"
                          "\t<string><![CDATA[</array><x>]]>&lt;t&#62;</string>\n"
                          "\t<!-- </array> <dict> -->\n\t<array><true/><array/></array>\n";

TEST(PropertyListPieces, ReadAsTheWholeDocumentDoesWhereverTheSeamsFall) {
    const struct {
        const char* name;
        QByteArray xml;
        qint64 maxObjects = PropertyList::Limits().maxObjects;
    } rows[] = {
        {"book", book(kDicts)},
        {"byte_order_mark_and_comments",
         "\xEF\xBB\xBF<!--a--><plist><!--b-->" + ("<array>" + kDicts) + "</array></plist>"},
        {"text_between_elements", book("<true/>loose<false/>")},
        {"reference_between_elements", book("<true/>&#32;<false/>")},
        {"instruction_between_elements", book("<true/><?pi x?><false/>")},
        {"nul_between_elements", book(QByteArray("<true/>\0<false/>", 16))},
        {"unclosed_root", kHead + kDicts},
        {"elements_after_the_root", book(kDicts) + "<array/>"},
        {"root_not_array", "<plist><dict/></plist>"},
        {"internal_subset",
         "<!DOCTYPE plist [<!ENTITY e \"x\">]><plist><array>" + kDicts + "</array></plist>"},
        {"latin1",
         "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><array><string>\xE9</string></array>"},
        {"utf16", QByteArray("\xFF\xFE<\0a\0r\0r\0a\0y\0/\0>\0", 18)},
        {"bad_value_late", book(kDicts + "<integer>x</integer>")},
        {"over_the_value_limit", book(kDicts), 12},
    };
    for (const auto& row : rows) {
        const PropertyList::Limits limits{.maxObjects = row.maxObjects};
        QString wholeError;
        const QVariant whole = PropertyList::fromXml(row.xml, &wholeError, limits);
        for (qsizetype piece = 1; piece <= 48; ++piece) {
            SCOPED_TRACE(testing::Message() << row.name << ", runs of " << piece << " bytes");
            QVariantList seen;
            QString error;
            try {
                plist::forEachXmlArrayElement(
                    row.xml, limits, [&](const QVariant& e) { seen.append(e); }, piece);
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
}

} // namespace
