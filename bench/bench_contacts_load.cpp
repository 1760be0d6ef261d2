// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Loading the contacts book of a heavy user (100,000 addresses) into records, from the XML and
// the binary form, against libplist's parse alone of the same bytes.
#include "HeapCondition.h"
#include "bridge/ExtensionUtilities.h"
#include "directory/ExtensionAddress.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <plist/plist.h>

namespace {

constexpr int kAddresses = 100000;

const char* const kFirst[] = {"Ada",    "Grace",   "Alan", "Edsger", "Barbara",
                              "Donald", "Frances", "Ken",  "Radia",  "Niklaus"};
const char* const kLast[] = {"Lovelace", "Hopper", "Turing",   "Dijkstra", "Liskov",
                             "Knuth",    "Allen",  "Thompson", "Perlman",  "Wirth"};

// A book with the mix of fields real books have: every address has a mail and a rank, most have
// names, some a company or a nickname.
plist_t makeBook() {
    QRandomGenerator rng(42);
    plist_t array = plist_new_array();
    for (int i = 0; i < kAddresses; ++i) {
        plist_t d = plist_new_dict();
        const char* first = kFirst[rng.bounded(10)];
        const char* last = kLast[rng.bounded(10)];
        const QByteArray mail = QByteArray(first).toLower() + '.' + QByteArray(last).toLower() +
                                QByteArray::number(i) + "@example.test";
        plist_dict_set_item(d, "mail", plist_new_string(mail.constData()));
        if (rng.bounded(10) < 8) {
            plist_dict_set_item(d, "firstName", plist_new_string(first));
            plist_dict_set_item(d, "lastName", plist_new_string(last));
        }
        if (rng.bounded(10) < 3)
            plist_dict_set_item(d, "company", plist_new_string("Analytical Engines Ltd."));
        if (rng.bounded(10) < 2)
            plist_dict_set_item(d, "nickname", plist_new_string(first));
        plist_dict_set_item(d, "rank", plist_new_uint(rng.bounded(500)));
        plist_array_append_item(array, d);
    }
    return array;
}

struct Book {
    QTemporaryDir container;
    QByteArray xml;
    QByteArray binary;

    Book() {
        plist_t book = makeBook();
        char* out = nullptr;
        uint32_t length = 0;
        plist_to_xml(book, &out, &length);
        xml = QByteArray(out, length);
        std::free(out);
        plist_free(book);
        // libplist 2.2's binary writer fails on a book this size; plistlib writes it instead.
        QProcess python;
        python.start(QStringLiteral("python3"),
                     {QStringLiteral("-c"),
                      QStringLiteral("import plistlib, sys; sys.stdout.buffer.write("
                                     "plistlib.dumps(plistlib.loads(sys.stdin.buffer.read()), "
                                     "fmt=plistlib.FMT_BINARY))")});
        python.write(xml);
        python.closeWriteChannel();
        if (!python.waitForFinished(120000) || python.exitCode() != 0)
            std::abort();
        binary = python.readAllStandardOutput();
        qputenv("VELMORA_GROUP_CONTAINER", QFile::encodeName(container.path()));
        qputenv("VELMORA_BUNDLE_ID", "it.zemlo.velmora.share");
        QDir().mkpath(container.path() + QStringLiteral("/SharedData/Contacts"));
    }

    void install(const QByteArray& bytes) const {
        QFile f(container.path() + QStringLiteral("/SharedData/Contacts/Addresses.plist"));
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
            std::abort();
    }
};

const Book& book() {
    static const Book instance;
    return instance;
}

void loadRecords(benchmark::State& state, const QByteArray& bytes) {
    book().install(bytes);
    for (auto _ : state) {
        velmora::bench::prepareHeap(state);
        const auto result = velmora::ExtensionUtilities::AddressesAndGroups();
        if (result.addresses.size() != kAddresses)
            state.SkipWithError("the book did not load");
        benchmark::DoNotOptimize(result.addresses.constData());
    }
    state.counters["bytes"] = double(bytes.size());
}

void libplistParse(benchmark::State& state, const QByteArray& bytes) {
    for (auto _ : state) {
        velmora::bench::prepareHeap(state);
        plist_t root = nullptr;
        plist_from_memory(bytes.constData(), uint32_t(bytes.size()), &root);
        if (!root || plist_array_get_size(root) != kAddresses)
            state.SkipWithError("libplist did not parse the book");
        plist_free(root);
    }
}

void BM_LoadContacts_Xml(benchmark::State& state) {
    loadRecords(state, book().xml);
}
void BM_LibplistParse_Xml(benchmark::State& state) {
    libplistParse(state, book().xml);
}
void BM_LoadContacts_Binary(benchmark::State& state) {
    loadRecords(state, book().binary);
}
void BM_LibplistParse_Binary(benchmark::State& state) {
    libplistParse(state, book().binary);
}

BENCHMARK(BM_LoadContacts_Xml)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LibplistParse_Xml)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LoadContacts_Binary)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LibplistParse_Binary)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
