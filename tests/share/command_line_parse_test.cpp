// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "share/CommandLine.h"

#include <QDir>

using namespace velmora;

namespace {

class CommandLineParse : public ::testing::Test {
protected:
    QString file(const QString& name) {
        const QString path = dir.filePath(name);
        velmora::test::writeFile(path, "x");
        return path;
    }
    QTemporaryDir dir;
};

TEST_F(CommandLineParse, ItemsArePathsUrlsOrStandardInput) {
    const QString notes = file(QStringLiteral("notes.txt"));
    const QString oddName = file(QStringLiteral("draft:v2"));
    const CommandLineResult r = CommandLine::parse(
        {notes, QStringLiteral("https://example.test/a?b=c"), QStringLiteral("-"), dir.path(),
         oddName, QUrl::fromLocalFile(notes).toString(), QStringLiteral("mailto:ada@x.test")});
    ASSERT_TRUE(r.options) << r.error.toStdString();
    const QList<SharedItem>& items = r.options->items;
    ASSERT_EQ(items.size(), 6) << "a mailto: URI is a message, not an item";
    EXPECT_EQ(items[0], (SharedItem{SharedItem::Kind::File, QUrl::fromLocalFile(notes), notes}));
    EXPECT_EQ(items[1].kind, SharedItem::Kind::Link);
    EXPECT_EQ(items[1].url, QUrl(QStringLiteral("https://example.test/a?b=c")));
    EXPECT_EQ(items[2].kind, SharedItem::Kind::StandardInput);
    EXPECT_EQ(items[3].kind, SharedItem::Kind::File) << "a folder is a file item";
    EXPECT_EQ(items[4].url, QUrl::fromLocalFile(oddName)) << "an existing path wins over a scheme";
    EXPECT_EQ(items[5].kind, SharedItem::Kind::File) << "file: URLs count as files";
    ASSERT_TRUE(r.options->mailto);
    EXPECT_EQ(r.options->mailto->to, QStringList{QStringLiteral("ada@x.test")});
}

TEST_F(CommandLineParse, UsageErrorsNameWhatIsWrong) {
    const QString notes = file(QStringLiteral("notes.txt"));
    const struct {
        QStringList args;
        const char* mentions;
    } cases[] = {
        {{QStringLiteral("missing.txt")}, "no such file or folder: missing.txt"},
        {{QStringLiteral("file:///nowhere/x.pdf")},
         "no such file or folder: file:///nowhere/x.pdf"},
        {{QStringLiteral("http://exa mple.test/")}, "not a well-formed URL: http://exa mple.test/"},
        {{QStringLiteral("-"), QStringLiteral("-")}, "only once"},
        {{QStringLiteral("--image"), QStringLiteral("nope.png")}, "no such image file: nope.png"},
        {{QStringLiteral("--to"), QStringLiteral("a@x.test")}, "--to needs --headless"},
        {{QStringLiteral("--cancel")}, "--cancel needs --headless"},
        {{QStringLiteral("--title"), QStringLiteral("a"), QStringLiteral("--title"),
          QStringLiteral("b")},
         "--title given more than once"},
        {{QStringLiteral("--frobnicate")}, "frobnicate"},
        {{QStringLiteral("--subject")}, "subject"},
    };
    for (const auto& c : cases) {
        const CommandLineResult r = CommandLine::parse(c.args + QStringList{notes});
        EXPECT_FALSE(r.options) << c.args.join(u' ').toStdString();
        EXPECT_TRUE(r.error.contains(QLatin1String(c.mentions)))
            << c.args.join(u' ').toStdString() << " -> " << r.error.toStdString();
    }
}

TEST_F(CommandLineParse, HeadlessOptionsAreCollected) {
    const QString photo = file(QStringLiteral("photo.jpg"));
    const CommandLineResult r = CommandLine::parse(
        {QStringLiteral("--headless"), QStringLiteral("--from"), QStringLiteral("ada@x.test"),
         QStringLiteral("--to"), QStringLiteral("b@x.test"), QStringLiteral("--to"),
         QStringLiteral("Team"), QStringLiteral("--subject"), QStringLiteral(""),
         QStringLiteral("--image"), photo, QStringLiteral("--print-url"), QStringLiteral("--title"),
         QStringLiteral("A page")});
    ASSERT_TRUE(r.options) << r.error.toStdString();
    const ShareOptions& o = *r.options;
    EXPECT_TRUE(o.headless);
    EXPECT_EQ(o.from, QStringLiteral("ada@x.test"));
    EXPECT_EQ(o.to, (QStringList{QStringLiteral("b@x.test"), QStringLiteral("Team")}));
    ASSERT_TRUE(o.subject.has_value());
    EXPECT_TRUE(o.subject->isEmpty()) << "an empty subject is still a subject";
    EXPECT_FALSE(o.body.has_value());
    EXPECT_EQ(o.images, QStringList{photo});
    EXPECT_TRUE(o.printUrl);
    EXPECT_FALSE(o.cancel);
    EXPECT_EQ(o.title, QStringLiteral("A page"));
    EXPECT_TRUE(o.text.isNull());
    EXPECT_TRUE(o.items.isEmpty());
}

} // namespace
