// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "composer/ExtensionComposerController.h"
#include "views/ViewController.h"

#include <QPointer>

#include <memory>

namespace velmora {

class ExtensionContext;

// The entry of one share: builds the 600 x 400 root view, resets the staging folder, installs
// the composer in it and starts taking the shared items in; the composer is filled when the
// intake has finished. The composer is a child object, so it lives as long as this controller.
class ShareViewController : public ViewController {
    Q_OBJECT
public:
    explicit ShareViewController(std::shared_ptr<ExtensionContext> context,
                                 QObject* parent = nullptr);
    static QString nibName() { return QStringLiteral("ShareViewController"); }

    std::shared_ptr<ExtensionContext> extensionContext() const { return m_context; }
    ExtensionComposerController* composer() const { return m_composer; }
    void setComposer(ExtensionComposerController* composer) { m_composer = composer; }

protected:
    // Builds the root view, the first time view() is asked for; starts the intake.
    void loadView() override;

private:
    std::shared_ptr<ExtensionContext> m_context;
    QPointer<ExtensionComposerController> m_composer;
};

} // namespace velmora
