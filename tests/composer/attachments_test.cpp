// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Attachments on real files of each kind: previews (cache entries, images, PDFs, type icons),
// the thumbnail loader, the attachment list and the strip that shows it.
#include "AttachmentFiles.h"
#include "ImageSamples.h"
#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentCollectionViewItem.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionAttachmentView.h"
#include "composer/FilePreview.h"
#include "composer/ThumbnailCache.h"
#include "composer/ThumbnailLoader.h"

#include <QDateTime>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>
#include <QPdfWriter>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

using namespace velmora;
using namespace velmora::test;

namespace {

const QSize k128(128, 128);

// A one-page A4 PDF whose upper half is filled with color.
QString writePdf(const QString& path, const QColor& color) {
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    painter.fillRect(QRect(0, 0, writer.width(), writer.height() / 2), color);
    painter.end();
    return path;
}

// Whether every pixel of the image is fully transparent.
bool isTransparent(const QImage& image) {
    QImage clear(image.size(), QImage::Format_ARGB32_Premultiplied);
    clear.fill(Qt::transparent);
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied) == clear;
}

// The average colour of a rectangle of the image.
QColor averageColor(const QImage& image, const QRect& rect) {
    // A smooth scale to one pixel averages the rectangle's pixels.
    const QImage part = image.copy(rect).convertToFormat(QImage::Format_RGB32);
    return part.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixelColor(0, 0);
}

// Whether two colours differ by at most tolerance in each channel.
bool near(const QColor& a, const QColor& b, int tolerance = 24) {
    return std::abs(a.red() - b.red()) <= tolerance &&
           std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

// Writes a cache entry of one colour for file, recording mtime as the file's.
void writeCacheEntry(const QString& entryPath, const QString& file, qint64 mtime,
                     const QColor& color) {
    QImage entry(128, 96, QImage::Format_RGB32);
    entry.fill(color);
    entry.setText(QStringLiteral("Thumb::URI"), QString::fromUtf8(ThumbnailCache::fileUri(file)));
    entry.setText(QStringLiteral("Thumb::MTime"), QString::number(mtime));
    QDir().mkpath(QFileInfo(entryPath).absolutePath());
    ASSERT_TRUE(QImageWriter(entryPath, "png").write(entry));
}

TEST(FilePreview, ACacheEntryCountsOnlyWhileItsModificationTimeMatches) {
    IsolatedDesktop desktop;
    const QString file = writeImage(desktop.file("photo.png"), QSize(300, 300), Qt::red);
    const qint64 mtime = QFileInfo(file).lastModified().toSecsSinceEpoch();
    const QString normal = ThumbnailCache::entryPaths(file, k128).first();

    writeCacheEntry(normal, file, mtime, Qt::green);
    QImage preview = contentPreview(file, k128);
    EXPECT_EQ(preview.size(), QSize(128, 96));
    EXPECT_EQ(preview.pixelColor(60, 40), QColor(Qt::green));

    // The file changed after the entry was made: the entry is stale, the file is decoded.
    writeCacheEntry(normal, file, mtime - 10, Qt::green);
    preview = contentPreview(file, k128);
    EXPECT_EQ(preview.size(), k128);
    EXPECT_TRUE(near(preview.pixelColor(60, 60), Qt::red));
}

// Images decoded to fit, keeping their shape and orientation; a PDF as its first page; the
// content on a framed page when asked for an icon.
TEST(FilePreview, ContentIsDecodedToFitKeepingItsShapeAndOrientation) {
    IsolatedDesktop desktop;
    const QString wide = writeImage(desktop.file("wide.png"), QSize(1000, 500), Qt::blue);
    QImage preview = imageWithPreviewOfFileAtPath(wide, QSizeF(128, 128), false);
    EXPECT_EQ(preview.size(), QSize(128, 64));
    EXPECT_TRUE(near(preview.pixelColor(64, 32), Qt::blue));

    // A small image is not blown up.
    const QString small = writeImage(desktop.file("small.jpg"), QSize(40, 30), Qt::yellow);
    EXPECT_EQ(contentPreview(small, k128).size(), QSize(40, 30));

    // A landscape JPEG whose metadata says "turn a quarter": shown upright, so portrait.
    QImage landscape(400, 200, QImage::Format_RGB32);
    landscape.fill(Qt::darkGreen);
    const QString turned = writeBytes(
        desktop.file("turned.jpg"), jpegWithOrientation(landscape, 6)); // turn a quarter clockwise
    EXPECT_EQ(contentPreview(turned, k128).size(), QSize(64, 128));

    // The name says image, the bytes do not: the type's icon instead of nothing.
    const QString broken = writeBytes(desktop.file("broken.png"), "not a picture at all");
    EXPECT_TRUE(contentPreview(broken, k128).isNull());
    EXPECT_FALSE(imageWithPreviewOfFileAtPath(broken, QSizeF(128, 128), false).isNull());

    // A PDF shows its first page.
    const QString pdf = writePdf(desktop.file("letter.pdf"), Qt::red);
    const QImage page = imageWithPreviewOfFileAtPath(pdf, QSizeF(128, 128), false);
    // A4 upright: as tall as the box, about 0.7 of it wide.
    EXPECT_EQ(page.height(), 128);
    EXPECT_NEAR(page.width(), 128 * 210 / 297, 2);
    EXPECT_TRUE(near(averageColor(page, QRect(10, 10, page.width() - 20, 40)), Qt::red));
    EXPECT_TRUE(near(averageColor(page, QRect(10, 80, page.width() - 20, 40)), Qt::white));

    const QString damaged = writeBytes(desktop.file("damaged.pdf"), "%PDF-1.4\nnothing else\n");
    EXPECT_TRUE(contentPreview(damaged, k128).isNull());

    // As an icon, the content lies on a framed page.
    const QImage icon = imageWithPreviewOfFileAtPath(wide, QSizeF(128, 128), true);
    ASSERT_EQ(icon.size(), k128);
    EXPECT_EQ(icon.pixelColor(64, 5).alpha(), 0); // above the page
    EXPECT_TRUE(near(icon.pixelColor(64, 64), Qt::blue));
    EXPECT_NE(icon.pixelColor(0, 64), icon.pixelColor(3, 64)); // the frame's edge
}

// Only the one live request is answered, on the main thread, with what the synchronous path makes.
TEST(ThumbnailLoader, NothingReachesADestroyedReceiverOrACancelledRequest) {
    IsolatedDesktop desktop;
    const QString file = writeImage(desktop.file("a.png"), QSize(800, 800), Qt::blue);
    const QImage expected = imageWithPreviewOfFileAtPath(file, QSizeF(k128), false);
    int calls = 0;
    {
        ThumbnailLoader loader;
        QSignalSpy idle(&loader, &ThumbnailLoader::idle);
        auto receiver = std::make_unique<QObject>();
        QObject kept;
        loader.request(file, k128, receiver.get(), [&](const QImage&) { ++calls; });
        const quint64 cancelled =
            loader.request(file, k128, &kept, [&](const QImage&) { ++calls; });
        loader.request(file, k128, &kept, [&](const QImage& image) {
            calls += 100;
            EXPECT_EQ(QThread::currentThread(), kept.thread());
            EXPECT_EQ(image, expected);
        });
        receiver.reset();
        loader.cancel(cancelled);
        ASSERT_TRUE(idle.wait(20000));
        EXPECT_EQ(calls, 100);
    }
    // A loader destroyed with requests under way waits for its jobs and delivers nothing.
    {
        QObject kept;
        ThumbnailLoader loader;
        for (int i = 0; i < 20; ++i)
            loader.request(file, k128, &kept, [&](const QImage&) { ++calls; });
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 100);
}

using List = ExtensionAttachmentController::AttachmentList;

QImage render(QWidget& widget) {
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

TEST(ExtensionAttachmentController, ShowsTheVeryListItIsGivenAndFollowsItsChanges) {
    auto list = std::make_shared<List>(List{QStringLiteral("/a/report.txt")});
    ExtensionAttachmentController controller;
    controller.setContent(list);
    EXPECT_EQ(controller.content(), list);

    // The owner appends; told so, the controller adds rows for the new elements only.
    QSignalSpy inserted(&controller, &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(&controller, &QAbstractItemModel::modelReset);
    list->append(QStringLiteral("/b/report.txt"));
    list->append(QUrl::fromLocalFile(QStringLiteral("/c/photo one.png")));
    controller.rearrangeObjects();
    controller.rearrangeObjects(); // nothing changed: nothing signalled
    ASSERT_EQ(inserted.size(), 1);
    EXPECT_EQ(inserted.front().mid(1), (QVariantList{1, 2}));
    EXPECT_EQ(reset.size(), 0);

    // addObjects appends to that same list.
    controller.addObjects({QUrl(QStringLiteral("https://example.com/x")), 42});
    EXPECT_EQ(list->size(), 5);
    QStringList rows; // each row's name and path
    for (int row = 0; row < controller.rowCount(); ++row)
        rows << controller.index(row).data().toString() + u'|' +
                    controller.index(row).data(ExtensionAttachmentController::PathRole).toString();
    EXPECT_EQ(rows, QStringList({"report.txt|/a/report.txt", "report.txt|/b/report.txt",
                                 "photo one.png|/c/photo one.png", "|", "|"}));
    QStringList lasts; // names of folders and odd paths
    for (const char* path : {"/a/folder/", "/a//b//", "/", ""})
        lasts.append(ExtensionAttachmentController::lastPathComponent(QString::fromUtf8(path)));
    EXPECT_EQ(lasts, QStringList({"folder", "b", "/", ""}));

    // Anything but an append starts the rows afresh.
    list->removeFirst();
    controller.rearrangeObjects();
    EXPECT_EQ(reset.size(), 1);
    EXPECT_EQ(controller.rowCount(), 4);
}

// The strip as the composer makes it, in a window: transparent while empty, a selection that
// changes nothing visible, and transparent again once emptied.
TEST(ExtensionAttachmentCollectionView, ClicksAndArrowsSelectOneItemAndChangeNothingVisible) {
    IsolatedDesktop desktop;
    QWidget window;
    window.resize(600, 168);
    ExtensionAttachmentController controller;
    auto* view = new ExtensionAttachmentCollectionView(QRect(0, 0, 600, 168), &window);
    view->setThumbnailsSynchronous(true);
    view->setAttachmentController(&controller);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_TRUE(isTransparent(render(*view)));
    controller.addObjects({writeImage(desktop.file("holiday.png"), QSize(600, 400), Qt::blue),
                           writePdf(desktop.file("invoice.pdf"), Qt::red),
                           QUrl::fromLocalFile(writeBytes(desktop.file("data.bin"), "\x01\x02"))});
    const QImage before = render(*view);

    QTest::mouseClick(view, Qt::LeftButton, {}, view->itemFrame(1).center());
    EXPECT_EQ(controller.selectionIndex(), 1);
    EXPECT_TRUE(view->itemAtIndex(1)->view()->isSelected());
    QTest::mouseClick(view, Qt::LeftButton, {}, view->itemFrame(0).center());
    EXPECT_EQ(controller.selectionIndex(), 0);
    EXPECT_FALSE(view->itemAtIndex(1)->isSelected());
    EXPECT_TRUE(view->itemAtIndex(0)->view()->isSelected());
    EXPECT_EQ(render(*view), before);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(view, Qt::Key_Right);
    EXPECT_EQ(controller.selectionIndex(), 2);
    // A click beside the items clears the selection.
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(133, 60));
    EXPECT_EQ(controller.selectionIndex(), -1);
    EXPECT_FALSE(view->itemAtIndex(2)->isSelected());

    controller.setContent(std::make_shared<List>());
    EXPECT_EQ(view->count(), 0);
    EXPECT_TRUE(isTransparent(render(*view)));
}

} // namespace
