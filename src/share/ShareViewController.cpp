// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "share/ShareViewController.h"

#include "bridge/ConstVars.h"
#include "bridge/ExtensionUtilities.h"
#include "composer/ExtensionComposerController.h"
#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "views/FlippedView.h"

namespace velmora {

namespace {

const QRect kFrame(0, 0, 600, 400);

} // namespace

ShareViewController::ShareViewController(std::shared_ptr<ExtensionContext> context, QObject* parent)
    : ViewController(parent)
    , m_context(std::move(context)) {}

void ShareViewController::loadView() {
    // A FlippedView follows its parent's size, so the root grows with the window around it.
    auto* root = new FlippedView(kFrame);
    setView(root);

    const QString service(ConstVars::shareService);
    // Files of an earlier share must never travel with this one.
    ExtensionUtilities::ShareInit(service);

    auto* composer = new ExtensionComposerController(kFrame, m_context, this);
    m_composer = composer;

    // The intake starts before the composer builds its views: its first 0.1 s wait then runs
    // while they are built. The message still reaches the composer after they are, since it is
    // handed over on the main thread, which builds them below. The completion runs on the intake's
    // worker. Whether the composer still exists is asked on the main thread, where it would be
    // deleted; update() then queues the work once more.
    QPointer<ExtensionComposerController> target(composer);
    ExtensionUtilities::GetItemForExtension(
        m_context, service,
        [target](const std::shared_ptr<ExtensionMessage>& message,
                 const std::optional<Error>& error) {
            if (error) {
                Log::error(u"[%@] Share Full GetItemForExtension %@", error->text());
                return;
            }
            MainQueue::async([target, message] {
                if (target)
                    target->update(message);
            });
        });

    composer->view()->setParent(root);
}

} // namespace velmora
