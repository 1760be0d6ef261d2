// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "views/AlertViewcontroller.h"

#include "views/FlippedView.h"

#include <QPainter>

namespace velmora {

AlertViewcontroller::AlertViewcontroller(QObject* parent)
    : ViewController(parent) {}

void AlertViewcontroller::loadView() {
    setView(new FlippedView(QRect(0, 0, 400, 200), [](FlippedView* view, const QRect& dirty) {
        QPainter(view).fillRect(dirty, Qt::red);
    }));
}

} // namespace velmora
