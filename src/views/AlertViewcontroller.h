// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "views/ViewController.h"

namespace velmora {

// A small placeholder view controller whose view is a 400 x 200 red panel.
class AlertViewcontroller : public ViewController {
    Q_OBJECT
public:
    explicit AlertViewcontroller(QObject* parent = nullptr);

protected:
    void loadView() override;
};

} // namespace velmora
