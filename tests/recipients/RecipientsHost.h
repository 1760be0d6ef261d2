// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "TestSupport.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/ExtensionSuggestionTableView.h"
#include "recipients/ExtensionTokenField.h"
#include "recipients/SuggestionHost.h"
#include "recipients/SuggestionListModel.h"
#include "views/FlippedView.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTest>

namespace velmora::test {

// Stands in for the composer: a 600 x 400 window with the To field, a subject after it in the
// focus chain, and the suggestion controller as its child, its list added last. Counts the
// recipient notifications and the keys that reach it past the field.
class RecipientsHost : public QWidget, public SuggestionHost {
public:
    RecipientsHost();

    void manageAddresses() override { ++manageCalls; }

    // Waits (through the event loop) until the list shows exactly rows rows.
    bool waitForRows(int rows);
    int rowCount() const { return controller->table()->model()->rowCount(); }
    QStringList rowTexts() const;
    // The field's tokens as texts: "[pretty]" for a committed token, the text for typed text.
    QStringList tokens() const;

    ExtensionTokenField* field = nullptr;
    QLineEdit* subject = nullptr;
    ExtensionSuggestionController* controller = nullptr;
    int manageCalls = 0;
    QList<int> keysSeen;

protected:
    void keyPressEvent(QKeyEvent* event) override { keysSeen.append(event->key()); }
};

// A shared container holding the contacts the tests type against: "ann" matches Annie Hall
// (rank 9), Ann Smith (3) and hannah@w.test (1, by mail); "bulk" matches 30 addresses.
class RecipientsTest : public ::testing::Test {
protected:
    void SetUp() override;
    // Writes the contacts; skips the test where property lists cannot be written.
    void writeContacts();
    // Shows the stand-in composer, active, with the focus in the To field.
    void showHost();
    void typeAndWait(const QString& text, int rows);

    TempContainer container;
    std::unique_ptr<RecipientsHost> host;
};

} // namespace velmora::test
