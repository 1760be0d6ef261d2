#pragma once

#include "composer/ExtensionComposerController.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace velmora {

class ExtensionContext;
class FlippedView;

// The entry of one share: builds the 600 x 400 root view, resets the staging folder, installs
// the composer in it and starts taking the shared items in; the composer is filled when the
// intake has finished. The composer is a child object, so it lives as long as this controller.
class ShareViewController : public QObject {
    Q_OBJECT
public:
    explicit ShareViewController(std::shared_ptr<ExtensionContext> context,
                                 QObject* parent = nullptr);
    // Deletes the view unless a parent widget has taken it over.
    ~ShareViewController() override;

    static QString nibName() { return QStringLiteral("ShareViewController"); }

    // The root view, built on first use (which also starts the intake).
    FlippedView* view();
    bool isViewLoaded() const { return !m_view.isNull(); }

    std::shared_ptr<ExtensionContext> extensionContext() const { return m_context; }
    ExtensionComposerController* composer() const { return m_composer; }
    void setComposer(ExtensionComposerController* composer) { m_composer = composer; }

protected:
    virtual void loadView();

private:
    std::shared_ptr<ExtensionContext> m_context;
    QPointer<FlippedView> m_view;
    QPointer<ExtensionComposerController> m_composer;
};

} // namespace velmora
