// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/LowerCasedText.h"

namespace velmora {

namespace {

// ASCII lower-cased in place at the end of out, without a string of its own.
template <typename Unit, typename Text> void appendAsciiLowerCased(Text& out, QStringView text) {
    const qsizetype start = out.size();
    out.resize(start + text.size());
    Unit* to = reinterpret_cast<Unit*>(out.data()) + start;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        *to++ = Unit((u >= u'A' && u <= u'Z') ? u + (u'a' - u'A') : u);
    }
}

} // namespace

bool LowerCasedText::fitsLatin1(QStringView text) {
    // One pass without a branch per unit, which the compiler vectorises.
    char16_t high = 0;
    for (const QChar c : text)
        high |= c.unicode() & 0xff00;
    return high == 0;
}

void LowerCasedText::reserve(qsizetype units) {
    if (m_latin1)
        m_bytes.reserve(units);
    else
        m_units.reserve(units);
}

void LowerCasedText::appendLowerCased(QStringView text) {
    char16_t any = 0;
    for (const QChar c : text)
        any |= c.unicode();
    if (any < 0x80) {
        if (m_latin1)
            appendAsciiLowerCased<char>(m_bytes, text);
        else
            appendAsciiLowerCased<char16_t>(m_units, text);
        return;
    }
    // Anything else through toLower(), whose mappings may change the length.
    const QString lower = text.toString().toLower();
    if (m_latin1) {
        Q_ASSERT(fitsLatin1(lower));
        m_bytes += lower.toLatin1();
    } else {
        m_units += lower;
    }
}

void LowerCasedText::truncate(qsizetype units) {
    if (m_latin1)
        m_bytes.truncate(units);
    else
        m_units.truncate(units);
}

} // namespace velmora
