// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/Recipient.h"

#include <QList>
#include <QString>

#include <memory>
#include <vector>

namespace velmora {

class Suggestions;

// Matches typed text against the contacts: the suggestions for a recipient being typed, and the
// contact that owns an exact mail address.
class SuggestionMatcher {
public:
    using Addresses = QList<std::shared_ptr<ExtensionAddress>>;
    using Groups = QList<std::shared_ptr<ExtensionGroup>>;

    SuggestionMatcher();
    // Takes the contacts as loaded; the records must not change afterwards, since their
    // lower-cased fields are worked out here, once.
    SuggestionMatcher(Addresses addresses, Groups groups);

    const Addresses& addresses() const;
    const Groups& groups() const;

    // The addresses whose lower-cased mail contains the lower-cased text, or whose first name,
    // last name, full name, company or nickname starts with it, by rank (highest first, equal
    // ranks in file order); then the groups with members whose name starts with it. An empty
    // text matches nothing.
    Suggestions objectsForString(const QString& text) const;
    // The first address whose mail is exactly mail (case-sensitive, untrimmed), or null.
    std::shared_ptr<ExtensionAddress> addressForMail(const QString& mail) const;

    struct Index;

private:
    std::shared_ptr<const Index> m_index;
};

// The result of one match: a list of addresses and groups that refers into the contacts rather
// than copying them, so that a first letter matching most of a large book stays cheap. Copies
// share the rows.
class Suggestions {
public:
    Suggestions() = default;

    qsizetype size() const { return m_rows ? qsizetype(m_rows->size()) : 0; }
    bool isEmpty() const { return size() == 0; }
    Recipient at(qsizetype row) const;
    QList<Recipient> toList() const;

private:
    friend class SuggestionMatcher;
    Suggestions(std::shared_ptr<const SuggestionMatcher::Index> index, std::vector<quint32> rows);

    std::shared_ptr<const SuggestionMatcher::Index> m_index;
    // An address by its index in the contacts, a group by the number of addresses plus its own.
    std::shared_ptr<const std::vector<quint32>> m_rows;
};

} // namespace velmora
