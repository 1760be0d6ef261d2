// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/SuggestionMatcher.h"

#include "platform/Log.h"

#include <QHashFunctions>

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <utility>

namespace velmora {

namespace {

// Appends text lower-cased as QString::toLower() would: ASCII in place, anything else through
// toLower(), whose mappings may change the length.
void appendLowerCased(QString& out, QStringView text) {
    for (const QChar c : text) {
        if (c.unicode() >= 0x80) {
            out += text.toString().toLower();
            return;
        }
    }
    const qsizetype start = out.size();
    out.resize(start + text.size());
    char16_t* to = reinterpret_cast<char16_t*>(out.data()) + start;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        *to++ = (u >= u'A' && u <= u'Z') ? char16_t(u + (u'a' - u'A')) : u;
    }
}

// How an entry's full name ("first last", trimmed) is kept. Nearly always it is the first name,
// a space and the last name, which the index holds next to each other already: it is read from
// them. With one name empty it is the other name, which a field of its own matches already,
// unless trimming changes it. Only what is left is stored: names with white space at the ends.
enum class FullNameForm { OfParts, SameAsAName, Stored };

FullNameForm fullNameForm(const ExtensionAddress::Fields& f) {
    const QString& first = f.firstName;
    const QString& last = f.lastName;
    if (!first.isEmpty() && !last.isEmpty())
        return first.front().isSpace() || last.back().isSpace() ? FullNameForm::Stored
                                                                : FullNameForm::OfParts;
    const QString& name = first.isEmpty() ? last : first;
    if (name.isEmpty() || (!name.front().isSpace() && !name.back().isSpace()))
        return FullNameForm::SameAsAName;
    return FullNameForm::Stored;
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
    QString mails;                   // every lower-cased mail, back to back
    std::vector<Offset> mailStart;   // entry -> start in mails; one extra at the end
    QString prefixes;                // the lower-cased prefix fields of every entry
    std::vector<Offset> prefixStart; // entry * kPrefixFields + field -> start; one extra
    // First unit of each prefix field (0 when empty); a full name read from the names has the
    // first name's.
    std::vector<char16_t> prefixFirst;
    std::vector<bool> fullNameOfParts; // entry -> its full name is read from first and last
    // (32-bit hash of the mail as written, index in addresses), sorted: an exact mail is found
    // among the few addresses whose mails share its hash, at 8 bytes an address where a hash
    // table keyed by the mails takes about 40.
    std::vector<std::pair<quint32, quint32>> byMailHash;
    QList<QString> groupNames; // lower-cased; null for a group without members

    std::array<quint32, 256> unitFrequency{}; // how often each Latin-1 unit occurs in mails

    static quint32 mailHash(const QString& mail) { return quint32(qHash(mail)); }
    void markMailMatches(QStringView query, std::vector<char>& matched) const;
    quint32 frequency(QChar unit) const;
    QStringView field(std::size_t f) const {
        return QStringView(prefixes).sliced(prefixStart[f], prefixStart[f + 1] - prefixStart[f]);
    }
    bool prefixMatches(std::size_t entry, QStringView query) const;
    bool fullNameOfPartsStartsWith(std::size_t base, QStringView query) const;
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
            });
        }
        std::sort(x.byMailHash.begin(), x.byMailHash.end());
        x.order.resize(count);
        std::iota(x.order.begin(), x.order.end(), quint32(0));
        std::stable_sort(x.order.begin(), x.order.end(),
                         [&](quint32 a, quint32 b) { return ranks[a] > ranks[b]; });
    } // the ranks are let go before the long strings are made

    x.mails.reserve(std::min(mailUnits, Index::kMaxUnits));
    x.prefixes.reserve(std::min(prefixUnits, Index::kMaxUnits));
    x.mailStart.reserve(count + 1);
    x.prefixStart.reserve(count * Index::kPrefixFields + 1);
    x.prefixFirst.reserve(count * Index::kPrefixFields);
    x.fullNameOfParts.reserve(count);
    auto addPrefix = [&x](auto append) {
        const qsizetype start = x.prefixes.size();
        x.prefixStart.push_back(Index::Offset(start));
        append(x.prefixes);
        x.prefixFirst.push_back(x.prefixes.size() > start ? x.prefixes.at(start).unicode() : u'\0');
    };
    for (std::size_t entry = 0; entry < count; ++entry) {
        const qsizetype mailsBefore = x.mails.size();
        const qsizetype prefixesBefore = x.prefixes.size();
        x.addresses[qsizetype(x.order[entry])]->readFields([&](const ExtensionAddress::Fields& f) {
            x.mailStart.push_back(Index::Offset(x.mails.size()));
            appendLowerCased(x.mails, f.mail);
            addPrefix([&](QString& out) { appendLowerCased(out, f.firstName); });
            addPrefix([&](QString& out) { appendLowerCased(out, f.lastName); });
            const FullNameForm form = fullNameForm(f);
            x.fullNameOfParts.push_back(form == FullNameForm::OfParts);
            if (form == FullNameForm::Stored) {
                addPrefix([&](QString& out) {
                    appendLowerCased(out, (f.firstName + u' ' + f.lastName).trimmed());
                });
            } else {
                x.prefixStart.push_back(Index::Offset(x.prefixes.size()));
                const char16_t firstOfFirst = x.prefixFirst[entry * Index::kPrefixFields];
                x.prefixFirst.push_back(form == FullNameForm::OfParts ? firstOfFirst : u'\0');
            }
            addPrefix([&](QString& out) { appendLowerCased(out, f.company); });
            addPrefix([&](QString& out) { appendLowerCased(out, f.nickname); });
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
    for (const QChar unit : std::as_const(x.mails)) {
        if (unit.unicode() < x.unitFrequency.size())
            ++x.unitFrequency[unit.unicode()];
    }
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
    x.markMailMatches(query, matched);
    std::vector<quint32> rows;
    for (std::size_t entry = 0; entry < matched.size(); ++entry) {
        if (matched[entry] || x.prefixMatches(entry, query))
            rows.push_back(x.order[entry]);
    }
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
void SuggestionMatcher::Index::markMailMatches(QStringView query,
                                               std::vector<char>& matched) const {
    const QStringView all(mails);
    const qsizetype length = query.size();
    qsizetype anchor = 0;
    for (qsizetype k = 1; k < length; ++k) {
        if (frequency(query[k]) < frequency(query[anchor]))
            anchor = k;
    }
    const QChar anchorUnit = query[anchor];
    std::size_t entry = 0;
    qsizetype from = 0;
    while (true) {
        const qsizetype found = all.indexOf(anchorUnit, from + anchor);
        if (found < 0)
            return;
        const qsizetype hit = found - anchor;
        if (hit + length > all.size())
            return;
        if (!std::equal(query.begin(), query.end(), all.begin() + hit)) {
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

bool SuggestionMatcher::Index::prefixMatches(std::size_t entry, QStringView query) const {
    const char16_t first = query.front().unicode();
    const std::size_t base = entry * kPrefixFields;
    for (std::size_t f = base; f < base + kPrefixFields; ++f) {
        // Most fields differ from the query at their first unit; compare that before the rest.
        if (prefixFirst[f] != first)
            continue;
        if (f == base + FullName && fullNameOfParts[entry]) {
            if (fullNameOfPartsStartsWith(base, query))
                return true;
            continue;
        }
        const qsizetype start = prefixStart[f];
        const qsizetype length = prefixStart[f + 1] - start;
        if (length >= query.size() && QStringView(prefixes).sliced(start, query.size()) == query)
            return true;
    }
    return false;
}

// Whether "first last" starts with the query, for the entry whose first field is at base.
bool SuggestionMatcher::Index::fullNameOfPartsStartsWith(std::size_t base,
                                                         QStringView query) const {
    const QStringView firstName = field(base + First);
    if (query.size() <= firstName.size())
        return firstName.startsWith(query);
    return query.startsWith(firstName) && query[firstName.size()] == u' ' &&
           field(base + Last).startsWith(query.sliced(firstName.size() + 1));
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
