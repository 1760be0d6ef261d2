// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Spell checking a 1 MiB body: what a keystroke costs the user interface with the checker on,
// against the same text in a QTextEdit without one, and how long the longest turn of the event
// loop lasts while a freshly set 1 MiB body is checked.
#include "composer/ExtensionContentTextView.h"
#include "composer/SpellDictionaries.h"
#include "composer/Speller.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>

namespace {

using namespace velmora;

const char* const kWords[] = {
    "the",       "message",  "about",  "meeting",   "tomorrow", "morning",  "please",  "find",
    "attached",  "report",   "we",     "discussed", "last",     "week",     "and",     "let",
    "me",        "know",     "if",     "anything",  "should",   "change",   "before",  "sending",
    "it",        "to",       "our",    "partners",  "budget",   "numbers",  "look",    "better",
    "than",      "expected", "thanks", "for",       "your",     "patience", "with",    "this",
    "project",   "schedule", "has",    "moved",     "again",    "because",  "several", "people",
    "were",      "away",     "during", "holidays",  "would",    "you",      "mind",    "reading",
    "through",   "chapter",  "three",  "once",      "more",     "there",    "are",     "some",
    "questions", "left",     "open",   "office",    "kitchen",  "window",   "garden",  "weather",
};

// Prose of common words in paragraphs of about 600 characters; one word in 25 has two letters
// swapped, so the body holds thousands of different misspellings; links and addresses here
// and there.
QString makeBody(qsizetype size) {
    QRandomGenerator rng(7);
    QString body;
    body.reserve(size + 1000);
    qsizetype paragraph = 0;
    while (body.size() < size) {
        QString word = QString::fromLatin1(kWords[rng.bounded(int(std::size(kWords)))]);
        if (word.size() > 3 && rng.bounded(25) == 0) {
            const int at = 1 + rng.bounded(int(word.size()) - 2);
            std::swap(word[at], word[at + 1]);
        }
        const int extra = rng.bounded(60);
        if (extra == 0)
            word =
                QStringLiteral("https://docs.example.test/shraed/") + QString::number(body.size());
        else if (extra == 1)
            word = QStringLiteral("mario.rosi%1@exmaple.test").arg(body.size());
        body += word;
        if (body.size() - paragraph > 600) {
            body += QStringLiteral(".\n");
            paragraph = body.size();
        } else {
            body += u' ';
        }
    }
    return body;
}

const QString& body() {
    static const QString text = makeBody(512 * 1024); // 1 MiB of UTF-16
    return text;
}

std::shared_ptr<Speller> english() {
    static const std::shared_ptr<Speller> speller =
        Speller::load({QStringLiteral("en-US")}, dictionaryFolders(), QString());
    return speller;
}

void showWithBody(QTextEdit& edit) {
    edit.resize(570, 100);
    edit.show();
    edit.setPlainText(body());
    QTextCursor caret(edit.document());
    caret.setPosition(int(body().size() / 2));
    edit.setTextCursor(caret);
    edit.ensureCursorVisible();
}

// Types "word " over and over at the caret in the middle of the body; each iteration is one
// key press handled and the event loop's turn after it, where the checker works.
void typeOneKey(QTextEdit& edit, qsizetype& next) {
    static const QString typed = QStringLiteral("sned the repotr ");
    const QChar c = typed[next++ % typed.size()];
    QKeyEvent press(QEvent::KeyPress, c == u' ' ? Qt::Key_Space : Qt::Key_A, Qt::NoModifier, c);
    QApplication::sendEvent(&edit, &press);
    QApplication::processEvents();
}

void BM_Keystroke_1MiB_SpellChecked(benchmark::State& state) {
    ExtensionContentTextView view;
    view.setSpeller(english());
    showWithBody(view);
    while (view.isCheckingSpelling())
        QApplication::processEvents();
    qsizetype next = 0;
    for (auto _ : state)
        typeOneKey(view, next);
}

void BM_Keystroke_1MiB_Plain(benchmark::State& state) {
    QTextEdit edit;
    showWithBody(edit);
    QApplication::processEvents();
    qsizetype next = 0;
    for (auto _ : state)
        typeOneKey(edit, next);
}

bool stillChecking(const ExtensionContentTextView& view) {
    return view.isCheckingSpelling();
}

bool stillChecking(const QTextEdit&) {
    return false;
}

// Setting the body and checking all of it. The counter is the longest single turn of the event
// loop after the text was set, which is how long typing could have been held up meanwhile.
template <typename Edit> void setBody(benchmark::State& state, bool check) {
    double longestMs = 0;
    int turns = 0;
    for (auto _ : state) {
        Edit edit;
        if constexpr (std::is_same_v<Edit, ExtensionContentTextView>)
            edit.setSpeller(check ? english() : nullptr);
        showWithBody(edit);
        QElapsedTimer turn;
        do {
            turn.start();
            QApplication::processEvents();
            longestMs = std::max(longestMs, turn.nsecsElapsed() / 1e6);
            ++turns;
        } while (stillChecking(edit));
    }
    state.counters["longest_turn_ms"] = longestMs;
    state.counters["turns"] = benchmark::Counter(turns, benchmark::Counter::kAvgIterations);
}

void BM_SetBody_1MiB_SpellChecked(benchmark::State& state) {
    setBody<ExtensionContentTextView>(state, true);
}

void BM_SetBody_1MiB_Plain(benchmark::State& state) {
    setBody<QTextEdit>(state, false);
}

BENCHMARK(BM_Keystroke_1MiB_SpellChecked)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(200)
    ->Repetitions(3);
BENCHMARK(BM_Keystroke_1MiB_Plain)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(200)
    ->Repetitions(3);
BENCHMARK(BM_SetBody_1MiB_SpellChecked)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1)
    ->Repetitions(3);
BENCHMARK(BM_SetBody_1MiB_Plain)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1)
    ->Repetitions(3);

} // namespace

// Widgets need an application with a platform; the offscreen one needs no display.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
