// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "composer/ExtensionContentTextView.h"
#include "composer/SpellDictionaries.h"
#include "composer/Speller.h"
#include "platform/Log.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

using namespace velmora;
using velmora::test::ScopedEnv;

namespace {

// A speller with the real en_US dictionary and a personal word list of the test's own.
std::shared_ptr<Speller> englishSpeller(const QString& wordList) {
    return Speller::load({QStringLiteral("en-US")}, dictionaryFolders(), wordList);
}

// The words of the body that carry the misspelling wave, in text order.
QStringList underlinedWords(const QTextDocument& document) {
    QStringList words;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        for (const QTextLayout::FormatRange& range : block.layout()->formats())
            if (range.format.underlineStyle() == QTextCharFormat::SpellCheckUnderline)
                words.append(block.text().mid(range.start, range.length));
    return words;
}

struct Body {
    QTemporaryDir config;
    ScopedEnv xdgConfig{"XDG_CONFIG_HOME", config.path().toUtf8()};
    ExtensionContentTextView view;

    Body() {
        // The list of words the user added lies in the test's own configuration folder.
        view.setSpeller(englishSpeller(personalWordListPath()));
        view.resize(300, 100);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }
    QStringList check(const QString& text) {
        view.setPlainText(text);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !view.isCheckingSpelling(); }));
        return underlinedWords(*view.document());
    }
    // Right-clicks the first occurrence of the word and gives the menu that opens.
    QMenu* contextMenuAt(const QString& word) {
        QTextCursor cursor(view.document());
        cursor.setPosition(int(view.toPlainText().indexOf(word)) + 1);
        const QPoint at = view.cursorRect(cursor).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(view.viewport(), &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
};

QStringList actionTexts(const QMenu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions())
        texts.append(action->text());
    return texts;
}

QAction* actionNamed(const QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions())
        if (action->text() == text)
            return action;
    return nullptr;
}

} // namespace

TEST(SpellCheck, UnderlinesMisspeltWordsButNotLinksAddressesOrCode) {
    Body body;
    ASSERT_TRUE(body.view.speller()) << "hunspell-en-us is not installed";
    const struct {
        const char* name;
        const char* text;
        QStringList underlined;
    } rows[] = {
        {"prose", "Teh quick brown fox jumpd over the lazy dog.", {"Teh", "jumpd"}},
        {"apostrophes", "Don't worry, it’s fine; the dogs' bowls aren't emtpy.", {"emtpy"}},
        {"links", "See http://exampel.test/wrng/pagge and www.mispeled.test now.", {}},
        {"addresses", "Write to jhon.smiht@exmaple.test or mailto:ofice@corp.test today.", {}},
        {"url-like runs", "Open file:///hoem/usr/docuemnts or ping @teem.", {}},
        {"code and acronyms", "Set snake_caes to mp3x; NASAX and I agree.", {}},
        {"lines", "First lnie\nsecond line\n\nthrid line", {"lnie", "thrid"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(body.check(QString::fromUtf8(row.text)), row.underlined);
    }

    // The word being typed is underlined once the caret leaves it.
    body.view.clear();
    body.view.setFocus();
    const auto underlinedAfterTyping = [&](const char* keys) {
        QTest::keyClicks(&body.view, QString::fromLatin1(keys));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !body.view.isCheckingSpelling(); }));
        return underlinedWords(*body.view.document());
    };
    EXPECT_EQ(underlinedAfterTyping("Please sned"), QStringList());
    EXPECT_EQ(underlinedAfterTyping(" teh"), QStringList{"sned"});
    body.view.moveCursor(QTextCursor::Start);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !body.view.isCheckingSpelling(); }));
    EXPECT_EQ(underlinedWords(*body.view.document()), (QStringList{"sned", "teh"}));

    // With two languages a word is right in either; accented words are looked up whole.
    const std::shared_ptr<Speller> both = Speller::load(
        {QStringLiteral("en-US"), QStringLiteral("it")}, dictionaryFolders(), QString());
    ASSERT_TRUE(both) << "hunspell-it is not installed";
    EXPECT_EQ(both->dictionaryNames(), (QStringList{"en_US", "it_IT"}));
    body.view.setSpeller(both);
    EXPECT_EQ(body.check(QStringLiteral("Hello, perché la città è bella; perchè helo")),
              (QStringList{"perchè", "helo"}));
}

TEST(SpellCheck, ContextMenuOffersSuggestionsThatReplaceTheWord) {
    Body body;
    ASSERT_TRUE(body.view.speller());
    body.check(QStringLiteral("Say helo to everyone"));

    QMenu* menu = body.contextMenuAt(QStringLiteral("helo"));
    ASSERT_TRUE(menu);
    const QStringList texts = actionTexts(*menu);
    ASSERT_TRUE(texts.contains(QStringLiteral("hello"))) << texts.join(u'|').toStdString();
    EXPECT_TRUE(texts.contains(QStringLiteral("Add to Dictionary")));
    // The standard entries stay, after the spelling ones.
    const auto selectAll = std::find_if(texts.begin(), texts.end(), [](const QString& text) {
        return text.startsWith(QStringLiteral("Select All"));
    });
    EXPECT_GT(selectAll - texts.begin(), texts.indexOf("Add to Dictionary"));
    actionNamed(*menu, QStringLiteral("hello"))->trigger();
    menu->close();
    EXPECT_EQ(body.view.toPlainText(), QStringLiteral("Say hello to everyone"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !body.view.isCheckingSpelling(); }));
    EXPECT_EQ(underlinedWords(*body.view.document()), QStringList());
    body.view.undo();
    EXPECT_EQ(body.view.toPlainText(), QStringLiteral("Say helo to everyone"));

    // A correct word gets no spelling entries; a hopeless one says so.
    menu = body.contextMenuAt(QStringLiteral("everyone"));
    ASSERT_TRUE(menu);
    EXPECT_FALSE(actionTexts(*menu).contains(QStringLiteral("Add to Dictionary")));
    menu->close();
    body.check(QStringLiteral("xqzvkwpj"));
    menu = body.contextMenuAt(QStringLiteral("xqzvkwpj"));
    ASSERT_TRUE(menu);
    QAction* none = actionNamed(*menu, QStringLiteral("No Suggestions"));
    ASSERT_TRUE(none);
    EXPECT_FALSE(none->isEnabled());
    menu->close();
}

TEST(SpellCheck, AddedWordsTakeEffectAtOnceAndPersistForTheNextBody) {
    Body body;
    ASSERT_TRUE(body.view.speller());
    const QString wordList = personalWordListPath();
    EXPECT_EQ(wordList, body.config.path() + QStringLiteral("/velmora-share/words.dic"));
    EXPECT_EQ(body.check(QStringLiteral("Velmorish mail, velmorish ways")),
              (QStringList{"Velmorish", "velmorish"}));

    QMenu* menu = body.contextMenuAt(QStringLiteral("velmorish"));
    ASSERT_TRUE(menu);
    actionNamed(*menu, QStringLiteral("Add to Dictionary"))->trigger();
    menu->close();
    // Both forms go at once: the capitalised one starts a sentence.
    EXPECT_TRUE(QTest::qWaitFor([&] { return underlinedWords(*body.view.document()).isEmpty(); }));
    EXPECT_EQ(test::readFile(wordList), QByteArray("velmorish\n"));

    // A body made later, as in the next share, reads the list.
    ExtensionContentTextView next;
    next.setSpeller(englishSpeller(wordList));
    next.setPlainText(QStringLiteral("velmorish or velmorosh"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !next.isCheckingSpelling(); }));
    EXPECT_EQ(underlinedWords(*next.document()), QStringList{"velmorosh"});
}

TEST(SpellCheck, LongBodyIsCheckedInSlicesToTheEnd) {
    Body body;
    ASSERT_TRUE(body.view.speller());
    // About 400 KB, each paragraph with a misspelling of its own, so every one costs a
    // dictionary lookup.
    QString text;
    for (int i = 0; i < 4000; ++i)
        text += QStringLiteral("Paragraph with a typo wrdz%1 among plenty of ordinary words that "
                               "are written right and checked once.\n")
                    .arg(QString(QChar(u'a' + i % 26)) + QChar(u'a' + i / 26 % 26) +
                         QChar(u'a' + i / 676));
    // Kept hidden: shown, a body this long makes QtGui hand memory to its own pooled threads,
    // which the thread sanitizer cannot follow and reports as a race inside QtGui.
    body.view.hide();
    body.view.setPlainText(text);
    QCoreApplication::processEvents();
    // Not done in one go: the rest waits for later turns of the event loop.
    EXPECT_TRUE(body.view.isCheckingSpelling());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !body.view.isCheckingSpelling(); }, 60000));
    const QStringList underlined = underlinedWords(*body.view.document());
    ASSERT_EQ(underlined.size(), 4000);
    EXPECT_EQ(underlined.first(), QStringLiteral("wrdzaaa"));
    EXPECT_EQ(underlined.last(), QStringLiteral("wrdzvxf"));
}

TEST(SpellCheck, WithoutADictionaryCheckingIsOffAndSaidOnce) {
    const QTemporaryDir empty;
    const QTemporaryDir config;
    const ScopedEnv xdgConfig("XDG_CONFIG_HOME", config.path().toUtf8());
    const ScopedEnv dataDirs("XDG_DATA_DIRS", empty.path().toUtf8());
    const ScopedEnv dataHome("XDG_DATA_HOME", empty.path().toUtf8());
    const ScopedEnv dicPath("DICPATH", QByteArray());
    const LogCapture log;

    // The user's own speller, as a shown body loads it.
    ExtensionContentTextView view;
    view.setPlainText(QStringLiteral("Teh body"));
    view.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !log.lines().isEmpty(); }));
    QTest::qWait(50);
    EXPECT_EQ(log.lines().size(), 1) << log.lines().join(u'\n').toStdString();
    EXPECT_TRUE(log.lines().value(0).startsWith(QStringLiteral("Spell checking off: ")));
    EXPECT_FALSE(view.speller());
    EXPECT_EQ(underlinedWords(*view.document()), QStringList());
}

TEST(SpellCheck, ChoosesOneInstalledDictionaryPerLanguage) {
    const QTemporaryDir first;
    const QTemporaryDir second;
    for (const char* name : {"en_US", "en_GB", "it_IT", "it_CH", "de_DE_frami", "de_AT"}) {
        test::writeFile(first.filePath(QString::fromLatin1(name) + ".dic"), "1\nword\n");
        test::writeFile(first.filePath(QString::fromLatin1(name) + ".aff"), "SET UTF-8\n");
    }
    test::writeFile(first.filePath("fr_FR.dic"), "1\nmot\n"); // no affix file: not a dictionary
    test::writeFile(second.filePath("en_US.dic"), "1\nhidden\n");
    test::writeFile(second.filePath("en_US.aff"), "SET UTF-8\n");
    test::writeFile(second.filePath("pt_PT.dic"), "1\npalavra\n");
    test::writeFile(second.filePath("pt_PT.aff"), "SET UTF-8\n");
    const QList<DictionaryFile> installed = installedDictionaries({first.path(), second.path()});
    QStringList names;
    for (const DictionaryFile& dictionary : installed)
        names.append(dictionary.name);
    EXPECT_EQ(names,
              (QStringList{"de_AT", "de_DE_frami", "en_GB", "en_US", "it_CH", "it_IT", "pt_PT"}));
    EXPECT_EQ(installed.value(3).wordsPath, first.filePath("en_US.dic"));

    const struct {
        const char* name;
        QStringList languages;
        QStringList chosen;
    } rows[] = {
        {"system order",
         {"it", "it-Latn-IT", "it-IT", "en", "en-Latn-US", "en-US"},
         {"it_IT", "en_US"}},
        {"own region", {"it-CH", "en-GB"}, {"it_CH", "en_GB"}},
        {"usual region", {"en-AU"}, {"en_US"}},
        {"posix names", {"de_DE.UTF-8@euro"}, {"de_DE_frami"}},
        {"only one of a language", {"pt-BR", "fr", "pt"}, {"pt_PT"}},
        {"no language", {"C", "POSIX", "fr-FR", ""}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QStringList chosen;
        for (const DictionaryFile& dictionary : dictionariesForLanguages(row.languages, installed))
            chosen.append(dictionary.name);
        EXPECT_EQ(chosen, row.chosen);
    }
}
