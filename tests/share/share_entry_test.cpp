// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The program's entry: its command line, its translations and its window.
#include "TestSupport.h"
#include "platform/LocalizedString.h"
#include "share/CommandLine.h"
#include "share/ShareSession.h"
#include "share/Translations.h"

#include <QApplication>
#include <QTextStream>
#include <QTimer>

using namespace velmora;

namespace {

// A command line's items, message and subject in one line (D: the test's folder), or its error.
QString describe(const CommandLineResult& r, const QString& dir) {
    if (!r.options)
        return QStringLiteral("error: ") + r.error;
    QStringList parts;
    for (const SharedItem& item : r.options->items) {
        const char* kinds[] = {"file ", "link ", "stdin"};
        parts << QLatin1String(kinds[int(item.kind)]) + (item.kind == SharedItem::Kind::File
                                                             ? item.url.toLocalFile()
                                                             : item.url.toString());
    }
    if (r.options->mailto)
        parts << QStringLiteral("mailto ") + r.options->mailto->to.join(u',');
    if (r.options->subject)
        parts << u'\'' + *r.options->subject + u'\'';
    return parts.join(QStringLiteral(" | ")).replace(dir, QStringLiteral("D"));
}

// What is accepted comes out whole; what is refused names what is wrong.
TEST(CommandLineParse, ItemsOptionsAndUsageErrors) {
    QTemporaryDir dir;
    const auto file = [&](const char* name) {
        velmora::test::writeFile(dir.filePath(QLatin1String(name)), "x");
        return dir.filePath(QLatin1String(name));
    };
    const QString notes = file("notes.txt");
    const struct {
        const char* name;
        QStringList args;
        QString expected; // "error: " and a part of the message for a refused line
    } rows[] = {
        // Folders and file: URLs are files, a path wins over a scheme, mailto: is a message.
        {"items",
         {notes, "https://example.test/a?b=c", "-", dir.path(), file("draft:v2"),
          QUrl::fromLocalFile(notes).toString(), "mailto:ada@x.test"},
         "file D/notes.txt | link https://example.test/a?b=c | stdin | file D | file D/draft:v2 "
         "| file D/notes.txt | mailto ada@x.test"},
        {"empty-subject", {"--headless", "--subject", "", notes}, "file D/notes.txt | ''"},
        {"missing-file", {"missing.txt", notes}, "error: no such file or folder: missing.txt"},
        {"missing-file-url",
         {"file:///nowhere/x.pdf", notes},
         "error: no such file or folder: file:///nowhere/x.pdf"},
        {"bad-url", {"http://exa mple.test/", notes}, "error: not a well-formed URL: http://exa"},
        {"standard-input-twice", {"-", "-", notes}, "error: only once"},
        {"missing-image", {"--image", "nope.png", notes}, "error: no such image file: nope.png"},
        {"to-without-headless", {"--to", "a@x.test", notes}, "error: --to needs --headless"},
        {"title-twice", {"--title", "a", "--title", "b", notes}, "error: --title given more"},
        {"unknown-option", {"--frobnicate", notes}, "error: frobnicate"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QString got = describe(CommandLine::parse(row.args), dir.path());
        if (row.expected.startsWith(u"error: "))
            EXPECT_TRUE(got.startsWith(u"error: ") && got.contains(row.expected.mid(7)))
                << got.toStdString();
        else
            EXPECT_EQ(got, row.expected);
    }
}

// Each test leaves no translation installed, as it found it.
class TranslationLoading : public ::testing::Test {
protected:
    void TearDown() override { installTranslationsFor({}); }
};

TEST_F(TranslationLoading, TakesTheFirstLanguageThatHasATranslation) {
    struct Row {
        const char* name;
        QStringList languages;
        const char* send;
    };
    const Row rows[] = {
        {"language-and-region", {"it-IT"}, "Invia"},
        {"untranslated-ones-skipped", {"fr-FR", "de", "it"}, "Invia"},
        {"english-first", {"en-GB", "it-IT"}, "Send"},
        {"no-translation", {"fr-FR"}, "Send"},
        {"none", {}, "Send"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        // Italian first, so that rows staying English show that it was taken out again.
        ASSERT_TRUE(installTranslationsFor({QStringLiteral("it")}));
        const bool translated = QByteArray(row.send) != "Send";
        EXPECT_EQ(installTranslationsFor(row.languages), translated);
        EXPECT_EQ(LocalizedString("Send"), QString::fromUtf8(row.send));
    }

    // A key without a translation comes back as itself.
    ASSERT_TRUE(installTranslationsFor({QStringLiteral("it")}));
    EXPECT_EQ(LocalizedString("Not in any catalogue"), QStringLiteral("Not in any catalogue"));
}

TEST(ShareView, ClosingTheWindowCancelsTheRequest) {
    const velmora::test::TempContainer container;
    QString printed;
    QTextStream out(&printed);
    ShareSession session(ShareOptions{}, {}, out, out);
    QString title;
    // Once the window is up, close it as a window manager would.
    QTimer::singleShot(200, [&] {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<ShareWindow*>(top); window && window->isVisible()) {
                title = window->windowTitle();
                window->close();
            }
        }
    });
    // Should closing not end the request, this ends the wait and the test fails below.
    QTimer::singleShot(15000, [] { QApplication::quit(); });
    EXPECT_EQ(session.exec(), ShareSession::Cancelled);
    ASSERT_TRUE(session.outcome() && session.outcome()->error);
    EXPECT_EQ(session.outcome()->error->domain, QStringLiteral("NSCocoaErrorDomain"));
    EXPECT_EQ(session.outcome()->error->code, 3072);
    EXPECT_EQ(title, QStringLiteral("Share with Velmora"));
    EXPECT_TRUE(printed.isEmpty()) << printed.toStdString();
}

} // namespace
