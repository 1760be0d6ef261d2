// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

// The composer's layout in points: the column's margins, separators and fixed heights.
namespace velmora::composer_metrics {

inline constexpr int kTopMargin = 10;
inline constexpr int kSideMargin = 15;
inline constexpr int kGap = 5;          // above and below each separator
inline constexpr int kSeparator = 1;    // a separator line's thickness
inline constexpr int kFieldHeight = 18; // To and Subject
inline constexpr int kBodyHeight = 100;
inline constexpr int kMinBodyHeight = 36; // what the body keeps when the Cc/Bcc row takes room
inline constexpr int kStripHeight = 168;
inline constexpr int kButtonWidth = 60;
inline constexpr int kButtonHeight = 20;
inline constexpr int kButtonGap = 5;
// The space a layout leaves between two neighbouring controls when none is asked for.
inline constexpr int kStandardSpacing = 8;
// Between From's label and its pop-up.
inline constexpr int kLabelGap = 5;
// A textured rounded pop-up's own height.
inline constexpr int kPopUpHeight = 22;

} // namespace velmora::composer_metrics
