// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Staging a large file (1 GiB by default; VELMORA_BENCH_STAGE_MIB changes it) against cp(1) of
// the same file into the same folder. Written data is flushed outside the timed region, so each
// run starts with a clean page cache for writing and a warm one for reading, for both.
#include "bridge/ExtensionUtilities.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <functional>
#include <unistd.h>
#include <vector>

namespace {

struct Fixture {
    QTemporaryDir dir;
    QString source;
    qint64 bytes = 0;

    Fixture() {
        const qint64 mib = qEnvironmentVariableIsSet("VELMORA_BENCH_STAGE_MIB")
                               ? qEnvironmentVariableIntValue("VELMORA_BENCH_STAGE_MIB")
                               : 1024;
        bytes = mib * 1024 * 1024;
        source = dir.filePath(QStringLiteral("source.bin"));
        QFile f(source);
        if (!f.open(QIODevice::WriteOnly))
            std::abort();
        QByteArray chunk(1024 * 1024, Qt::Uninitialized);
        for (qsizetype i = 0; i < chunk.size(); ++i)
            chunk[i] = char((i * 131) ^ (i >> 7));
        for (qint64 i = 0; i < mib; ++i)
            f.write(chunk);
        f.close();
        qputenv("VELMORA_GROUP_CONTAINER",
                QFile::encodeName(dir.filePath(QStringLiteral("container"))));
        qputenv("VELMORA_BUNDLE_ID", "it.zemlo.velmora.share");
        ::sync();
    }
    QString stage() const { return dir.filePath(QStringLiteral("container/SharedData/ShareFull")); }
};

const Fixture& fixture() {
    static const Fixture instance;
    return instance;
}

double timedMs(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

void freshStage() {
    // Earlier shares' folders stay for minutes; the benchmark starts each share in an empty
    // staging folder, as a first share would.
    QDir(fixture().stage()).removeRecursively();
    velmora::ExtensionUtilities::ShareInit(QStringLiteral("ShareFull"));
    ::sync();
}

// Each iteration stages the file and copies it with cp, alternating which goes first, so drift
// of the machine (writeback, other load) falls on both alike. Reported: the medians and their
// ratio.
void BM_StageFileVersusCp(benchmark::State& state) {
    const Fixture& f = fixture();
    std::vector<double> ours;
    std::vector<double> cp;
    bool oursFirst = true;
    for (auto _ : state) {
        const auto stage = [&] {
            freshStage();
            ours.push_back(timedMs([&] {
                if (velmora::ExtensionUtilities::ShareFiles(QStringLiteral("ShareFull"), {f.source})
                        .size() != 1)
                    state.SkipWithError("staging failed");
            }));
        };
        const auto copy = [&] {
            freshStage();
            cp.push_back(timedMs([&] {
                if (QProcess::execute(QStringLiteral("cp"),
                                      {f.source, f.stage() + QStringLiteral("/source.bin")}) != 0)
                    state.SkipWithError("cp failed");
            }));
        };
        if (oursFirst) {
            stage();
            copy();
        } else {
            copy();
            stage();
        }
        oursFirst = !oursFirst;
        state.SetIterationTime((ours.back() + cp.back()) / 1e3);
    }
    const auto median = [](std::vector<double> v) {
        std::sort(v.begin(), v.end());
        return v.empty() ? 0.0 : v[v.size() / 2];
    };
    state.counters["stage_ms"] = median(ours);
    state.counters["cp_ms"] = median(cp);
    state.counters["ratio"] = median(ours) / median(cp);
    state.counters["MiB"] = double(f.bytes) / (1024 * 1024);
}

BENCHMARK(BM_StageFileVersusCp)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(10);

} // namespace
