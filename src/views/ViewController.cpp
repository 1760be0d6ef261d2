// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "views/ViewController.h"

#include "views/FlippedView.h"

namespace velmora {

FlippedView* ViewController::view() {
    if (!m_view) {
        loadView();
        viewDidLoad();
    }
    return m_view;
}

void ViewController::releaseView() {
    if (m_view && !m_view->parent())
        delete m_view.data();
}

} // namespace velmora
