// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "message/DateFormatter.h"

namespace velmora {

DateFormatter::DateFormatter(QLocale locale, QString pattern, Zone zone)
    : m_locale(std::move(locale))
    , m_pattern(std::move(pattern))
    , m_zone(zone)
    , m_fields(parsePattern(m_pattern)) {}

QList<DateFormatter::Field> DateFormatter::parsePattern(QStringView pattern) {
    // The numeric fields the parser reads, each with its one width.
    struct NumericField {
        char16_t letter;
        int width;
        Field::Kind kind;
    };
    static constexpr NumericField kNumericFields[] = {
        {u'y', 4, Field::Year}, {u'M', 2, Field::Month},  {u'd', 2, Field::Day},
        {u'H', 2, Field::Hour}, {u'm', 2, Field::Minute}, {u's', 2, Field::Second},
    };
    QList<Field> fields;
    auto addLiteral = [&fields](QStringView text) {
        if (!fields.isEmpty() && fields.constLast().kind == Field::Literal)
            fields.last().literal += text;
        else
            fields.append({Field::Literal, text.toString(), 0});
    };
    qsizetype i = 0;
    while (i < pattern.size()) {
        const QChar c = pattern[i];
        if (c == u'\'') {
            // '' is a quote; 'text' is literal text, in which '' is a quote again.
            if (i + 1 < pattern.size() && pattern[i + 1] == u'\'') {
                addLiteral(u"'");
                i += 2;
                continue;
            }
            qsizetype j = i + 1;
            QString text;
            while (j < pattern.size()) {
                if (pattern[j] == u'\'') {
                    if (j + 1 < pattern.size() && pattern[j + 1] == u'\'') {
                        text += u'\'';
                        j += 2;
                        continue;
                    }
                    break;
                }
                text += pattern[j++];
            }
            addLiteral(text);
            i = j + 1;
            continue;
        }
        if (!c.isLetter() || c.unicode() > 0x7F) {
            addLiteral(pattern.mid(i, 1));
            ++i;
            continue;
        }
        qsizetype j = i;
        while (j < pattern.size() && pattern[j] == c)
            ++j;
        const int width = int(j - i);
        Field::Kind kind = Field::Unsupported;
        for (const NumericField& numeric : kNumericFields) {
            if (numeric.letter == c.unicode() && numeric.width == width)
                kind = numeric.kind;
        }
        fields.append({kind, QString(), width});
        i = j;
    }
    return fields;
}

QString DateFormatter::stringFromDate(const QDateTime& date) const {
    if (!date.isValid())
        return {};
    const QDateTime inZone = m_zone == Zone::Utc ? date.toUTC() : date.toLocalTime();
    return m_locale.toString(inZone, m_pattern);
}

QDateTime DateFormatter::dateFromString(QStringView text) const {
    int value[Field::Unsupported] = {};
    // Fields a pattern leaves out read as the start of their range.
    value[Field::Year] = 1970;
    value[Field::Month] = 1;
    value[Field::Day] = 1;
    qsizetype at = 0;
    for (const Field& field : m_fields) {
        if (field.kind == Field::Unsupported)
            return {};
        if (field.kind == Field::Literal) {
            if (!text.mid(at).startsWith(field.literal))
                return {};
            at += field.literal.size();
            continue;
        }
        if (at + field.width > text.size())
            return {};
        int number = 0;
        for (int k = 0; k < field.width; ++k) {
            const char16_t d = text[at + k].unicode();
            if (d < u'0' || d > u'9')
                return {};
            number = number * 10 + (d - u'0');
        }
        value[field.kind] = number;
        at += field.width;
    }
    if (at != text.size())
        return {};
    const QDate day(value[Field::Year], value[Field::Month], value[Field::Day]);
    const QTime time(value[Field::Hour], value[Field::Minute], value[Field::Second]);
    if (!day.isValid() || !time.isValid())
        return {};
    return m_zone == Zone::Utc ? QDateTime(day, time, Qt::UTC) : QDateTime(day, time);
}

} // namespace velmora
