// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// mailto: URIs given to the real velmora-share, headless, as a mail handler receives them.
#include "Process.h"
#include "TestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <QUrlQuery>

using velmora::test::writeFile;

namespace {

struct Row {
    const char* name;
    QString uri; // "{dir}" stands for the folder of the test's files, as an absolute path
    QStringList extra;
    int exitCode; // when not 0, only err is checked, and that nothing was sent
    QString err;  // a text the standard error must hold
    QString to, cc, bcc;
    std::optional<QString> subject; // none: no "subject" pair at all
    QString plainBody;
    QStringList staged; // names in the staging folder, sorted
};

class Mailto : public ::testing::Test {
protected:
    void SetUp() override {
        if (!velmora::test::writePlist(
                container.dataFolder() + QStringLiteral("/Contacts/Addresses.plist"), R"([
            {"mail": "grace@navy.test", "firstName": "Grace", "lastName": "Hopper", "rank": 5}
        ])",
                false))
            GTEST_SKIP() << "python3 is needed to write property lists";
        for (const char* name : {"my report.pdf", "résumé ü.txt", ".ssh/id_rsa", "plain.txt"})
            writeFile(files.filePath(QString::fromUtf8(name)), name);
    }

    QString expand(QString text) const {
        return text.replace(QStringLiteral("{dir}"), files.path());
    }

    QTemporaryDir files;
    velmora::test::TempContainer container;
};

// A path written into a mailto: URI as a program would: every byte outside the unreserved set
// escaped, so that spaces and non-ASCII letters travel as %XX.
QString escaped(const QString& text) {
    return QString::fromLatin1(QUrl::toPercentEncoding(text, "/"));
}

TEST_F(Mailto, FormsOfTheUriBecomeTheMessageSent) {
    const QString dirUrl = QUrl::fromLocalFile(files.path()).toString(QUrl::FullyEncoded);
    const QString nonAscii = escaped(files.filePath(QStringLiteral("résumé ü.txt")));
    const auto refused = [](const char* name, const char* uri, const char* err) {
        return Row{name, QString::fromUtf8(uri), {}, 2, QString::fromUtf8(err), {}, {}, {}, {}, {},
                   {}};
    };
    const Row rows[] = {
        // clang-format off
        {"utf8-and-escapes",
         QStringLiteral("mailto:J%C3%BCrgen@b%C3%A4r.test?subject=Gr%C3%BC%C3%9Fe%20%26%20more"
                        "&body=Line%201%0D%0ALine%202%0A%0Aend"), {}, 0, {},
         QStringLiteral("Jürgen@bär.test;"), {}, {}, QStringLiteral("Grüße & more"),
         QStringLiteral("Line 1\nLine 2\n\nend"), {}},
        {"plus-is-literal", QStringLiteral("mailto:a+tag@x.test?subject=1+1%3D2&body=a+b"), {}, 0, {},
         QStringLiteral("a+tag@x.test;"), {}, {}, QStringLiteral("1+1=2"), QStringLiteral("a+b"), {}},
        {"several-recipients-path-and-to",
         QStringLiteral("mailto:a@x.test,b@x.test?to=c@x.test,%20d@x.test&TO=e@x.test"), {}, 0, {},
         QStringLiteral("a@x.test;b@x.test;c@x.test;d@x.test;e@x.test;"), {}, {}, std::nullopt, {}, {}},
        {"cc-bcc-and-a-known-contact",
         QStringLiteral("MAILTO:grace@navy.test?cc=c1@x.test,c2@x.test&bcc=b@x.test&Cc=c3@x.test"),
         {QStringLiteral("--bcc"), QStringLiteral("b2@x.test")}, 0, {},
         QStringLiteral("grace@navy.test;"), QStringLiteral("c1@x.test;c2@x.test;c3@x.test;"),
         QStringLiteral("b@x.test;b2@x.test;"), std::nullopt, {}, {}},
        {"attachments-file-uri-raw-path-and-spaces",
         QStringLiteral("mailto:a@x.test?attach=%1/my%2520report.pdf&ATTACHMENT=%2"
                        "&attachment=file://{dir}/plain.txt").arg(escaped(dirUrl), nonAscii), {}, 0, {},
         QStringLiteral("a@x.test;"), {}, {}, std::nullopt, {},
         {QStringLiteral("my report.pdf"), QStringLiteral("plain.txt"), QStringLiteral("résumé ü.txt")}},
        {"beside-other-items", QStringLiteral("mailto:a@x.test?subject=Files&body=Here"),
         {QStringLiteral("{dir}/plain.txt"), QStringLiteral("--cc"), QStringLiteral("k@x.test")}, 0, {},
         QStringLiteral("a@x.test;"), QStringLiteral("k@x.test;"), {}, QStringLiteral("Files"),
         QStringLiteral("Here"), {QStringLiteral("plain.txt")}},
        {"unknown-headers-are-ignored",
         QStringLiteral("mailto:a@x.test?X-Mailer=evil&In-Reply-To=%3Cid%40x%3E&subject=s"), {}, 0,
         QStringLiteral("ignored the header x-mailer"), QStringLiteral("a@x.test;"), {}, {},
         QStringLiteral("s"), {}, {}},
        {"empty", QStringLiteral("mailto:"), {}, 0, {}, {}, {}, {}, std::nullopt, {}, {}},
        // clang-format on
        refused("refused-hidden", "mailto:a@x.test?attach={dir}/.ssh/id_rsa",
                ".ssh/id_rsa (a hidden file or folder)"),
        refused("refused-system", "mailto:a@x.test?attach=file:///etc/hostname",
                "/etc/hostname (in the system folder"),
        refused("refused-http", "mailto:a@x.test?attach=http://evil.test/x.pdf",
                "http://evil.test/x.pdf (not a local file)"),
        refused("refused-missing", "mailto:a@x.test?attach={dir}/nope.pdf",
                "nope.pdf (no such file or folder)"),
        refused("malformed-escape", "mailto:a@x.test?subject=50%25%2", "malformed mailto: URI"),
        refused("not-utf8", "mailto:a%FF@x.test", "malformed mailto: URI"),
    };
    const QString staging = container.dataFolder() + QStringLiteral("/ShareFull");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        QStringList args{QStringLiteral("--headless"), QStringLiteral("--print-url"),
                         expand(row.uri)};
        for (const QString& extra : row.extra)
            args.append(expand(extra));
        const velmora::test::Ran ran = velmora::test::run(QStringLiteral(VELMORA_SHARE), args);
        const QString out = ran.out.trimmed();
        EXPECT_EQ(ran.exitCode, row.exitCode) << ran.err.toStdString();
        EXPECT_TRUE(ran.err.contains(row.err)) << ran.err.toStdString();
        if (row.exitCode != 0) {
            EXPECT_TRUE(out.isEmpty()) << "nothing may be sent: " << out.toStdString();
            continue;
        }
        const QUrl url(out, QUrl::StrictMode);
        ASSERT_EQ(url.scheme(), QStringLiteral("velmora")) << out.toStdString();
        const QUrlQuery q(url.query(QUrl::FullyEncoded));
        const auto value = [&](const char* key) {
            return q.queryItemValue(QString::fromLatin1(key), QUrl::FullyDecoded);
        };
        EXPECT_EQ(value("to"), row.to);
        EXPECT_EQ(value("cc"), row.cc);
        EXPECT_EQ(value("bcc"), row.bcc);
        EXPECT_EQ(q.hasQueryItem(QStringLiteral("subject")), row.subject.has_value());
        EXPECT_EQ(value("subject"), row.subject.value_or(QString()));
        EXPECT_EQ(value("plainBody"), row.plainBody);
        QStringList staged;
        for (const QString& path : velmora::test::attachmentPaths(q)) {
            const QFileInfo info(path);
            // In this share's own folder of the staging folder.
            EXPECT_EQ(QFileInfo(info.absolutePath()).absolutePath(), staging);
            EXPECT_TRUE(info.absoluteDir().dirName().startsWith(u"share-"));
            EXPECT_TRUE(info.isFile()) << info.filePath().toStdString();
            staged.append(info.fileName());
        }
        staged.sort();
        EXPECT_EQ(staged, row.staged);
    }
}

} // namespace
