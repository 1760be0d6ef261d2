// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/ContactBook.h"
#include "recipients/SuggestionMatcher.h"
#include "views/ViewController.h"

#include <QPointer>
#include <QRect>
#include <QVariantList>

#include <optional>

namespace velmora {

class ExtensionSuggestionTableView;
class ExtensionTokenField;
class FlippedView;
class SuggestionListModel;

// The recipient suggestions: loads the contacts, matches typed text against them, and shows the
// matches in a list just below the field being typed in. The contacts are read in the
// background once the view is built; the lookups below wait for them when they are asked for
// before they are ready, suggestForTextField() answers once they are. Its view is a plain child
// panel of the composer's view (not a window of its own), added last so that it lies above the
// rest. Its parent object is the composer (see SuggestionHost).
class ExtensionSuggestionController : public ViewController {
    Q_OBJECT
public:
    // The list's distance below the field, and its height.
    static constexpr int kGap = 5;
    static constexpr int kHeight = 200;

    explicit ExtensionSuggestionController(const QRect& frame, QObject* parent = nullptr);
    // Hides the popup first; deletes the view unless a parent widget has taken it over.
    ~ExtensionSuggestionController() override;

    ExtensionSuggestionTableView* table() const;

    bool visible() const { return m_visible; }
    ExtensionTokenField* tokenField() const;

    const SuggestionMatcher::Addresses& addresses() const { return matcher().addresses(); }
    const SuggestionMatcher::Groups& groups() const { return matcher().groups(); }
    // Whether the contacts have been read (they have not before the view is built).
    bool contactsReady() const;
    // Declared for the composer's accounts; nothing fills or reads it.
    const QVariantList& accounts() const { return m_accounts; }
    // The rows the list shows.
    const Suggestions& GetArray() const { return m_data; }

    Suggestions objectsForString(const QString& text) const {
        return matcher().objectsForString(text);
    }
    std::shared_ptr<ExtensionAddress> addressForMail(const QString& mail) const {
        return matcher().addressForMail(mail);
    }

    // Shows the suggestions for text below field. Before the contacts are ready the main thread
    // does not wait: once they are, the field is asked again for the text it holds then, so the
    // keystrokes typed meanwhile are answered, with the latest text.
    void suggestForTextField(ExtensionTokenField* field, const QString& text);

    // Opens the list below field with the results, or only replaces its rows when it is open.
    void showForTextField(ExtensionTokenField* field, const Suggestions& arr);
    // Replaces the rows; the list reloads (or hides, when there are none) once the current
    // event is done.
    void populateSuggestion(const Suggestions& arr);
    void cancelSuggestions();
    // Adopts table as the list: one row selected at a time, rows from this controller.
    void AssignTable(ExtensionSuggestionTableView* table);

    void selectNext();
    void selectPrev();
    std::optional<Recipient> objectForSelectedRow() const;
    // The object of the row; none when row is not below the number of rows.
    std::optional<Recipient> objectForRow(qsizetype row) const;
    // Takes the row's object into the field in place of the token being typed.
    void insertObjectFoRow(qsizetype row);

protected:
    // Builds the root panel and loads the contacts, the first time view() is asked for.
    void loadView() override;

private:
    void reloadTable();
    const SuggestionMatcher& matcher() const;

    QRect m_frame;
    QPointer<ExtensionSuggestionTableView> m_table;
    SuggestionListModel* m_model = nullptr; // owned by this controller
    bool m_visible = false;
    QPointer<ExtensionTokenField> m_tokenField;
    Suggestions m_data;
    std::shared_ptr<ContactBook> m_book;          // from the view's building on
    QPointer<ExtensionTokenField> m_waitingField; // typed in before the contacts were ready
    QVariantList m_accounts;
};

} // namespace velmora
