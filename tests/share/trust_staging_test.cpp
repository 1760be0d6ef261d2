// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Process.h"
#include "RecordingDesktop.h"
#include "TestSupport.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QUrl>
#include <QUrlQuery>

#include <functional>
#include <sys/stat.h>
#include <unistd.h>

using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

const QString kMainApplication = QStringLiteral("it.zemlo.velmora");

using Outcome = velmora::test::Ran;

// The real binary, headless, on a container and a desktop of its own.
class Trust : public ::testing::Test {
protected:
    // during runs once the share has made its own folder, before any item is copied when copies
    // are slowed. Earlier runs' folders are gone first, as after their grace period.
    Outcome share(const QStringList& items, int copyDelayMs = 0,
                  const std::function<void()>& during = {}) {
        QDir(staging()).removeRecursively();
        const velmora::test::ScopedEnv delay("VELMORA_TEST_COPY_DELAY_MS",
                                             copyDelayMs > 0 ? QByteArray::number(copyDelayMs)
                                                             : QByteArray());
        velmora::test::Process p(QStringLiteral(VELMORA_SHARE),
                                 QStringList{QStringLiteral("--headless")} + items);
        if (during) {
            const QDeadlineTimer deadline(30000);
            while (ownFolder().isNull() && !deadline.hasExpired() && p.running())
                ::usleep(10000); // polled against the deadline
            during();
        }
        if (!p.finish(120000))
            return {};
        return {p.exitCode(), p.out(), p.err()};
    }
    // The staged names the one launch's URL carries.
    QStringList attachedNames() {
        const QStringList urls = desktop.takeArguments(kMainApplication);
        if (urls.size() != 1)
            return {QStringLiteral("launches: %1").arg(urls.size())};
        QStringList names;
        for (const QString& staged : velmora::test::attachmentPaths(
                 QUrlQuery(QUrl(urls.first()).query(QUrl::FullyEncoded))))
            names.append(QFileInfo(staged).fileName());
        names.sort();
        return names;
    }
    QString staging() const { return container.dataFolder() + QStringLiteral("/ShareFull"); }
    // The folder of the share that ran last; null before it has made one.
    QString ownFolder() const {
        const QFileInfoList shares =
            QDir(staging()).entryInfoList({QStringLiteral("share-*")}, QDir::Dirs);
        return shares.size() == 1 ? shares.first().filePath() : QString();
    }
    QString path(const QString& name) const { return files.filePath(name); }
    QString make(const QString& name, qint64 size = 1) {
        QByteArray bytes(size, '\0');
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
        QDir().mkpath(QFileInfo(path(name)).absolutePath());
        writeFile(path(name), bytes);
        return path(name);
    }
    QString fifo(const QString& name) {
        const QString p = path(name);
        EXPECT_EQ(::mkfifo(QFile::encodeName(p).constData(), 0600), 0);
        return p;
    }
    static struct stat statOf(const QString& p) {
        struct stat st {};
        ::stat(QFile::encodeName(p).constData(), &st);
        return st;
    }

    velmora::test::RecordingDesktop desktop;
    velmora::test::TempContainer container;
    QTemporaryDir files;
};

// Every item given is either in the URL or named on stderr, and the exit status says which.
TEST_F(Trust, EveryItemIsAttachedOrNamedWithItsReason) {
    desktop.addApplication(kMainApplication);
    // 12 MiB at a second per MiB: past the intake's wait of about 10 s.
    const QString big = make(QStringLiteral("big.bin"), 12 << 20);
    const QString sparse = path(QStringLiteral("sparse.img"));
    {
        QFile f(sparse);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        ASSERT_TRUE(f.resize(qint64(64) << 20));
        ASSERT_TRUE(f.seek(qint64(40) << 20));
        f.write(QByteArray(1 << 20, 'd'));
    }
    make(QStringLiteral("f/a.txt"));
    make(QStringLiteral("f/sub/b.txt"));
    fifo(QStringLiteral("f/sub/pipe"));
    const struct {
        const char* name;
        QStringList items;
        int delayMs;
        std::function<void()> during;
        QStringList attached;
        QStringList named; // on stderr as not attached
        QStringList same;  // staged with the content given
    } rows[] = {
        {"slow copy with files queued behind it, one vanishing before its copy",
         {big, make(QStringLiteral("one.txt")), make(QStringLiteral("two.txt")),
          make(QStringLiteral("gone.txt"))},
         1000,
         [this] { QFile::remove(path(QStringLiteral("gone.txt"))); },
         {QStringLiteral("big.bin"), QStringLiteral("one.txt"), QStringLiteral("two.txt")},
         {QStringLiteral("gone.txt")},
         {QStringLiteral("big.bin"), QStringLiteral("two.txt")}},
        {"folder with a pipe inside, a pipe of its own and a sparse file",
         {path(QStringLiteral("f")), fifo(QStringLiteral("lone-pipe")), sparse},
         0,
         {},
         {QStringLiteral("f"), QStringLiteral("sparse.img")},
         {QStringLiteral("f/sub/pipe"), QStringLiteral("lone-pipe")},
         {QStringLiteral("f/a.txt"), QStringLiteral("f/sub/b.txt"), QStringLiteral("sparse.img")}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Outcome r = share(row.items, row.delayMs, row.during);
        EXPECT_EQ(r.exitCode, 4) << r.err.toStdString();
        EXPECT_EQ(attachedNames(), row.attached);
        EXPECT_EQ(r.err.count(QStringLiteral("not attached: ")), row.named.size())
            << r.err.toStdString();
        for (const QString& named : row.named)
            EXPECT_TRUE(r.err.contains(path(named) + QStringLiteral(": "))) << r.err.toStdString();
        for (const QString& same : row.same)
            EXPECT_EQ(readFile(ownFolder() + u'/' + same), readFile(path(same)))
                << same.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(ownFolder() + QStringLiteral("/f/sub/pipe")));
    // The holes stay holes: no more blocks than the source (give or take metadata).
    EXPECT_LE(statOf(ownFolder() + QStringLiteral("/sparse.img")).st_blocks,
              statOf(sparse).st_blocks + 16);
}

// Headless, a hand-off that cannot happen ends with status 3 and says which entry it needs.
TEST_F(Trust, HeadlessHandOffFailureNamesTheEntry) {
    const QString notExecutable = path(QStringLiteral("velmora-not-executable"));
    writeFile(notExecutable, "#!/bin/sh\n");
    const QString badInterpreter = path(QStringLiteral("velmora-bad-interpreter"));
    writeFile(badInterpreter, "#!/nonexistent/sh\n");
    QFile::setPermissions(badInterpreter, QFile::ReadOwner | QFile::ExeOwner);
    const struct {
        const char* name;
        QByteArray exec;
    } rows[] = {
        {"program not executable", QFile::encodeName(notExecutable) + " %U"},
        {"interpreter missing", QFile::encodeName(badInterpreter) + " %U"},
    };
    const QString note = make(QStringLiteral("note.txt"));
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        writeFile(desktop.entryPath(kMainApplication),
                  "[Desktop Entry]\nType=Application\nName=V\nExec=" + row.exec + "\n");
        const Outcome r = share({note});
        EXPECT_EQ(r.exitCode, 3);
        EXPECT_TRUE(r.err.contains(QStringLiteral("it.zemlo.velmora.desktop")))
            << r.err.toStdString();
    }
}

} // namespace
