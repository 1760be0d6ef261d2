// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/SuggestionMatcher.h"

#include "platform/Log.h"
#include "recipients/LowerCasedText.h"

#include <QHashFunctions>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <numeric>
#include <utility>

namespace velmora {

namespace {

// How an entry's full name ("first last", trimmed) is kept. Nearly always it is the first name,
// a space and the last name, which the index holds next to each other already: it is read from
// them. With one name empty it is the other name, which a field of its own matches already,
// unless trimming changes it. Only what is left is stored: names with white space at the ends,
// and names with surrogates, since QString::toLower() may turn a lone one into U+FFFD or keep
// it, depending on what comes before it in the same string.
enum class FullNameForm { OfParts, SameAsAName, Stored };

bool hasSurrogates(QStringView text) {
    return std::ranges::any_of(text, [](QChar c) { return c.isSurrogate(); });
}

FullNameForm fullNameForm(const ExtensionAddress::Fields& f) {
    const QString& first = f.firstName;
    const QString& last = f.lastName;
    if (!first.isEmpty() && !last.isEmpty()) {
        const bool apart = first.front().isSpace() || last.back().isSpace() ||
                           hasSurrogates(first) || hasSurrogates(last);
        return apart ? FullNameForm::Stored : FullNameForm::OfParts;
    }
    const QString& name = first.isEmpty() ? last : first;
    if (name.isEmpty() || (!name.front().isSpace() && !name.back().isSpace()))
        return FullNameForm::SameAsAName;
    return FullNameForm::Stored;
}

// A unit of either kind of text.
char16_t unitOf(QChar unit) {
    return unit.unicode();
}
char16_t unitOf(char latin1) {
    return uchar(latin1);
}

// The first position at or after from where text holds unit, or -1: a vectorised scan either way.
qsizetype indexOfUnit(QStringView text, char16_t unit, qsizetype from) {
    return text.indexOf(QChar(unit), from);
}

qsizetype indexOfUnit(QLatin1StringView text, char16_t unit, qsizetype from) {
    if (unit > 0xff || from >= text.size())
        return -1;
    const void* found = std::memchr(text.data() + from, unit, std::size_t(text.size() - from));
    return found ? static_cast<const char*>(found) - text.data() : -1;
}

} // namespace

// The contacts with their lower-cased fields, laid out by entry: entries are the addresses in
// result order (rank descending, file order within a rank), so that matching needs no sort, and
// the fields of all entries lie side by side in a few long strings.
struct SuggestionMatcher::Index {
    // The prefix fields of an entry, in the order they lie in prefixes.
    enum Field : std::size_t { First, Last, FullName, Company, Nickname, kPrefixFields };
    // Positions in the long strings take 32 bits, half of what a qsizetype takes: the offsets
    // are the largest part of the index after the text itself. Entries whose text would end
    // past that range are left out of the suggestions (and logged); a book that large does not
    // fit in memory today.
    using Offset = quint32;
    static constexpr qsizetype kMaxUnits = std::numeric_limits<Offset>::max();

    Addresses addresses;
    Groups groups;
    std::vector<quint32> order;      // entry -> index in addresses
    LowerCasedText mails;            // every lower-cased mail, back to back
    std::vector<Offset> mailStart;   // entry -> start in mails; one extra at the end
    LowerCasedText prefixes;         // the lower-cased prefix fields of every entry
    std::vector<Offset> prefixStart; // entry * kPrefixFields + field -> start; one extra
    // The low byte of each prefix field's first unit (0 when empty), a quick first test that
    // the comparison of the whole prefix decides; a full name read from the names has the first
    // name's.
    std::vector<uchar> prefixFirst;
    std::vector<bool> fullNameOfParts; // entry -> its full name is read from first and last
    // (32-bit hash of the mail as written, index in addresses), sorted: an exact mail is found
    // among the few addresses whose mails share its hash, at 8 bytes an address where a hash
    // table keyed by the mails takes about 40.
    std::vector<std::pair<quint32, quint32>> byMailHash;
    QList<QString> groupNames; // lower-cased; null for a group without members

    std::array<quint32, 256> unitFrequency{}; // how often each Latin-1 unit occurs in mails

    static quint32 mailHash(const QString& mail) { return quint32(qHash(mail)); }
    // The matching below reads the long strings as QLatin1StringView or QStringView (Text), as
    // they are held.
    template <typename Text>
    void markMailMatches(Text all, QStringView query, std::vector<char>& matched) const;
    quint32 frequency(QChar unit) const;
    template <typename Text> Text field(Text all, std::size_t f) const {
        return all.sliced(prefixStart[f], prefixStart[f + 1] - prefixStart[f]);
    }
    template <typename Text>
    bool prefixMatches(Text all, std::size_t entry, QStringView query) const;
    template <typename Text>
    bool fullNameOfPartsStartsWith(Text all, std::size_t base, QStringView query) const;
};

SuggestionMatcher::SuggestionMatcher()
    : m_index(std::make_shared<Index>()) {}

SuggestionMatcher::SuggestionMatcher(Addresses addresses, Groups groups) {
    auto index = std::make_shared<Index>();
    Index& x = *index;
    x.addresses = std::move(addresses);
    x.groups = std::move(groups);
    const auto count = std::size_t(x.addresses.size());
    // The records are read twice under their locks, without copying their fields: first for the
    // ranks, the mails' hashes and the sizes of the long strings, then in result order to fill
    // them. Keeping a copy of every record's fields instead would cost the book's size again.
    qsizetype mailUnits = 0;
    qsizetype prefixUnits = 0;
    bool mailsFitLatin1 = true;
    bool prefixesFitLatin1 = true;
    {
        std::vector<qint64> ranks(count);
        x.byMailHash.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            x.addresses[qsizetype(i)]->readFields([&](const ExtensionAddress::Fields& f) {
                ranks[i] = f.rank;
                x.byMailHash[i] = {Index::mailHash(f.mail), quint32(i)};
                mailUnits += f.mail.size();
                prefixUnits +=
                    f.firstName.size() + f.lastName.size() + f.company.size() + f.nickname.size();
                if (fullNameForm(f) == FullNameForm::Stored)
                    prefixUnits += f.firstName.size() + 1 + f.lastName.size();
                mailsFitLatin1 = mailsFitLatin1 && LowerCasedText::fitsLatin1(f.mail);
                // A full name is made of the names and a space, so it fits when they do.
                prefixesFitLatin1 = prefixesFitLatin1 && LowerCasedText::fitsLatin1(f.firstName) &&
                                    LowerCasedText::fitsLatin1(f.lastName) &&
                                    LowerCasedText::fitsLatin1(f.company) &&
                                    LowerCasedText::fitsLatin1(f.nickname);
            });
        }
        std::sort(x.byMailHash.begin(), x.byMailHash.end());
        x.order.resize(count);
        std::iota(x.order.begin(), x.order.end(), quint32(0));
        std::stable_sort(x.order.begin(), x.order.end(),
                         [&](quint32 a, quint32 b) { return ranks[a] > ranks[b]; });
    } // the ranks are let go before the long strings are made

    x.mails = LowerCasedText(mailsFitLatin1);
    x.prefixes = LowerCasedText(prefixesFitLatin1);
    x.mails.reserve(std::min(mailUnits, Index::kMaxUnits));
    x.prefixes.reserve(std::min(prefixUnits, Index::kMaxUnits));
    x.mailStart.reserve(count + 1);
    x.prefixStart.reserve(count * Index::kPrefixFields + 1);
    x.prefixFirst.reserve(count * Index::kPrefixFields);
    x.fullNameOfParts.reserve(count);
    auto addPrefix = [&x](QStringView text) {
        const qsizetype start = x.prefixes.size();
        x.prefixStart.push_back(Index::Offset(start));
        x.prefixes.appendLowerCased(text);
        x.prefixFirst.push_back(x.prefixes.size() > start ? uchar(x.prefixes.at(start)) : 0);
    };
    for (std::size_t entry = 0; entry < count; ++entry) {
        const qsizetype mailsBefore = x.mails.size();
        const qsizetype prefixesBefore = x.prefixes.size();
        x.addresses[qsizetype(x.order[entry])]->readFields([&](const ExtensionAddress::Fields& f) {
            x.mailStart.push_back(Index::Offset(x.mails.size()));
            x.mails.appendLowerCased(f.mail);
            addPrefix(f.firstName);
            addPrefix(f.lastName);
            const FullNameForm form = fullNameForm(f);
            x.fullNameOfParts.push_back(form == FullNameForm::OfParts);
            if (form == FullNameForm::Stored) {
                addPrefix((f.firstName + u' ' + f.lastName).trimmed());
            } else {
                x.prefixStart.push_back(Index::Offset(x.prefixes.size()));
                const uchar firstOfFirst = x.prefixFirst[entry * Index::kPrefixFields];
                x.prefixFirst.push_back(form == FullNameForm::OfParts ? firstOfFirst : 0);
            }
            addPrefix(f.company);
            addPrefix(f.nickname);
        });
        if (x.mails.size() > Index::kMaxUnits || x.prefixes.size() > Index::kMaxUnits) {
            qCWarning(lcCore) << "the contacts are too large to suggest from: the" << count - entry
                              << "least used addresses are left out of the suggestions";
            x.mails.truncate(mailsBefore);
            x.prefixes.truncate(prefixesBefore);
            x.mailStart.resize(entry);
            x.prefixStart.resize(entry * Index::kPrefixFields);
            x.prefixFirst.resize(entry * Index::kPrefixFields);
            x.fullNameOfParts.resize(entry);
            x.order.resize(entry);
            break;
        }
    }
    x.mailStart.push_back(Index::Offset(x.mails.size()));
    x.mails.visit([&x](auto all) {
        for (const auto unit : all) {
            const char16_t u = unitOf(unit);
            if (u < x.unitFrequency.size())
                ++x.unitFrequency[u];
        }
    });
    x.prefixStart.push_back(Index::Offset(x.prefixes.size()));

    for (const auto& group : x.groups)
        x.groupNames.append(group->addresses().isEmpty() ? QString() : group->name().toLower());
    m_index = std::move(index);
}

const SuggestionMatcher::Addresses& SuggestionMatcher::addresses() const {
    return m_index->addresses;
}

const SuggestionMatcher::Groups& SuggestionMatcher::groups() const {
    return m_index->groups;
}

Suggestions SuggestionMatcher::objectsForString(const QString& text) const {
    const QString query = text.toLower();
    // An empty text is neither contained in nor a prefix of anything.
    if (query.isEmpty())
        return {};
    const Index& x = *m_index;
    std::vector<char> matched(x.order.size(), 0);
    x.mails.visit([&](auto all) { x.markMailMatches(all, query, matched); });
    std::vector<quint32> rows;
    x.prefixes.visit([&](auto all) {
        for (std::size_t entry = 0; entry < matched.size(); ++entry) {
            if (matched[entry] || x.prefixMatches(all, entry, query))
                rows.push_back(x.order[entry]);
        }
    });
    for (qsizetype g = 0; g < x.groups.size(); ++g) {
        if (!x.groupNames[g].isNull() && x.groupNames[g].startsWith(query))
            rows.push_back(quint32(x.addresses.size() + g));
    }
    return Suggestions(m_index, std::move(rows));
}

// One search over all mails at once instead of one per address: a hit that runs past the end of
// its own mail into the next one is not a match, and the search goes on from the next position.
// Candidates are found by the query's rarest unit in the mails (a vectorised scan for one
// character), then compared in full: typed queries are short, and most positions are passed
// over at the scan's speed.
template <typename Text>
void SuggestionMatcher::Index::markMailMatches(Text all, QStringView query,
                                               std::vector<char>& matched) const {
    const qsizetype length = query.size();
    qsizetype anchor = 0;
    for (qsizetype k = 1; k < length; ++k) {
        if (frequency(query[k]) < frequency(query[anchor]))
            anchor = k;
    }
    const char16_t anchorUnit = query[anchor].unicode();
    std::size_t entry = 0;
    qsizetype from = 0;
    while (true) {
        const qsizetype found = indexOfUnit(all, anchorUnit, from + anchor);
        if (found < 0)
            return;
        const qsizetype hit = found - anchor;
        if (hit + length > all.size())
            return;
        if (all.sliced(hit, length) != query) {
            from = hit + 1;
            continue;
        }
        // Hits come in order: the entry holding this one is found by walking on, which costs
        // one step per entry over the whole search.
        while (mailStart[entry + 1] <= hit)
            ++entry;
        if (hit + length <= mailStart[entry + 1]) {
            matched[entry] = 1;
            from = mailStart[entry + 1]; // this mail is matched; go on with the next one
        } else {
            from = hit + 1;
        }
    }
}

quint32 SuggestionMatcher::Index::frequency(QChar unit) const {
    // Units beyond Latin-1 are rare in mail addresses.
    return unit.unicode() < unitFrequency.size() ? unitFrequency[unit.unicode()] : 0;
}

template <typename Text>
bool SuggestionMatcher::Index::prefixMatches(Text all, std::size_t entry, QStringView query) const {
    const auto first = uchar(query.front().unicode());
    const std::size_t base = entry * kPrefixFields;
    for (std::size_t f = base; f < base + kPrefixFields; ++f) {
        // Most fields differ from the query at their first unit; compare that before the rest.
        if (prefixFirst[f] != first)
            continue;
        if (f == base + FullName && fullNameOfParts[entry]) {
            if (fullNameOfPartsStartsWith(all, base, query))
                return true;
            continue;
        }
        const qsizetype start = prefixStart[f];
        const qsizetype length = prefixStart[f + 1] - start;
        if (length >= query.size() && all.sliced(start, query.size()) == query)
            return true;
    }
    return false;
}

// Whether "first last" starts with the query, for the entry whose first field is at base.
template <typename Text>
bool SuggestionMatcher::Index::fullNameOfPartsStartsWith(Text all, std::size_t base,
                                                         QStringView query) const {
    const Text firstName = field(all, base + First);
    if (query.size() <= firstName.size())
        return firstName.startsWith(query);
    return query.startsWith(firstName) && query[firstName.size()] == u' ' &&
           field(all, base + Last).startsWith(query.sliced(firstName.size() + 1));
}

std::shared_ptr<ExtensionAddress> SuggestionMatcher::addressForMail(const QString& mail) const {
    const Index& x = *m_index;
    // Within one hash the addresses are in file order, so the first equal mail is the first
    // address with it.
    const auto candidates = std::ranges::equal_range(x.byMailHash, Index::mailHash(mail), {},
                                                     &std::pair<quint32, quint32>::first);
    for (const auto& [hash, i] : candidates) {
        const auto& address = x.addresses[qsizetype(i)];
        if (address->mail() == mail)
            return address;
    }
    return nullptr;
}

Suggestions::Suggestions(std::shared_ptr<const SuggestionMatcher::Index> index,
                         std::vector<quint32> rows)
    : m_index(std::move(index))
    , m_rows(std::make_shared<const std::vector<quint32>>(std::move(rows))) {}

Recipient Suggestions::at(qsizetype row) const {
    const quint32 i = (*m_rows)[std::size_t(row)];
    const auto addressCount = quint32(m_index->addresses.size());
    if (i < addressCount)
        return m_index->addresses[i];
    return m_index->groups[i - addressCount];
}

QList<Recipient> Suggestions::toList() const {
    QList<Recipient> out;
    out.reserve(size());
    for (qsizetype row = 0; row < size(); ++row)
        out.append(at(row));
    return out;
}

} // namespace velmora
