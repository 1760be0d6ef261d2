// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "views/FlippedView.h"

#include <QObject>
#include <QPointer>

namespace velmora {

// The owner of one root view that is built on first use: view() runs loadView(), which hands the
// view over with setView(), and then viewDidLoad(). The view belongs to the parent widget that
// takes it; one that none has taken is deleted with its controller.
class ViewController : public QObject {
    Q_OBJECT
public:
    explicit ViewController(QObject* parent = nullptr)
        : QObject(parent) {}
    ~ViewController() override { releaseView(); }

    // The root view, loaded on first use.
    FlippedView* view();
    bool isViewLoaded() const { return !m_view.isNull(); }

protected:
    virtual void loadView() = 0;
    virtual void viewDidLoad() {}
    void setView(FlippedView* view) { m_view = view; }
    // The view when it has been loaded, without loading it.
    FlippedView* loadedView() const { return m_view; }
    // Deletes the view now unless a parent widget has taken it: for the destructor of a
    // controller whose view calls back into it while being destroyed.
    void releaseView();

private:
    QPointer<FlippedView> m_view;
};

} // namespace velmora
