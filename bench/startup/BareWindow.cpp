// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The peer of the start-up benchmark: the least a Qt Widgets program does to show an empty
// window of the composer's size.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QWidget window;
    window.setFixedSize(600, 400);
    window.show();
    return QApplication::exec();
}
