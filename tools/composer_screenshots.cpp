// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Writes pictures of the composer to look at: light and dark palettes, each with the suggestion
// list open and with six attachments, at the scale the environment gives (QT_SCALE_FACTOR).
//
// usage: velmora-screenshots OUTPUT_DIR SAMPLES_DIR SUFFIX
// The accounts and contacts come from the container in VELMORA_GROUP_CONTAINER (see
// scripts/screenshots, which makes a demo container and runs this at 1x and 2x).

#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionComposerController.h"
#include "composer/ExtensionCopyRecipientsView.h"
#include "directory/ExtensionAddress.h"
#include "message/ExtensionMessage.h"
#include "platform/ExtensionContext.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/ExtensionTokenField.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPainter>
#include <QPalette>
#include <QPdfWriter>
#include <QStyle>
#include <QTextStream>
#include <QWidget>

using namespace velmora;

namespace {

// A dark session's colours, as KDE's and GNOME's dark themes give Qt applications.
QPalette darkPalette() {
    QPalette palette;
    const QColor window(0x20, 0x23, 0x26);
    const QColor base(0x14, 0x16, 0x18);
    const QColor text(0xfc, 0xfc, 0xfc);
    const QColor button(0x29, 0x2c, 0x30);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, button);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    palette.setColor(QPalette::HighlightedText, text);
    palette.setColor(QPalette::Link, QColor(0x1d, 0x99, 0xf3));
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::ToolTipText, text);
    QColor placeholder = text;
    placeholder.setAlpha(128);
    palette.setColor(QPalette::PlaceholderText, placeholder);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x6e, 0x71, 0x75));
    return palette;
}

void waitFor(const std::function<bool()>& done, int milliseconds = 5000) {
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QCoreApplication::processEvents();
}

void type(QWidget* target, const QString& text) {
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(target, &press);
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(target, &release);
    }
}

// One picture of a freshly built composer holding the files; with suggestions, "al" is typed
// after one chosen contact so that the list opens.
bool shoot(const QString& file, const QStringList& files, bool suggestions) {
    auto context = std::make_shared<ExtensionContext>(ExtensionContext::Items{});
    QWidget window;
    window.resize(600, 400);
    ExtensionComposerController composer(QRect(0, 0, 600, 400), context);
    composer.view()->setParent(&window);
    composer.collectionView()->setThumbnailsSynchronous(true);
    window.show();

    auto message = ExtensionMessage::init();
    message->setSubject(QStringLiteral("The Analytical Engine"));
    message->setHtmlBody(QStringLiteral(
        "<p>Notes on the engine: <a href=\"https://en.wikipedia.org/wiki/Analytical_engine\">"
        "https://en.wikipedia.org/wiki/Analytical_engine</a></p>"));
    for (const QString& path : files)
        message->attachments()->append(path);
    composer.update(message);
    waitFor([&] { return composer.collectionView()->count() == files.size(); });

    auto cc = std::make_shared<ExtensionAddress>();
    cc->setMail(QStringLiteral("charles.babbage@example.test"));
    if (!suggestions)
        composer.copyRecipientsView()->addRecipient(ExtensionCopyRecipientsView::Field::Cc, cc);

    ExtensionTokenField* to = composer.toField();
    if (const auto known = composer.suggestionController()->addressForMail(
            QStringLiteral("alan.turing@example.test")))
        to->setObjectValue({known});
    if (suggestions) {
        to->setFocus();
        type(to, QStringLiteral("al"));
        waitFor([&] { return composer.suggestionController()->visible(); });
    } else {
        composer.collectionView()->setFocus();
    }
    waitFor([] { return false; }, 200); // the last repaints
    return window.grab().save(file);
}

// The demo container has a picture and a text; the rest of the six is made here.
void makeSamples(const QDir& samples) {
    samples.mkpath(QStringLiteral("folder"));
    const QString pdf = samples.filePath(QStringLiteral("engine.pdf"));
    if (!QFileInfo::exists(pdf)) {
        QPdfWriter writer(pdf);
        QPainter painter(&writer);
        painter.setFont(QFont(QApplication::font().family(), 28));
        painter.drawText(QRect(0, 0, writer.width(), writer.height() / 4), Qt::AlignCenter,
                         QStringLiteral("The Analytical Engine"));
    }
    for (const char* name : {"a-very-long-file-name-of-plans.odt", "card.vcf"}) {
        QFile file(samples.filePath(QString::fromLatin1(name)));
        if (!file.exists() && file.open(QIODevice::WriteOnly))
            file.write("BEGIN:VCARD\nVERSION:3.0\nFN:Ada Lovelace\nEND:VCARD\n");
    }
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QTextStream err(stderr);
    if (argc != 4) {
        err << "usage: velmora-screenshots OUTPUT_DIR SAMPLES_DIR SUFFIX\n";
        return 2;
    }
    const QDir output(QString::fromLocal8Bit(argv[1]));
    const QDir samples(QString::fromLocal8Bit(argv[2]));
    const QString suffix = QString::fromLocal8Bit(argv[3]);
    QDir().mkpath(output.path());
    makeSamples(samples);

    const QStringList two = {samples.filePath(QStringLiteral("diagram.png")),
                             samples.filePath(QStringLiteral("notes.txt"))};
    const QStringList six = two + QStringList{samples.filePath(QStringLiteral("engine.pdf")),
                                              samples.filePath(QStringLiteral("folder")),
                                              samples.filePath(QStringLiteral("a-very-long-file-"
                                                                              "name-of-plans.odt")),
                                              samples.filePath(QStringLiteral("card.vcf"))};
    const QPalette light = QApplication::style()->standardPalette();
    int failures = 0;
    for (const auto& [name, palette] : {std::pair{QStringLiteral("light"), light},
                                        std::pair{QStringLiteral("dark"), darkPalette()}}) {
        QApplication::setPalette(palette);
        for (const bool suggestions : {true, false}) {
            const QString file =
                output.filePath(QStringLiteral("composer-%1-%2%3.png")
                                    .arg(name,
                                         suggestions ? QStringLiteral("suggestions")
                                                     : QStringLiteral("attachments"),
                                         suffix));
            if (shoot(file, suggestions ? two : six, suggestions))
                QTextStream(stdout) << file << '\n';
            else {
                err << "velmora-screenshots: could not write " << file << '\n';
                ++failures;
            }
        }
    }
    return failures == 0 ? 0 : 1;
}
