// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "AttachmentFiles.h"
#include "TestSupport.h"
#include "composer/ExtensionComposerController.h"
#include "platform/ExtensionContext.h"

#include <QPalette>
#include <QWidget>

#include <memory>

namespace velmora::test {

// A composer in a 600 x 400 window on a container with one account and a few contacts, filled
// as a share fills it: a subject, a body with a paragraph and a link, a picture and a text file
// attached, a chosen contact and "al" typed in To (so the suggestion list is open), and a Cc.
class FilledComposer : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // A dark session's colours, as KDE's and GNOME's dark themes hand them to Qt applications.
    static QPalette darkPalette();
    static QPalette lightPalette();

    IsolatedDesktop desktop;
    TempContainer container;
    std::shared_ptr<ExtensionContext> context;
    QWidget window;
    std::unique_ptr<ExtensionComposerController> composer;
    QStringList attachmentNames;
};

} // namespace velmora::test
