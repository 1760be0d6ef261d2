// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "AttachmentFiles.h"
#include "TestSupport.h"
#include "composer/ExtensionComposerController.h"
#include "platform/ExtensionContext.h"

#include <QWidget>

#include <memory>

namespace velmora::test {

// The composer in a 600 x 400 window on a container of the test's own (accounts with aliases,
// some the menu leaves out, and three contacts), over a desktop of its own. Thumbnails are made
// at once; sends are recorded in launches instead of reaching the main application.
class ComposerWindow : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    void writeAccounts(const char* json);
    // Shows a new composer in the window, in place of the one there.
    void open();
    // Fills the composer as a share does: subject, body with a link, two attachments, a Cc with
    // a notice, a chosen contact and "al" typed in To (the suggestion list open).
    void fill();
    // An item of the one send recorded; null when it is missing.
    QString sentItem(const char* key) const;

    IsolatedDesktop desktop;
    TempContainer container;
    QList<ExtensionContext::Outcome> outcomes;
    QStringList launches;
    std::shared_ptr<ExtensionContext> context;
    QWidget window;
    std::unique_ptr<ExtensionComposerController> composer;
};

} // namespace velmora::test
