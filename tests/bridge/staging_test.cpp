// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"
#include "bridge/ShareFolder.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <sys/stat.h>

using namespace velmora;
using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

const QString kService = QStringLiteral("ShareFull");

class Staging : public ::testing::Test {
protected:
    void SetUp() override {
        ExtensionUtilities::ShareInit(kService);
        log.clear();
    }

    // This share's own folder in the staging folder.
    QString stage() const {
        const auto folder = ShareFolder::current(kService);
        return folder ? folder->path() : QString();
    }
    QString source(const QString& relative, const QByteArray& bytes) const {
        const QString path = sources.filePath(relative);
        writeFile(path, bytes);
        return path;
    }
    // Every entry of the staging folder, hidden ones included, so leftovers show.
    QStringList stagedEntries() const {
        return QDir(stage()).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    velmora::test::TempContainer container;
    QTemporaryDir sources;
    LogCapture log;
};

TEST(StagingInit, FirstRunReportsTheMissingFolderTwiceAndCreatesIt) {
    const velmora::test::TempContainer container;
    LogCapture log;
    ExtensionUtilities::ShareInit(kService);
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 2) << lines.join(u'\n').toStdString();
    EXPECT_TRUE(lines[0].startsWith(u"[***ERROR***] shareInit delete "));
    EXPECT_TRUE(lines[1].startsWith(u"[***ERROR***] shareInit create "));
    // The creation step repeats the removal's error, as the slot is shared.
    EXPECT_EQ(lines[0].mid(QStringLiteral("[***ERROR***] shareInit delete ").size()),
              lines[1].mid(QStringLiteral("[***ERROR***] shareInit create ").size()));
    const QString staging = container.dataFolder() + QStringLiteral("/ShareFull");
    EXPECT_EQ(QDir(staging).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{QFileInfo(ShareFolder::current(kService)->path()).fileName()});
}

TEST_F(Staging, ASecondShareStartsEmptyAndLeavesTheFirstSharesFilesWithoutALogLine) {
    const QStringList first =
        ExtensionUtilities::ShareFiles(kService, {source(QStringLiteral("a.txt"), "a")});
    const QString firstFolder = stage();
    writeFile(stage() + QStringLiteral("/deep/inner.txt"), "x");
    log.clear();
    ExtensionUtilities::ShareInit(kService);
    EXPECT_NE(stage(), firstFolder);
    EXPECT_TRUE(stagedEntries().isEmpty());
    // The main application may still be reading what the first share sent.
    EXPECT_EQ(readFile(first.value(0)), "a");
    EXPECT_EQ(readFile(firstFolder + QStringLiteral("/deep/inner.txt")), "x");
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join(u'\n').toStdString();
    // A same-named file of the second share gets its own path.
    EXPECT_EQ(ExtensionUtilities::ShareFiles(kService, {source(QStringLiteral("a.txt"), "b")}),
              QStringList{stage() + QStringLiteral("/a.txt")});
}

TEST_F(Staging, FilesKeepTheirNamesContentAndModeAndCollideIntoNumberedNames) {
    const QString first = source(QStringLiteral("one/photo.jpg"), "first");
    const QString second = source(QStringLiteral("two/photo.jpg"), "second");
    const QString readme = source(QStringLiteral("README"), "readme");
    ::chmod(QFile::encodeName(readme).constData(), 0750);

    const QStringList staged = ExtensionUtilities::ShareFiles(kService, {first, second, readme});
    EXPECT_EQ(staged, (QStringList{stage() + QStringLiteral("/photo.jpg"),
                                   stage() + QStringLiteral("/photo_1.jpg"),
                                   stage() + QStringLiteral("/README")}));
    EXPECT_EQ(readFile(staged[0]), "first");
    EXPECT_EQ(readFile(staged[1]), "second");
    struct stat st {};
    ASSERT_EQ(::stat(QFile::encodeName(staged[2]).constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0750u);
    EXPECT_TRUE(log.lines().isEmpty());

    // A later share of the same names continues the numbering.
    EXPECT_EQ(ExtensionUtilities::ShareFiles(kService, {first}),
              QStringList{stage() + QStringLiteral("/photo_2.jpg")});
}

TEST_F(Staging, LargeFileIsCopiedExactly) {
    QByteArray bytes(8 * 1024 * 1024 + 3, Qt::Uninitialized);
    QRandomGenerator rng(7);
    rng.fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
    const QStringList staged =
        ExtensionUtilities::ShareFiles(kService, {source(QStringLiteral("big.bin"), bytes)});
    ASSERT_EQ(staged.size(), 1);
    EXPECT_TRUE(readFile(staged[0]) == bytes);
}

TEST_F(Staging, FolderIsCopiedWholeWithItsLinks) {
    source(QStringLiteral("album/a.jpg"), "A");
    source(QStringLiteral("album/sub/b.jpg"), "B");
    source(QStringLiteral("album/sub/deeper/c.txt"), "C");
    QDir(sources.path()).mkpath(QStringLiteral("album/empty"));
    ASSERT_TRUE(QFile::link(QStringLiteral("sub/b.jpg"),
                            sources.filePath(QStringLiteral("album/link.jpg"))));

    // The clean path names the copy: "album/sub/.." is "album".
    const QStringList staged = ExtensionUtilities::ShareFiles(
        kService, {sources.filePath(QStringLiteral("album/sub/.."))});
    ASSERT_EQ(staged, QStringList{stage() + QStringLiteral("/album")});
    EXPECT_EQ(readFile(staged[0] + QStringLiteral("/a.jpg")), "A");
    EXPECT_EQ(readFile(staged[0] + QStringLiteral("/sub/b.jpg")), "B");
    EXPECT_EQ(readFile(staged[0] + QStringLiteral("/sub/deeper/c.txt")), "C");
    EXPECT_TRUE(QFileInfo(staged[0] + QStringLiteral("/empty")).isDir());
    EXPECT_EQ(QFileInfo(staged[0] + QStringLiteral("/link.jpg")).symLinkTarget(),
              staged[0] + QStringLiteral("/sub/b.jpg"));
    EXPECT_EQ(stagedEntries(), (QStringList{QStringLiteral("album")}));
}

TEST_F(Staging, UnreadableSourcesAreLoggedAndLeftOutWithoutHarmingOthers) {
    const QString fifo = sources.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const QString good = source(QStringLiteral("good.txt"), "good");

    const QStringList staged = ExtensionUtilities::ShareFiles(
        kService, {sources.filePath(QStringLiteral("vanished.txt")), fifo, good});
    EXPECT_EQ(staged, QStringList{stage() + QStringLiteral("/good.txt")});
    const QStringList errors =
        log.linesStartingWith(u"[***ERROR***] Error writing file shareFiles ");
    ASSERT_EQ(errors.size(), 2) << log.lines().join(u'\n').toStdString();
    EXPECT_TRUE(errors[0].contains(QStringLiteral("vanished.txt")));
    EXPECT_TRUE(errors[1].contains(QStringLiteral("pipe")));
    // Nothing half-made stays behind.
    EXPECT_EQ(stagedEntries(), QStringList{QStringLiteral("good.txt")});
}

TEST_F(Staging, ImageDataIsNumberedFromImagePng) {
    const QStringList staged =
        ExtensionUtilities::ShareDatas(kService, {"one", "two", QByteArray()});
    EXPECT_EQ(staged, (QStringList{stage() + QStringLiteral("/image.png"),
                                   stage() + QStringLiteral("/image_1.png"),
                                   stage() + QStringLiteral("/image_2.png")}));
    EXPECT_EQ(readFile(staged[0]), "one");
    EXPECT_EQ(readFile(staged[1]), "two");
    EXPECT_TRUE(QFileInfo(staged[2]).exists());
    EXPECT_EQ(QFileInfo(staged[2]).size(), 0);
    EXPECT_EQ(stagedEntries().size(), 3);
}

TEST(StagingWithoutContainer, EveryOperationLogsItsCoordinationLine) {
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("file")), "x");
    const velmora::test::ScopedEnv container(
        "VELMORA_GROUP_CONTAINER", QFile::encodeName(dir.filePath(QStringLiteral("file/c"))));
    LogCapture log;
    ExtensionUtilities::ShareInit(kService);
    EXPECT_TRUE(
        ExtensionUtilities::ShareFiles(kService, {dir.filePath(QStringLiteral("file"))}).isEmpty());
    EXPECT_TRUE(ExtensionUtilities::ShareDatas(kService, {"png"}).isEmpty());
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 3) << lines.join(u'\n').toStdString();
    EXPECT_TRUE(lines[0].startsWith(u"[***ERROR***] shareInit "));
    EXPECT_TRUE(lines[1].startsWith(u"[***ERROR***] Error shareFiles "));
    EXPECT_TRUE(lines[2].startsWith(u"[***ERROR***] Error shareDatas "));
}

} // namespace
