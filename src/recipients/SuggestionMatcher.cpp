#include "recipients/SuggestionMatcher.h"

#include <algorithm>

namespace velmora {

SuggestionMatcher::SuggestionMatcher(Addresses addresses, Groups groups)
    : m_addresses(std::move(addresses))
    , m_groups(std::move(groups)) {
    const auto count = std::size_t(m_addresses.size());
    std::vector<qint64> rank(count);
    for (std::size_t i = 0; i < count; ++i)
        rank[i] = m_addresses[qsizetype(i)]->rank();
    m_order.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        m_order[i] = qsizetype(i);
    std::stable_sort(m_order.begin(), m_order.end(),
                     [&](qsizetype a, qsizetype b) { return rank[a] > rank[b]; });

    m_mailStart.reserve(count + 1);
    m_prefixStart.reserve(count * kPrefixFields + 1);
    m_prefixFirst.reserve(count * kPrefixFields);
    for (const qsizetype index : m_order) {
        const ExtensionAddress& a = *m_addresses[index];
        m_mailStart.push_back(m_mails.size());
        m_mails += a.mail().toLower();
        for (const QString& field :
             {a.firstName(), a.lastName(), a.fullName(), a.company(), a.nickname()}) {
            const QString lower = field.toLower();
            m_prefixStart.push_back(m_prefixes.size());
            m_prefixFirst.push_back(lower.isEmpty() ? u'\0' : lower.front().unicode());
            m_prefixes += lower;
        }
    }
    m_mailStart.push_back(m_mails.size());
    m_prefixStart.push_back(m_prefixes.size());

    // Backwards, so that the first of several addresses with one mail is the one kept.
    for (qsizetype i = m_addresses.size() - 1; i >= 0; --i)
        m_firstByMail.insert(m_addresses[i]->mail(), i);
    for (const auto& group : m_groups)
        m_groupNames.append(group->addresses().isEmpty() ? QString() : group->name().toLower());
}

QList<Recipient> SuggestionMatcher::objectsForString(const QString& text) const {
    QList<Recipient> result;
    const QString query = text.toLower();
    // An empty text is neither contained in nor a prefix of anything.
    if (query.isEmpty())
        return result;

    std::vector<char> matched(m_order.size(), 0);
    markMailMatches(query, matched);
    for (std::size_t entry = 0; entry < matched.size(); ++entry) {
        if (matched[entry] || prefixMatches(entry, query))
            result.append(m_addresses[m_order[entry]]);
    }
    for (qsizetype g = 0; g < m_groups.size(); ++g) {
        if (!m_groupNames[g].isNull() && m_groupNames[g].startsWith(query))
            result.append(m_groups[g]);
    }
    return result;
}

// One search over all mails at once instead of one per address: a hit that runs past the end of
// its own mail into the next one is not a match, and the search goes on from the next position.
void SuggestionMatcher::markMailMatches(QStringView query, std::vector<char>& matched) const {
    const QStringView mails(m_mails);
    qsizetype from = 0;
    while (true) {
        const qsizetype hit = mails.indexOf(query, from);
        if (hit < 0)
            return;
        const auto next = std::upper_bound(m_mailStart.begin(), m_mailStart.end(), hit);
        const auto entry = std::size_t(next - m_mailStart.begin() - 1);
        if (hit + query.size() <= *next) {
            matched[entry] = 1;
            from = *next; // this mail is matched; go on with the next one
        } else {
            from = hit + 1;
        }
    }
}

bool SuggestionMatcher::prefixMatches(std::size_t entry, QStringView query) const {
    const char16_t first = query.front().unicode();
    const std::size_t base = entry * kPrefixFields;
    for (std::size_t f = base; f < base + kPrefixFields; ++f) {
        // Most fields differ from the query at their first unit; compare that before the rest.
        if (m_prefixFirst[f] != first)
            continue;
        const qsizetype start = m_prefixStart[f];
        const qsizetype length = m_prefixStart[f + 1] - start;
        if (length >= query.size() && QStringView(m_prefixes).sliced(start, query.size()) == query)
            return true;
    }
    return false;
}

std::shared_ptr<ExtensionAddress> SuggestionMatcher::addressForMail(const QString& mail) const {
    const auto it = m_firstByMail.constFind(mail);
    return it == m_firstByMail.cend() ? nullptr : m_addresses[*it];
}

} // namespace velmora
