// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Shown.h"
#include "TestSupport.h"
#include "message/ExtensionMessage.h"
#include "platform/Log.h"

using namespace velmora;
using velmora::test::shown;

namespace {

QString s(const char* utf8) {
    return QString::fromUtf8(utf8);
}

std::shared_ptr<ExtensionMessage> withBodies(const QString& html, const QString& plain) {
    auto message = ExtensionMessage::init();
    message->setHtmlBody(html);
    message->setPlainBody(plain);
    return message;
}

TEST(HtmlRendering, HtmlBodyGetsTheAttachmentsAsImagesOnEveryCall) {
    const auto message = withBodies(s("<p>x</p>"), s("plain is ignored"));
    message->attachments()->append({s("/tmp/a.png"), s("/tmp/b c.jpg")});
    const QString images =
        s("<img src=\"file:///tmp/a.png\"/><br/><img src=\"file:///tmp/b c.jpg\"/><br/>");
    EXPECT_EQ(message->renderHtml(), s("<p>x</p>") + images);
    EXPECT_EQ(message->renderHtml(), s("<p>x</p>") + images + images);
    EXPECT_EQ(message->htmlBody(), s("<p>x</p>") + images + images);
    EXPECT_EQ(message->plainBody(), s("plain is ignored"));

    const auto url = withBodies(s(""), s(""));
    url->attachments()->append(QUrl::fromLocalFile(s("/tmp/z.pdf")));
    EXPECT_EQ(url->renderHtml(), s("<img src=\"file://file:///tmp/z.pdf\"/><br/>"));
    EXPECT_EQ(shown(withBodies(QString(), QString())->renderHtml()), shown(s("")));
}

// Only the plain body holds text: line breaks and anchors, written back to it. Each repeat of a
// link doubles its occurrences; the body stops growing at its limit (1 MiB for a short one)
// instead of running out of memory, and says so once.
TEST(HtmlRendering, RepeatedLinksStopAtTheGrowthLimit) {
    QString body;
    for (int i = 0; i < 40; ++i)
        body += s("http://h.test\n");
    LogCapture log;
    const auto message = withBodies(QString(), body);
    const QString rendered = message->renderHtml();
    EXPECT_LE(rendered.size(), 1 << 20);
    EXPECT_TRUE(rendered.startsWith(s("<a href='<a href='<a href='")));
    EXPECT_TRUE(rendered.endsWith(s("</a></a><br>")));
    EXPECT_EQ(shown({message->htmlBody(), message->plainBody()}), shown({QString(), rendered}));
    EXPECT_EQ(log.lines(), QStringList{s("renderHtml links left out past 1048576 characters")});
}

TEST(LinkDetection, FindsLinksInProse) {
    const struct {
        const char* name;
        QString text;
        QStringList links;
    } rows[] = {
        {"none", s("no links here, just a.b and c@d"), {}},
        {"prose_punctuation",
         s("(at http://h.test/a?b=1), or http://h.test/c!?:; then"),
         {s("http://h.test/a?b=1"), s("http://h.test/c")}},
        {"balanced_parenthesis",
         s("http://w.test/wiki/Foo_(bar)."),
         {s("http://w.test/wiki/Foo_(bar)")}},
        {"closing_quotes",
         s("“https://h.test/q” and 'ftp://f.test/a'"),
         {s("https://h.test/q"), s("ftp://f.test/a")}},
        {"ends_at_markup", s("see http://h.test/a<br>bye"), {s("http://h.test/a")}},
        {"file_and_custom",
         s("file:///tmp/x y and velmora://send?a=1"),
         {s("file:///tmp/x"), s("velmora://send?a=1")}},
        {"www_host", s("visit WWW.H.test.org/x?y=1, now"), {s("http://www.h.test.org/x?y=1")}},
        {"www_at_sentence_end", s("at www.h.test.org."), {s("http://www.h.test.org")}},
        {"www_too_short", s("www.test or xwww.a.test.org"), {}},
        {"email", s("write to ada.l+x@mail.h.test."), {s("mailto:ada.l+x@mail.h.test")}},
        {"mailto", s("mailto:ada@h.test?subject=Hi"), {s("mailto:ada@h.test?subject=Hi")}},
        {"user_info_is_no_email", s("http://u@h.test/"), {s("http://u@h.test/")}},
        {"normalised", s("HTTP://H.Test/ä%zz"), {s("http://h.test/%C3%A4%25zz")}},
        {"international_host", s("http://bücher.test/"), {s("http://xn--bcher-kva.test/")}},
        {"ipv6", s("[http://[::1]:8080/x]"), {s("http://[::1]:8080/x")}},
        {"no_host", s("http:// and http://. and https:///x"), {}},
        {"scheme_without_slashes", s("tel:123 and news:x"), {}},
        {"digit_before_scheme", s("1http://h.test"), {s("http://h.test")}},
    };
    const ExtensionMessage message;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(message.searchUrlsDetector(row.text), row.links);
    }
}

} // namespace
