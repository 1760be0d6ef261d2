// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QList>
#include <QLocale>
#include <QString>

namespace velmora {

// One date format, made once and reused: a pattern written in a locale, in the local time zone
// or in UTC. Immutable, so one formatter can serve several threads.
class DateFormatter {
public:
    enum class Zone { Local, Utc };

    // pattern uses the letters QLocale::toString knows; for the numeric fields the parser reads
    // (yyyy MM dd HH mm ss) they mean what the Unicode date patterns mean, and text in single
    // quotes is literal in both.
    DateFormatter(QLocale locale, QString pattern, Zone zone);

    const QLocale& locale() const { return m_locale; }
    const QString& pattern() const { return m_pattern; }
    Zone zone() const { return m_zone; }

    // date in the formatter's time zone, written with its pattern in its locale; null for a null
    // or invalid date.
    QString stringFromDate(const QDateTime& date) const;

    // Reads text that matches the pattern exactly: each field with its full number of ASCII
    // digits, each literal as written, nothing before or after, and a real calendar date and
    // time. Null otherwise, and for patterns with fields other than the numeric ones above.
    QDateTime dateFromString(QStringView text) const;

private:
    struct Field {
        enum Kind { Literal, Year, Month, Day, Hour, Minute, Second, Unsupported };
        Kind kind;
        QString literal; // the text of a Literal
        int width;       // the digits of a numeric field
    };
    static QList<Field> parsePattern(QStringView pattern);

    QLocale m_locale;
    QString m_pattern;
    Zone m_zone;
    QList<Field> m_fields;
};

} // namespace velmora
