// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

// The state of the heap a codec or load benchmark runs in, the same for both sides of a pair.
//
// Cold (VELMORA_BENCH_HEAP=cold, the default): before each iteration glibc hands its free
// memory back to the system and a fresh block larger than the caches is touched and freed, so
// the iteration faults in its pages and finds none of the last one's data cached, as the
// program's one run does. Warm (VELMORA_BENCH_HEAP=warm): nothing is done between iterations;
// scripts/run-benchmarks runs it with GLIBC_TUNABLES that stop glibc from handing memory back,
// so the pages stay mapped from one iteration to the next.

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <memory>

namespace velmora::bench {

inline bool coldHeap() {
    static const bool cold = [] {
        const char* heap = std::getenv("VELMORA_BENCH_HEAP");
        return !heap || std::strcmp(heap, "warm") != 0;
    }();
    return cold;
}

// Call first in each iteration; the time it takes is not counted.
inline void prepareHeap(benchmark::State& state) {
    if (!coldHeap())
        return;
    state.PauseTiming();
    {
        constexpr std::size_t kBytes = 32u << 20; // more than the last-level cache
        const std::unique_ptr<char[]> block(new char[kBytes]);
        for (std::size_t i = 0; i < kBytes; i += 64)
            block[i] = char(i);
        benchmark::DoNotOptimize(block.get());
    }
    malloc_trim(0);
    state.ResumeTiming();
}

} // namespace velmora::bench
