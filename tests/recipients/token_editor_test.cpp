// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "recipients/TokenEditor.h"

using namespace velmora;

namespace {

std::shared_ptr<ExtensionAddress> address(const QString& mail) {
    auto a = std::make_shared<ExtensionAddress>();
    a->setMail(mail);
    return a;
}

QStringList shown(const QList<Token>& tokens) {
    QStringList out;
    for (const Token& t : tokens)
        out.append(isCommitted(t) ? QStringLiteral("[") + displayString(t) + u']' : textOf(t));
    return out;
}

TEST(TokenEditor, CaretIndexCountsATokenAsOneCharacter) {
    TokenEditor editor;
    editor.setTokens({address(QStringLiteral("a@x.test")), QStringLiteral("jo")});
    EXPECT_EQ(editor.text(), QString(TokenEditor::kTokenCharacter) + QStringLiteral("jo"));
    EXPECT_EQ(editor.caret(), 3);
    const std::pair<qsizetype, qsizetype> cases[] = {{0, 0}, {1, 0}, {2, 1}, {3, 1}};
    for (const auto& [caret, index] : cases) {
        editor.setCaret(caret);
        EXPECT_EQ(editor.tokenIndex(), index) << "caret " << caret;
    }
    // The selection's start counts, not where the caret was moved to.
    editor.setCaret(3);
    editor.setCaret(1, true);
    EXPECT_EQ(editor.selectedRange(), (TokenEditor::Range{1, 2}));
    EXPECT_EQ(editor.tokenIndex(), 0);

    editor.setTokens({});
    EXPECT_EQ(editor.tokenIndex(), 0);
    editor.setTokens({address(QStringLiteral("a@x.test")), address(QStringLiteral("b@x.test"))});
    EXPECT_EQ(editor.tokenIndex(), 1);
}

TEST(TokenEditor, TypingAndDeletingAroundTokens) {
    TokenEditor editor;
    editor.setTokens({address(QStringLiteral("a@x.test")), address(QStringLiteral("b@x.test"))});
    editor.setCaret(1);
    editor.insertText(QStringLiteral("mid"));
    editor.moveToEnd(false);
    editor.insertText(QStringLiteral("end") + TokenEditor::kTokenCharacter);
    EXPECT_EQ(shown(editor.tokens()),
              (QStringList{QStringLiteral("[<a@x.test>]"), QStringLiteral("mid"),
                           QStringLiteral("[<b@x.test>]"), QStringLiteral("end")}));
    EXPECT_EQ(editor.editedTextToken(), 3);

    // Backspace just after a token deletes the whole token; the texts around it become one.
    editor.setCaret(5);
    editor.deleteBackward();
    EXPECT_EQ(shown(editor.tokens()),
              (QStringList{QStringLiteral("[<a@x.test>]"), QStringLiteral("midend")}));
    EXPECT_EQ(editor.caret(), 4);

    // A selection across a token and text is replaced by what is typed.
    editor.setCaret(0);
    editor.setCaret(2, true);
    editor.insertText(QStringLiteral("X"));
    EXPECT_EQ(shown(editor.tokens()), QStringList{QStringLiteral("Xidend")});

    editor.moveToStart(false);
    editor.deleteForward();
    editor.deleteBackward();
    EXPECT_EQ(editor.text(), QStringLiteral("idend"));
}

TEST(TokenEditor, SurrogatePairsMoveAndDeleteWhole) {
    TokenEditor editor;
    editor.insertText(QStringLiteral("a\U0001F600b"));
    editor.moveLeft(false);
    editor.moveLeft(false);
    EXPECT_EQ(editor.caret(), 1);
    editor.setCaret(2); // inside the pair: snaps before it
    EXPECT_EQ(editor.caret(), 1);
    editor.moveRight(false);
    editor.deleteBackward();
    EXPECT_EQ(editor.text(), QStringLiteral("ab"));
}

TEST(TokenEditor, ReplacingATokenAndCopyingTheSelection) {
    TokenEditor editor;
    editor.setTokens(
        {QStringLiteral("ann"), address(QStringLiteral("b@x.test")), QStringLiteral("cy")});
    editor.replaceToken(0, {address(QStringLiteral("ann@x.test")), QStringLiteral("rest")});
    EXPECT_EQ(shown(editor.tokens()),
              (QStringList{QStringLiteral("[<ann@x.test>]"), QStringLiteral("rest"),
                           QStringLiteral("[<b@x.test>]"), QStringLiteral("cy")}));
    EXPECT_EQ(editor.caret(), 5);
    EXPECT_EQ(editor.committedTokenAt(5), 2);
    EXPECT_EQ(editor.committedTokenAt(2), -1);

    editor.setCaret(3);
    editor.setCaret(7, true);
    EXPECT_EQ(
        shown(editor.selectedTokens()),
        (QStringList{QStringLiteral("st"), QStringLiteral("[<b@x.test>]"), QStringLiteral("c")}));
    // Replacing by nothing lets the texts on both sides meet.
    editor.replaceToken(2, {});
    EXPECT_EQ(shown(editor.tokens()),
              (QStringList{QStringLiteral("[<ann@x.test>]"), QStringLiteral("restcy")}));
    EXPECT_EQ(editor.caret(), 5);
}

} // namespace
