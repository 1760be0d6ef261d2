// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Process.h"
#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"
#include "bridge/ShareFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

#include <memory>
#include <thread>
#include <vector>

using namespace velmora;

namespace {

constexpr int kBytes = 256 * 1024;

// A staged buffer holds one tag repeated: complete when its size is right and every tag is the
// same, so a file written by two writers at once, or cut short, is caught.
bool isCompleteBuffer(const QByteArray& bytes) {
    const qsizetype end = bytes.indexOf(';');
    if (bytes.size() != kBytes || end <= 0)
        return false;
    const QByteArray tag = bytes.left(end + 1);
    QByteArray expected = tag.repeated(kBytes / tag.size() + 1);
    expected.truncate(kBytes);
    return bytes == expected;
}

TEST(StagingConcurrency, ThreadsAndProcessesStagingImagePngGetDistinctCompleteFiles) {
    const velmora::test::TempContainer container;
    ExtensionUtilities::ShareInit(QStringLiteral("ShareFull"));

    constexpr int kThreads = 8;
    constexpr int kPerThread = 10;
    constexpr int kPerProcess = 40;

    std::vector<std::unique_ptr<velmora::test::Process>> processes;
    for (int p = 0; p < 2; ++p)
        processes.push_back(std::make_unique<velmora::test::Process>(
            QStringLiteral(STAGE_TOOL),
            QStringList{QString::number(kPerProcess), QString::number(kBytes)}));

    std::vector<QStringList> fromThreads(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t, &fromThreads] {
            for (int i = 0; i < kPerThread; ++i) {
                const QByteArray tag =
                    "thread" + QByteArray::number(t) + '-' + QByteArray::number(i) + ';';
                QByteArray bytes = tag.repeated(kBytes / tag.size() + 1);
                bytes.truncate(kBytes);
                fromThreads[t] +=
                    ExtensionUtilities::ShareDatas(QStringLiteral("ShareFull"), {bytes});
            }
        });
    }
    for (auto& t : threads)
        t.join();

    QStringList all;
    for (const QStringList& l : fromThreads)
        all += l;
    for (const auto& p : processes) {
        ASSERT_TRUE(p->finish(60000));
        ASSERT_EQ(p->exitCode(), 0) << p->err().toStdString();
        all += p->out().split(u'\n', Qt::SkipEmptyParts);
    }

    const int expected = kThreads * kPerThread + 2 * kPerProcess;
    ASSERT_EQ(all.size(), expected);
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()).size(), expected) << "two writers got one name";
    QSet<QByteArray> contents;
    for (const QString& path : all) {
        const QByteArray bytes = velmora::test::readFile(path);
        EXPECT_TRUE(isCompleteBuffer(bytes)) << path.toStdString();
        contents.insert(bytes);
    }
    EXPECT_EQ(contents.size(), expected) << "a buffer was lost or written twice";
    // The threads staged into this share's folder, each process into one of its own.
    QSet<QString> folders;
    for (const QString& path : all)
        folders.insert(QFileInfo(path).path());
    EXPECT_EQ(folders.size(), 1 + int(processes.size()));
    for (const QStringList& l : fromThreads)
        for (const QString& path : l)
            EXPECT_EQ(QFileInfo(path).path(),
                      ShareFolder::current(QStringLiteral("ShareFull"))->path());
    int files = 0;
    for (QDirIterator it(container.dataFolder() + QStringLiteral("/ShareFull"),
                         QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         it.hasNext(); it.next())
        ++files;
    EXPECT_EQ(files, expected) << "temporary files left behind";
}

} // namespace
