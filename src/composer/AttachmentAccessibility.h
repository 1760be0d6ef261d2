// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

namespace velmora {

// Registers the attachment strip's accessibility interfaces with Qt: the strip is a list, each
// attachment a list item named by its file name (selectable, and selected with the strip's
// selection), and the cards of items not attached yet a static text saying what each card says.
// Once per process; later calls do nothing.
void installAttachmentAccessibility();

} // namespace velmora
