// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "message/LinkDetector.h"

#include <QUrl>

namespace velmora {

namespace {

bool isAsciiAlpha(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isAsciiAlnum(char16_t c) {
    return isAsciiAlpha(c) || (c >= u'0' && c <= u'9');
}

bool isSchemeChar(char16_t c) {
    return isAsciiAlnum(c) || c == u'+' || c == u'-' || c == u'.';
}

// The characters of an address's local part that prose uses.
bool isLocalChar(char16_t c) {
    return isAsciiAlnum(c) || c == u'.' || c == u'_' || c == u'%' || c == u'+' || c == u'-';
}

bool isLabelChar(QChar c) {
    return c.isLetterOrNumber() || c == u'-';
}

// Anything but white space, controls and the characters that never stand in a URL.
bool isUrlChar(QChar c) {
    const char16_t u = c.unicode();
    if (u < 0x20 || (u >= 0x7F && u <= 0x9F) || c.isSpace())
        return false;
    switch (u) {
    case u'<':
    case u'>':
    case u'"':
    case u'`':
    case u'{':
    case u'}':
    case u'|':
    case u'\\':
    case u'^':
        return false;
    default:
        return true;
    }
}

// Prose punctuation that ends a sentence or closes a quotation after a link.
bool isTrailingPunctuation(char16_t c) {
    switch (c) {
    case u'.':
    case u',':
    case u'!':
    case u'?':
    case u':':
    case u';':
    case u'\'':
    case u'\u2019': // right single quotation mark
    case u'\u201D': // right double quotation mark
    case u'\u00BB': // right-pointing double angle quotation mark
    case u'\u203A': // single right-pointing angle quotation mark
        return true;
    default:
        return false;
    }
}

// A link may begin where no word, address or scheme is under way.
bool atBoundary(QStringView text, qsizetype i) {
    if (i == 0)
        return true;
    const QChar before = text[i - 1];
    return !before.isLetterOrNumber() && !isLocalChar(before.unicode()) && before != u'@';
}

qsizetype runEnd(QStringView text, qsizetype from, bool (*belongs)(QChar)) {
    while (from < text.size() && belongs(text[from]))
        ++from;
    return from;
}

// Where the link [start, end) really ends once trailing punctuation is left out. A ")" or "]"
// stays when the link holds as many openers as closers up to it.
qsizetype trimmedEnd(QStringView text, qsizetype start, qsizetype end) {
    qsizetype parens = 0;
    qsizetype brackets = 0;
    for (qsizetype k = start; k < end; ++k) {
        const char16_t c = text[k].unicode();
        parens += c == u'(' ? 1 : c == u')' ? -1 : 0;
        brackets += c == u'[' ? 1 : c == u']' ? -1 : 0;
    }
    while (end > start) {
        const char16_t c = text[end - 1].unicode();
        if (c == u')' && parens < 0) {
            ++parens;
        } else if (c == u']' && brackets < 0) {
            ++brackets;
        } else if (!isTrailingPunctuation(c)) {
            break;
        }
        --end;
    }
    return end;
}

// A host name of dot-separated labels (letters, digits, inner hyphens), at least minLabels of
// them, the last made of two letters or more.
bool isHostName(QStringView host, int minLabels) {
    int labels = 0;
    QStringView last;
    for (const QStringView label : host.tokenize(u'.')) {
        if (label.isEmpty() || label.startsWith(u'-') || label.endsWith(u'-'))
            return false;
        ++labels;
        last = label;
    }
    if (labels < minLabels || last.size() < 2)
        return false;
    for (const QChar c : last) {
        if (!c.isLetter())
            return false;
    }
    return true;
}

// The absolute URL text of a candidate, or null when it is no URL: the scheme and host in lower
// case, international hosts in ASCII form, and everything outside URL syntax percent-encoded.
QString normalised(const QString& candidate, bool needsHost) {
    const QUrl url(candidate, QUrl::TolerantMode);
    if (!url.isValid() || url.scheme().isEmpty() || (needsHost && url.host().isEmpty()))
        return {};
    return url.toString(QUrl::FullyEncoded);
}

class Scanner {
public:
    explicit Scanner(QStringView text)
        : m_text(text) {}

    QList<DetectedLink> run() {
        qsizetype i = 0;
        const qsizetype n = m_text.size();
        while (i < n) {
            const char16_t c = m_text[i].unicode();
            if (!isLocalChar(c) || c == u'.' || !atBoundary(m_text, i)) {
                ++i;
                continue;
            }
            const qsizetype next = schemeLink(i);
            if (next > i) {
                i = next;
                continue;
            }
            const qsizetype afterWww = wwwLink(i);
            if (afterWww > i) {
                i = afterWww;
                continue;
            }
            const qsizetype afterMail = emailLink(i);
            if (afterMail > i) {
                i = afterMail;
                continue;
            }
            // No link begins inside this run of word characters either: none of its positions
            // is a boundary.
            i = runEnd(m_text, i, [](QChar ch) { return isLocalChar(ch.unicode()); });
        }
        return m_links;
    }

private:
    // Each try returns where scanning goes on: past the link, past a candidate that turned out
    // to be no URL (so that no stretch of text is read twice), or start itself for no candidate.

    // scheme "://" body, or "mailto:" body.
    qsizetype schemeLink(qsizetype start) {
        const qsizetype schemeEnd =
            runEnd(m_text, start, [](QChar ch) { return isSchemeChar(ch.unicode()); });
        // A scheme begins with a letter: "1http://" links from the "h".
        qsizetype from = start;
        while (from < schemeEnd && !isAsciiAlpha(m_text[from].unicode()))
            ++from;
        if (from == schemeEnd)
            return start;
        const QString scheme = m_text.mid(from, schemeEnd - from).toString().toLower();
        qsizetype bodyStart;
        if (m_text.mid(schemeEnd).startsWith(u"://"))
            bodyStart = schemeEnd + 3;
        else if (scheme == u"mailto" && m_text.mid(schemeEnd).startsWith(u':'))
            bodyStart = schemeEnd + 1;
        else
            return start;
        const qsizetype bodyEnd = runEnd(m_text, bodyStart, isUrlChar);
        const qsizetype end = trimmedEnd(m_text, bodyStart, bodyEnd);
        if (end == bodyStart)
            return start;
        const bool needsHost = scheme == u"http" || scheme == u"https" || scheme == u"ftp";
        const QString url = normalised(m_text.mid(from, end - from).toString(), needsHost);
        if (url.isNull())
            return bodyEnd;
        m_links.append({from, end - from, url});
        return end;
    }

    // "www." host [":" port] [path], at least one more label after "www." and a top-level one.
    qsizetype wwwLink(qsizetype start) {
        if (m_text.mid(start, 4).compare(u"www.", Qt::CaseInsensitive) != 0)
            return start;
        const qsizetype hostEnd =
            runEnd(m_text, start, [](QChar ch) { return isLabelChar(ch) || ch == u'.'; });
        // A sentence's full stop after the host is not part of it.
        qsizetype nameEnd = hostEnd;
        while (nameEnd > start && m_text[nameEnd - 1] == u'.')
            --nameEnd;
        if (!isHostName(m_text.mid(start, nameEnd - start), 3))
            return start;
        qsizetype end = nameEnd;
        if (nameEnd == hostEnd) {
            const qsizetype bodyEnd = runEnd(m_text, hostEnd, isUrlChar);
            end = trimmedEnd(m_text, start, bodyEnd);
        }
        const QString url =
            normalised(QStringLiteral("http://") + m_text.mid(start, end - start).toString(), true);
        if (url.isNull())
            return end;
        m_links.append({start, end - start, url});
        return end;
    }

    // local "@" domain: a local part of letters, digits and . _ % + - (not at its ends), and a
    // host name of two labels or more.
    qsizetype emailLink(qsizetype start) {
        const qsizetype at =
            runEnd(m_text, start, [](QChar ch) { return isLocalChar(ch.unicode()); });
        if (at >= m_text.size() || m_text[at] != u'@' || m_text[at - 1] == u'.')
            return start;
        qsizetype domainEnd =
            runEnd(m_text, at + 1, [](QChar ch) { return isLabelChar(ch) || ch == u'.'; });
        while (domainEnd > at + 1 &&
               (m_text[domainEnd - 1] == u'.' || m_text[domainEnd - 1] == u'-'))
            --domainEnd;
        if (!isHostName(m_text.mid(at + 1, domainEnd - at - 1), 2))
            return start;
        const QString url = normalised(
            QStringLiteral("mailto:") + m_text.mid(start, domainEnd - start).toString(), false);
        if (url.isNull())
            return domainEnd;
        m_links.append({start, domainEnd - start, url});
        return domainEnd;
    }

    QStringView m_text;
    QList<DetectedLink> m_links;
};

} // namespace

QList<DetectedLink> detectLinks(QStringView text) {
    return Scanner(text).run();
}

} // namespace velmora
