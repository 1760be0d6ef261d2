// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace velmora::fuzz {

// The fuzzer's bytes as text, read as UTF-8 the way a URL or a body reaches the program.
inline QString text(const uint8_t* data, size_t size) {
    return QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
}

// Stops the run where an invariant fails, so that libFuzzer keeps the input.
inline void check(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace velmora::fuzz
