// mailto: URIs given to the real velmora-share, headless, as a mail handler receives them.
#include "TestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <QUrlQuery>

using velmora::test::writeFile;

namespace {

struct Row {
    const char* name;
    QString uri; // "{dir}" stands for the folder of the test's files, as an absolute path
    QStringList extra;
    int exitCode;
    QString to, cc, bcc;
    std::optional<QString> subject; // none: no "subject" pair at all
    QString plainBody;
    QStringList staged; // names in the staging folder, sorted
    QString err;        // a text the standard error must hold
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
    const Row rows[] = {
        {"utf8-and-escapes",
         QStringLiteral("mailto:J%C3%BCrgen@b%C3%A4r.test?subject=Gr%C3%BC%C3%9Fe%20%26%20more"
                        "&body=Line%201%0D%0ALine%202%0A%0Aend"),
         {},
         0,
         QStringLiteral("Jürgen@bär.test;"),
         {},
         {},
         QStringLiteral("Grüße & more"),
         QStringLiteral("Line 1\nLine 2\n\nend"),
         {},
         {}},
        {"plus-is-literal",
         QStringLiteral("mailto:a+tag@x.test?subject=1+1%3D2&body=a+b"),
         {},
         0,
         QStringLiteral("a+tag@x.test;"),
         {},
         {},
         QStringLiteral("1+1=2"),
         QStringLiteral("a+b"),
         {},
         {}},
        {"several-recipients-path-and-to",
         QStringLiteral("mailto:a@x.test,b@x.test?to=c@x.test,%20d@x.test&TO=e@x.test"),
         {},
         0,
         QStringLiteral("a@x.test;b@x.test;c@x.test;d@x.test;e@x.test;"),
         {},
         {},
         std::nullopt,
         {},
         {},
         {}},
        {"cc-bcc-and-a-known-contact",
         QStringLiteral("MAILTO:grace@navy.test?cc=c1@x.test,c2@x.test&bcc=b@x.test&Cc=c3@x.test"),
         {QStringLiteral("--bcc"), QStringLiteral("b2@x.test")},
         0,
         QStringLiteral("grace@navy.test;"),
         QStringLiteral("c1@x.test;c2@x.test;c3@x.test;"),
         QStringLiteral("b@x.test;b2@x.test;"),
         std::nullopt,
         {},
         {},
         {}},
        {"attachments-file-uri-raw-path-and-spaces",
         QStringLiteral("mailto:a@x.test?attach=%1/my%2520report.pdf&ATTACHMENT=%2"
                        "&attachment=file://{dir}/plain.txt")
             .arg(escaped(dirUrl), nonAscii),
         {},
         0,
         QStringLiteral("a@x.test;"),
         {},
         {},
         std::nullopt,
         {},
         {QStringLiteral("my report.pdf"), QStringLiteral("plain.txt"),
          QStringLiteral("résumé ü.txt")},
         {}},
        {"beside-other-items",
         QStringLiteral("mailto:a@x.test?subject=Files&body=Here"),
         {QStringLiteral("{dir}/plain.txt"), QStringLiteral("--cc"), QStringLiteral("k@x.test")},
         0,
         QStringLiteral("a@x.test;"),
         QStringLiteral("k@x.test;"),
         {},
         QStringLiteral("Files"),
         QStringLiteral("Here"),
         {QStringLiteral("plain.txt")},
         {}},
        {"unknown-headers-are-ignored",
         QStringLiteral("mailto:a@x.test?X-Mailer=evil&In-Reply-To=%3Cid%40x%3E&subject=s"),
         {},
         0,
         QStringLiteral("a@x.test;"),
         {},
         {},
         QStringLiteral("s"),
         {},
         {},
         QStringLiteral("ignored the header x-mailer")},
        {"empty", QStringLiteral("mailto:"), {}, 0, {}, {}, {}, std::nullopt, {}, {}, {}},
        {"refused-hidden",
         QStringLiteral("mailto:a@x.test?attach={dir}/.ssh/id_rsa"),
         {},
         2,
         {},
         {},
         {},
         std::nullopt,
         {},
         {},
         QStringLiteral(".ssh/id_rsa (a hidden file or folder)")},
        {"refused-system",
         QStringLiteral("mailto:a@x.test?attach=file:///etc/hostname"),
         {},
         2,
         {},
         {},
         {},
         std::nullopt,
         {},
         {},
         QStringLiteral("/etc/hostname (in the system folder")},
        {"refused-http",
         QStringLiteral("mailto:a@x.test?attach=http://evil.test/x.pdf"),
         {},
         2,
         {},
         {},
         {},
         std::nullopt,
         {},
         {},
         QStringLiteral("http://evil.test/x.pdf (not a local file)")},
        {"refused-missing",
         QStringLiteral("mailto:a@x.test?attach={dir}/nope.pdf"),
         {},
         2,
         {},
         {},
         {},
         std::nullopt,
         {},
         {},
         QStringLiteral("nope.pdf (no such file or folder)")},
        {"malformed-escape",
         QStringLiteral("mailto:a@x.test?subject=50%25%2"),
         {},
         2,
         {},
         {},
         {},
         std::nullopt,
         {},
         {},
         QStringLiteral("malformed mailto: URI")},
        {"not-utf8",
         QStringLiteral("mailto:a%FF@x.test"),
         {},
         2,
         {},
         {},
         {},
         std::nullopt,
         {},
         {},
         QStringLiteral("malformed mailto: URI")},
    };
    const QString staging = container.dataFolder() + QStringLiteral("/ShareFull");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        QStringList args{QStringLiteral("--headless"), QStringLiteral("--print-url"),
                         expand(row.uri)};
        for (const QString& extra : row.extra)
            args.append(expand(extra));
        QProcess p;
        p.start(QStringLiteral(VELMORA_SHARE), args);
        ASSERT_TRUE(p.waitForFinished(60000));
        const QString out = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
        const QString err = QString::fromUtf8(p.readAllStandardError());
        EXPECT_EQ(p.exitCode(), row.exitCode) << err.toStdString();
        EXPECT_TRUE(err.contains(row.err)) << err.toStdString();
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
        for (int i = 0; q.hasQueryItem(QStringLiteral("attachment_%1").arg(i)); ++i) {
            const QFileInfo info(
                q.queryItemValue(QStringLiteral("attachment_%1").arg(i), QUrl::FullyDecoded));
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
