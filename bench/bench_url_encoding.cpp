// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Percent-encoding 1 MiB of mixed text (prose with punctuation, paths, some non-ASCII) against
// Qt's and libcurl's encoders with the same unreserved set, and building the command URL of a
// message with a 1 MiB HTML body against the same query built with QUrlQuery. Every case takes
// a QString and gives a QString, so the peers pay for their UTF-8 conversions as ours does.
#include "HeapCondition.h"
#include "message/ExtensionMessage.h"
#include "request/RequestUtils.h"

#include <QUrlQuery>

#include <benchmark/benchmark.h>
#include <curl/curl.h>

namespace {

constexpr qsizetype kMiB = 1024 * 1024;

// Fragments in the proportions a shared page or note has: mostly prose, some paths, some text
// in other scripts.
QString mixedText() {
    const QString pieces[] = {
        QStringLiteral("The quick brown fox jumps over the lazy dog, again and again. "),
        QStringLiteral("\"Is it ready?\" she asked; he said: yes (mostly) & 100% sure! "),
        QStringLiteral("/home/ada/Documents/Reports 2026/summary-final_v2.pdf "),
        QStringLiteral("https://example.test/path/to/page?x=1&y=two#top "),
        QString::fromUtf8("Zürich, café naïve, 東京 — ¿qué tal? "),
        QStringLiteral("Plain words make up most of a message body, with a few numbers 42. "),
    };
    QString text;
    for (int i = 0; text.size() < kMiB; ++i)
        text += pieces[i % std::size(pieces)];
    text.truncate(kMiB);
    return text;
}

const QString& text() {
    static const QString t = mixedText();
    return t;
}

// The text is made before any benchmark starts its clock, not in the first one's first
// iteration.
[[maybe_unused]] const bool kTextReady = !text().isEmpty();

void BM_URLEncodedString(benchmark::State& state) {
    for (auto _ : state) {
        velmora::bench::prepareHeap(state);
        benchmark::DoNotOptimize(velmora::RequestUtils::URLEncodedString(text()));
    }
    state.SetBytesProcessed(state.iterations() * text().size());
}

void BM_QtToPercentEncoding(benchmark::State& state) {
    for (auto _ : state) {
        velmora::bench::prepareHeap(state);
        benchmark::DoNotOptimize(QString::fromLatin1(text().toUtf8().toPercentEncoding()));
    }
    state.SetBytesProcessed(state.iterations() * text().size());
}

void BM_CurlEscape(benchmark::State& state) {
    // libcurl wants its global set-up once before the first handle.
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (ready != CURLE_OK)
        state.SkipWithError("libcurl did not start");
    CURL* curl = curl_easy_init();
    for (auto _ : state) {
        velmora::bench::prepareHeap(state);
        const QByteArray utf8 = text().toUtf8();
        char* escaped = curl_easy_escape(curl, utf8.constData(), int(utf8.size()));
        benchmark::DoNotOptimize(QString::fromLatin1(escaped));
        curl_free(escaped);
    }
    curl_easy_cleanup(curl);
    state.SetBytesProcessed(state.iterations() * text().size());
}

std::shared_ptr<velmora::ExtensionMessage> bigMessage() {
    auto message = velmora::ExtensionMessage::init();
    message->setSubject(QStringLiteral("Quarterly report: figures & notes"));
    message->setFrom(QStringLiteral("ada@example.test"));
    message->setAccount(QStringLiteral("work"));
    message->setPlainBody(QStringLiteral("See the attached report."));
    message->setHtmlBody(QStringLiteral("<html><body><p>") + text() +
                         QStringLiteral("</p></body></html>"));
    auto to = std::make_shared<velmora::ExtensionAddress>();
    to->setMail(QStringLiteral("grace@example.test"));
    message->to()->append(to);
    message->attachments()->append(QStringLiteral("/tmp/report 2026.pdf"));
    return message;
}

void BM_QueryUrl_1MiBHtml(benchmark::State& state) {
    const auto message = bigMessage();
    for (auto _ : state) {
        velmora::bench::prepareHeap(state);
        benchmark::DoNotOptimize(message->queryUrl(QStringLiteral("send")));
    }
}

// The same URL as a Qt program would build it: QUrlQuery over the escaped values, then QUrl.
void BM_QUrlQuery_1MiBHtml(benchmark::State& state) {
    const auto message = bigMessage();
    for (auto _ : state) {
        velmora::bench::prepareHeap(state);
        QUrlQuery query;
        auto add = [&query](const QString& key, const QString& value) {
            if (!value.isEmpty())
                query.addQueryItem(key, QString::fromLatin1(QUrl::toPercentEncoding(value)));
        };
        add(QStringLiteral("plainBody"), message->plainBody());
        add(QStringLiteral("htmlBody"), message->htmlBody());
        add(QStringLiteral("subject"), message->subject());
        add(QStringLiteral("from"), message->from());
        add(QStringLiteral("account"), message->account());
        add(QStringLiteral("to"), message->to()->at(0)->mail() + u';');
        add(QStringLiteral("attachment_0"), message->attachments()->at(0).toString());
        QUrl url;
        url.setScheme(QStringLiteral("velmora"));
        url.setHost(QStringLiteral("send"));
        url.setQuery(query);
        benchmark::DoNotOptimize(url.toString(QUrl::FullyEncoded));
    }
}

BENCHMARK(BM_URLEncodedString)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_QtToPercentEncoding)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_CurlEscape)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_QueryUrl_1MiBHtml)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_QUrlQuery_1MiBHtml)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
