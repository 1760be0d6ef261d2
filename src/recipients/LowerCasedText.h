// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace velmora {

// Lower-cased fields laid end to end, one long text of the suggestion index. It is held as
// Latin-1 bytes, half the size of UTF-16, when every unit fits in one (nearly every mail address
// and most names do), else as UTF-16; which of the two is chosen when it is made, from the
// fields it will hold.
class LowerCasedText {
public:
    // Whether text lower-cased fits in Latin-1. Lower-casing maps every Latin-1 unit to one
    // Latin-1 unit, so that is whether the text itself does.
    static bool fitsLatin1(QStringView text);

    explicit LowerCasedText(bool latin1 = false)
        : m_latin1(latin1) {}

    bool isLatin1() const { return m_latin1; }
    qsizetype size() const { return m_latin1 ? m_bytes.size() : m_units.size(); }
    char16_t at(qsizetype i) const {
        return m_latin1 ? char16_t(uchar(m_bytes.at(i))) : m_units.at(i).unicode();
    }
    void reserve(qsizetype units);
    // Appends text lower-cased as QString::toLower() would; in Latin-1, text must fit.
    void appendLowerCased(QStringView text);
    void truncate(qsizetype units);

    // Calls read with the text as a QLatin1StringView or a QStringView, as it is held.
    template <typename Read> decltype(auto) visit(Read&& read) const {
        if (m_latin1)
            return read(QLatin1StringView(m_bytes));
        return read(QStringView(m_units));
    }

private:
    bool m_latin1;
    QByteArray m_bytes;
    QString m_units;
};

} // namespace velmora
