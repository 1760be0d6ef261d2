// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "bridge/FileNaming.h"

#include <QSet>

using namespace velmora;

TEST(GetGoodPath, ChoosesTheFirstFreeNumberedName) {
    const struct {
        const char* name;
        const char* given;
        QStringList taken;
        const char* expected;
    } rows[] = {
        {"free", "photo.jpg", {}, "/stage/photo.jpg"},
        {"skips-taken-numbers",
         "photo.jpg",
         {"/stage/photo.jpg", "/stage/photo_1.jpg"},
         "/stage/photo_2.jpg"},
        {"no-extension", "README", {"/stage/README"}, "/stage/README_1"},
        {"last-dot-only", "a.tar.gz", {"/stage/a.tar.gz"}, "/stage/a.tar_1.gz"},
        {"dot-file-has-no-extension", ".profile", {"/stage/.profile"}, "/stage/.profile_1"},
        {"trailing-dot", "notes.", {"/stage/notes."}, "/stage/notes._1"},
        {"unicode", "résumé €.pdf", {"/stage/résumé €.pdf"}, "/stage/résumé €_1.pdf"},
        {"parent-cannot-escape", "..", {}, "/stage/file"},
        {"slash-cannot-escape", "../../etc/passwd", {}, "/stage/.._.._etc_passwd"},
        {"empty-name", "", {}, "/stage/file"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QSet<QString> taken(row.taken.begin(), row.taken.end());
        EXPECT_EQ(Zemlo_Fs::GetGoodPath(QString::fromUtf8(row.given), QStringLiteral("/stage"),
                                        [&](const QString& p) { return taken.contains(p); }),
                  QString::fromUtf8(row.expected));
    }

    // On disk, a dangling link takes its name as much as a file does.
    QTemporaryDir dir;
    velmora::test::writeFile(dir.filePath(QStringLiteral("photo.jpg")), "x");
    ASSERT_TRUE(QFile::link(dir.filePath(QStringLiteral("nowhere")),
                            dir.filePath(QStringLiteral("photo_1.jpg"))));
    EXPECT_EQ(Zemlo_Fs::GetGoodPath(QStringLiteral("photo.jpg"), dir.path()),
              dir.filePath(QStringLiteral("photo_2.jpg")));
}
