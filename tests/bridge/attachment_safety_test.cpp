// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The attachment check on real files: what links resolve to decides, not what they are called.
#include "TestSupport.h"
#include "bridge/AttachmentSafety.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

using velmora::AttachmentSafety;
using velmora::test::writeFile;

TEST(AttachmentSafety, OnlyPlainUserFilesPassAfterLinksAreResolved) {
    QTemporaryDir dir;
    const auto at = [&](const char* name) { return dir.filePath(QString::fromUtf8(name)); };
    writeFile(at("docs/report.pdf"), "pdf");
    writeFile(at(".gnupg/private.key"), "key");
    writeFile(at("container/SharedData/ShareFull/staged.png"), "png");
    QFile::link(at("docs/report.pdf"), at("docs/link-to-report"));
    QFile::link(at(".gnupg/private.key"), at("docs/innocent.txt"));
    QFile::link(at(".gnupg"), at("keys"));
    QFile::link(at("docs/report.pdf"), at("docs/.hidden-link"));
    QFile::link(QStringLiteral("/etc/hostname"), at("docs/hostname"));
    QFile::link(at("container/SharedData"), at("docs/shared"));
    QFile::link(at("docs/nowhere"), at("docs/dangling"));
    ASSERT_EQ(mkfifo(QFile::encodeName(at("docs/pipe")).constData(), 0600), 0);

    const struct {
        const char* name;
        QString path;
        QString accepted; // null: refused
    } rows[] = {
        {"file", at("docs/report.pdf"), at("docs/report.pdf")},
        {"folder", at("docs"), at("docs")},
        {"link-to-a-file", at("docs/link-to-report"), at("docs/report.pdf")},
        {"link-to-a-hidden-file", at("docs/innocent.txt"), {}},
        {"through-a-link-to-a-hidden-folder", at("keys/private.key"), {}},
        {"hidden-link-to-a-plain-file", at("docs/.hidden-link"), {}},
        {"dot-dot", at("docs/../docs/report.pdf"), {}},
        {"link-into-etc", at("docs/hostname"), {}},
        {"link-into-the-container", at("docs/shared/ShareFull/staged.png"), {}},
        {"dangling-link", at("docs/dangling"), {}},
        {"named-pipe", at("docs/pipe"), {}},
        {"relative", QStringLiteral("docs/report.pdf"), {}},
        {"proc", QStringLiteral("/proc/self/environ"), {}},
        {"dev", QStringLiteral("/dev/null"), {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const AttachmentSafety::Verdict verdict =
            AttachmentSafety::check(row.path, at("container"));
        EXPECT_EQ(verdict.path, row.accepted) << verdict.reason.toStdString();
        EXPECT_EQ(verdict.accepted(), verdict.reason.isNull());
    }
}
