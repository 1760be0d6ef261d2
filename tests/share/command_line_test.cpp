#include "TestSupport.h"

#include <QFileInfo>
#include <QProcess>

namespace {

struct ShareRun {
    int exitCode = -1;
    QString out;
    QString err;
};

ShareRun runShare(const QStringList& args) {
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("VELMORA_GROUP_CONTAINER"));
    env.remove(QStringLiteral("VELMORA_BUNDLE_ID"));
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(VELMORA_SHARE), args);
    if (!p.waitForFinished(60000))
        return {};
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError())};
}

TEST(CommandLine, HelpAndVersion) {
    const ShareRun help = runShare({QStringLiteral("--help")});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains(QStringLiteral("--container"))) << help.out.toStdString();
    const ShareRun version = runShare({QStringLiteral("--version")});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_TRUE(version.out.startsWith(QStringLiteral("velmora-share ")))
        << version.out.toStdString();
    const ShareRun bad = runShare({QStringLiteral("--no-such-option")});
    EXPECT_EQ(bad.exitCode, 2);
    EXPECT_TRUE(bad.err.contains(QStringLiteral("no-such-option")));
}

TEST(CommandLine, MissingItemIsAUsageErrorBeforeAnythingIsTouched) {
    QTemporaryDir container;
    const QString earlier = container.filePath(QStringLiteral("SharedData/ShareFull/earlier.txt"));
    velmora::test::writeFile(earlier, "kept");
    const ShareRun run = runShare({QStringLiteral("--container"), container.path(),
                                   container.filePath(QStringLiteral("nope.txt"))});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains(QStringLiteral("nope.txt"))) << run.err.toStdString();
    EXPECT_TRUE(QFileInfo::exists(earlier));
}

TEST(CommandLine, StagesItemsIntoTheGivenContainerAndReportsThem) {
    QTemporaryDir container;
    QTemporaryDir files;
    velmora::test::writeFile(files.filePath(QStringLiteral("a/notes.txt")), "one");
    velmora::test::writeFile(files.filePath(QStringLiteral("b/notes.txt")), "two");
    velmora::test::writeFile(
        container.filePath(QStringLiteral("SharedDataBeta/Accounts.plist")),
        "<plist><array><dict><key>mail</key><string>ada@x.test</string></dict></array></plist>");
    const ShareRun run =
        runShare({QStringLiteral("--container"), container.path(), QStringLiteral("--bundle-id"),
                  QStringLiteral("it.zemlo.velmora.beta8.share"),
                  files.filePath(QStringLiteral("a/notes.txt")),
                  files.filePath(QStringLiteral("b/notes.txt"))});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QString stage = container.filePath(QStringLiteral("SharedDataBeta/ShareFull"));
    EXPECT_EQ(velmora::test::readFile(stage + QStringLiteral("/notes.txt")), "one");
    EXPECT_EQ(velmora::test::readFile(stage + QStringLiteral("/notes_1.txt")), "two");
    EXPECT_TRUE(run.out.contains(stage + QStringLiteral("/notes_1.txt"))) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains(QStringLiteral("ada@x.test")));
    EXPECT_TRUE(run.out.contains(QStringLiteral("Contacts: 0 addresses")));
}

} // namespace
