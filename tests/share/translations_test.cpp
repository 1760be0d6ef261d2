// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/LocalizedString.h"
#include "share/Translations.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace velmora {
namespace {

// The test main runs in C.UTF-8; each test leaves the default locale and the installed
// translation as it found them.
class TranslationLoading : public ::testing::Test {
protected:
    void TearDown() override {
        QLocale::setDefault(m_locale);
        installTranslationsFor({});
    }

private:
    QLocale m_locale;
};

TEST_F(TranslationLoading, TakesTheFirstLanguageThatHasATranslation) {
    struct Row {
        const char* name;
        QStringList languages;
        const char* send;
    };
    const Row rows[] = {
        {"language-and-region", {QStringLiteral("it-IT")}, "Invia"},
        {"region-without-its-own-file", {QStringLiteral("it-CH")}, "Invia"},
        {"underscore-form", {QStringLiteral("it_IT")}, "Invia"},
        {"untranslated-ones-skipped",
         {QStringLiteral("fr-FR"), QStringLiteral("de"), QStringLiteral("it")},
         "Invia"},
        {"english-first", {QStringLiteral("en-GB"), QStringLiteral("it-IT")}, "Send"},
        {"no-translation", {QStringLiteral("fr-FR")}, "Send"},
        {"c-locale", {QStringLiteral("C")}, "Send"},
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

    // Without a list, the languages of the default locale.
    QLocale::setDefault(QLocale(QStringLiteral("it_IT")));
    installTranslations();
    EXPECT_EQ(LocalizedString("Your message has an empty subject."),
              QStringLiteral("Il messaggio non ha un oggetto."));
    // A key without a translation comes back as itself.
    EXPECT_EQ(LocalizedString("Not in any catalogue"), QStringLiteral("Not in any catalogue"));
}

} // namespace
} // namespace velmora
