// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace velmora {

// The first page of a PDF file rendered to fit size, on white; null when the file is no
// readable PDF (missing, damaged, locked by a password, without pages). Safe on any thread.
QImage firstPageOfPdf(const QString& path, const QSize& size);

} // namespace velmora
