// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Suggestions for one keystroke in a heavy user's contacts (100,000 addresses): our matcher,
// which lower-cases the fields once at load, against lower-casing every field of every address
// on every keystroke.
#include "HeapCondition.h"
#include "LowerEveryField.h"
#include "recipients/SuggestionMatcher.h"

#include <QRandomGenerator>

#include <benchmark/benchmark.h>

namespace {

using namespace velmora;

constexpr int kAddresses = 100000;

const char* const kFirst[] = {"Ada",    "Grace",   "Alan", "Edsger", "Barbara",
                              "Donald", "Frances", "Ken",  "Radia",  "Niklaus"};
const char* const kLast[] = {"Lovelace", "Hopper", "Turing",   "Dijkstra", "Liskov",
                             "Knuth",    "Allen",  "Thompson", "Perlman",  "Wirth"};
const char* const kDomains[] = {"example.test", "uni-bologna.test", "posteo.test", "corp.test",
                                "fastmail.test"};

// Names and domains mixed as in a real book: most addresses have names, some a company or a
// nickname; some names carry letters outside ASCII.
SuggestionMatcher::Addresses makeBook() {
    QRandomGenerator rng(42);
    SuggestionMatcher::Addresses book;
    book.reserve(kAddresses);
    for (int i = 0; i < kAddresses; ++i) {
        auto a = std::make_shared<ExtensionAddress>();
        QString first = QString::fromLatin1(kFirst[rng.bounded(10)]);
        const QString last = QString::fromLatin1(kLast[rng.bounded(10)]);
        if (rng.bounded(10) == 0)
            first = QStringLiteral("Émilie");
        a->setMail(first.toLower() + u'.' + last.toLower() + QString::number(i) + u'@' +
                   QString::fromLatin1(kDomains[rng.bounded(5)]));
        const bool named = rng.bounded(10) < 8;
        a->setFirstName(named ? first : QString());
        a->setLastName(named ? last : QString());
        a->setCompany(rng.bounded(10) < 3 ? QStringLiteral("Analytical Engines Ltd.") : QString());
        a->setNickname(rng.bounded(10) < 2 ? first : QString());
        a->setRank(rng.bounded(500));
        book.append(std::move(a));
    }
    return book;
}

const SuggestionMatcher::Addresses& book() {
    static const SuggestionMatcher::Addresses instance = makeBook();
    return instance;
}

// The keystrokes of typing a few recipients, each prefix one keystroke; the first letters
// match most of the book, the later ones a handful.
const QStringList& keystrokes() {
    static const QStringList list = [] {
        QStringList out;
        for (const char* typed : {"grace", "Hopper", "knuth", "emi", "ada.l", "fastmail"})
            for (int n = 1; n <= int(qstrlen(typed)); ++n)
                out.append(QString::fromLatin1(typed, n));
        return out;
    }();
    return list;
}

// One iteration types the whole mix, so both sides always type the same keystrokes whatever
// number of iterations the library picks; the time per keystroke is the iteration's / 32.
void BM_Suggest_KeystrokeMix(benchmark::State& state) {
    const SuggestionMatcher matcher(book(), {});
    for (auto _ : state) {
        for (const QString& typed : keystrokes()) {
            const Suggestions found = matcher.objectsForString(typed);
            benchmark::DoNotOptimize(found.size());
        }
    }
    state.SetItemsProcessed(state.iterations() * keystrokes().size());
}

void BM_LowerEveryField_KeystrokeMix(benchmark::State& state) {
    for (auto _ : state) {
        for (const QString& typed : keystrokes()) {
            const QList<Recipient> found = test::lowerEveryField(book(), typed);
            benchmark::DoNotOptimize(found.constData());
        }
    }
    state.SetItemsProcessed(state.iterations() * keystrokes().size());
}

// The worst keystroke: one letter that nearly every address holds in its mail.
void BM_Suggest_FirstLetter(benchmark::State& state) {
    const SuggestionMatcher matcher(book(), {});
    for (auto _ : state) {
        const Suggestions found = matcher.objectsForString(QStringLiteral("e"));
        benchmark::DoNotOptimize(found.size());
    }
}

// Lower-casing the fields once, when the contacts are loaded.
void BM_Suggest_Load(benchmark::State& state) {
    for (auto _ : state) {
        velmora::bench::prepareHeap(state);
        const SuggestionMatcher matcher(book(), {});
        benchmark::DoNotOptimize(&matcher);
    }
}

BENCHMARK(BM_Suggest_KeystrokeMix)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LowerEveryField_KeystrokeMix)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Suggest_FirstLetter)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Suggest_Load)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
