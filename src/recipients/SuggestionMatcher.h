#pragma once

#include "recipients/Recipient.h"

#include <QHash>
#include <QList>
#include <QString>

#include <memory>
#include <vector>

namespace velmora {

// Matches typed text against the contacts: the suggestions for a recipient being typed, and the
// contact that owns an exact mail address.
class SuggestionMatcher {
public:
    using Addresses = QList<std::shared_ptr<ExtensionAddress>>;
    using Groups = QList<std::shared_ptr<ExtensionGroup>>;

    SuggestionMatcher() = default;
    // Takes the contacts as loaded; the records must not change afterwards, since their
    // lower-cased fields are worked out here, once.
    SuggestionMatcher(Addresses addresses, Groups groups);

    const Addresses& addresses() const { return m_addresses; }
    const Groups& groups() const { return m_groups; }

    // The addresses whose lower-cased mail contains the lower-cased text, or whose first name,
    // last name, full name, company or nickname starts with it, by rank (highest first, equal
    // ranks in file order); then the groups with members whose name starts with it. An empty
    // text matches nothing.
    QList<Recipient> objectsForString(const QString& text) const;
    // The first address whose mail is exactly mail (case-sensitive, untrimmed), or null.
    std::shared_ptr<ExtensionAddress> addressForMail(const QString& mail) const;

private:
    static constexpr int kPrefixFields = 5; // first name, last name, full name, company, nickname

    void markMailMatches(QStringView query, std::vector<char>& matched) const;
    bool prefixMatches(std::size_t entry, QStringView query) const;

    Addresses m_addresses;
    Groups m_groups;

    // The lower-cased fields, laid out by entry; entries are the addresses in result order (rank
    // descending, file order within a rank), so that matching needs no sort.
    std::vector<qsizetype> m_order;       // entry -> index in m_addresses
    QString m_mails;                      // every lower-cased mail, back to back
    std::vector<qsizetype> m_mailStart;   // entry -> start in m_mails; one extra at the end
    QString m_prefixes;                   // the lower-cased prefix fields of every entry
    std::vector<qsizetype> m_prefixStart; // entry * kPrefixFields + field -> start; one extra
    std::vector<char16_t> m_prefixFirst;  // first unit of each prefix field (0 when empty)
    QHash<QString, qsizetype> m_firstByMail;
    QList<QString> m_groupNames; // lower-cased; null for a group without members
};

} // namespace velmora
