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

#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QLabel>
#include <QMimeDatabase>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include <atomic>
#include <mutex>
#include <thread>

using namespace velmora;
using namespace velmora::test;

namespace {

const QSize k128(128, 128);

TEST(ThumbnailCache, NamesEntriesByTheMd5OfTheUriAsGLibWritesIt) {
    const struct {
        const char* name;
        QString path;
        QByteArray uri;
    } rows[] = {
        {"plain", QStringLiteral("/home/jens/photos/me.png"), "file:///home/jens/photos/me.png"},
        {"reserved-and-unicode", QStringLiteral("/tmp/a b#%?[]{}\u00e9!$&'()*+,:;=@~\"<>\\^`|"),
         "file:///tmp/a%20b%23%25%3F%5B%5D%7B%7D%C3%A9!$&'()*+,:%3B=@~%22%3C%3E%5C%5E%60%7C"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ThumbnailCache::fileUri(row.path), row.uri);
    }
    // The thumbnail standard's own example.
    IsolatedDesktop desktop;
    const QStringList paths =
        ThumbnailCache::entryPaths(QStringLiteral("/home/jens/photos/me.png"), k128);
    ASSERT_FALSE(paths.isEmpty());
    EXPECT_EQ(paths.first(),
              desktop.cacheHome() + QStringLiteral("/thumbnails/normal/"
                                                   "c6ee772d9e49320e97ec29a7eb5b1697.png"));
    // A bigger request looks in "large" first, and still finds a smaller entry last.
    const QStringList big = ThumbnailCache::entryPaths(QStringLiteral("/a"), QSize(200, 150));
    EXPECT_TRUE(big.first().contains(QLatin1String("/thumbnails/large/")));
    EXPECT_TRUE(big.last().contains(QLatin1String("/thumbnails/normal/")));
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
    const QString file =
        writeImage(desktop.files() + QStringLiteral("/photo.png"), QSize(300, 300), Qt::red);
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
    const QString wide =
        writeImage(desktop.files() + QStringLiteral("/wide.png"), QSize(1000, 500), Qt::blue);
    QImage preview = imageWithPreviewOfFileAtPath(wide, QSizeF(128, 128), false);
    EXPECT_EQ(preview.size(), QSize(128, 64));
    EXPECT_TRUE(near(preview.pixelColor(64, 32), Qt::blue));

    // A small image is not blown up.
    const QString small =
        writeImage(desktop.files() + QStringLiteral("/small.jpg"), QSize(40, 30), Qt::yellow);
    EXPECT_EQ(contentPreview(small, k128).size(), QSize(40, 30));

    // A landscape JPEG whose metadata says "turn a quarter": shown upright, so portrait.
    QImage landscape(400, 200, QImage::Format_RGB32);
    landscape.fill(Qt::darkGreen);
    const QString turned =
        writeBytes(desktop.files() + QStringLiteral("/turned.jpg"),
                   jpegWithOrientation(landscape, 6)); // turn a quarter clockwise
    QImageReader raw(turned);
    ASSERT_EQ(raw.transformation(), QImageIOHandler::TransformationRotate90);
    ASSERT_EQ(raw.size(), QSize(400, 200));
    EXPECT_EQ(contentPreview(turned, k128).size(), QSize(64, 128));

    // The name says image, the bytes do not: the type's icon instead of nothing.
    const QString broken =
        writeBytes(desktop.files() + QStringLiteral("/broken.png"), "not a picture at all");
    EXPECT_TRUE(contentPreview(broken, k128).isNull());
    EXPECT_FALSE(imageWithPreviewOfFileAtPath(broken, QSizeF(128, 128), false).isNull());

    // A PDF shows its first page.
    const QString pdf = writePdf(desktop.files() + QStringLiteral("/letter.pdf"), Qt::red);
    const QImage page = imageWithPreviewOfFileAtPath(pdf, QSizeF(128, 128), false);
    // A4 upright: as tall as the box, about 0.7 of it wide.
    EXPECT_EQ(page.height(), 128);
    EXPECT_NEAR(page.width(), 128 * 210 / 297, 2);
    EXPECT_TRUE(near(averageColor(page, QRect(10, 10, page.width() - 20, 40)), Qt::red));
    EXPECT_TRUE(near(averageColor(page, QRect(10, 80, page.width() - 20, 40)), Qt::white));

    const QString damaged =
        writeBytes(desktop.files() + QStringLiteral("/damaged.pdf"), "%PDF-1.4\nnothing else\n");
    EXPECT_TRUE(contentPreview(damaged, k128).isNull());

    // As an icon, the content lies on a framed page.
    const QImage icon = imageWithPreviewOfFileAtPath(wide, QSizeF(128, 128), true);
    ASSERT_EQ(icon.size(), k128);
    EXPECT_EQ(icon.pixelColor(64, 5).alpha(), 0); // above the page
    EXPECT_TRUE(near(icon.pixelColor(64, 64), Qt::blue));
    EXPECT_NE(icon.pixelColor(0, 64), icon.pixelColor(3, 64)); // the frame's edge
}

TEST(FilePreview, WithoutContentTheThemeIconOfTheTypeThenItsGenericIconThenABuiltInOne) {
    IsolatedDesktop desktop;
    QMimeDatabase mime;
    const QString text = writeBytes(desktop.files() + QStringLiteral("/notes.txt"), "hello\n");
    const QString source =
        writeBytes(desktop.files() + QStringLiteral("/main.c"), "int main(void) {}\n");
    const QString unknown = writeBytes(desktop.files() + QStringLiteral("/blob.velmora-unknown"),
                                       QByteArray("\x01\x02\xfe\xff\x00\x10", 6).repeated(50));
    const QMimeType sourceType = mime.mimeTypeForFile(source);
    ASSERT_NE(sourceType.iconName(), sourceType.genericIconName());
    desktop.addThemeIcon(mime.mimeTypeForFile(text).iconName(), Qt::magenta);
    desktop.addThemeIcon(sourceType.genericIconName(), Qt::cyan);

    EXPECT_EQ(imageWithPreviewOfFileAtPath(text, QSizeF(128, 128), false).pixelColor(64, 64),
              QColor(Qt::magenta));
    EXPECT_EQ(imageWithPreviewOfFileAtPath(source, QSizeF(128, 128), false).pixelColor(64, 64),
              QColor(Qt::cyan));

    // No icon in the theme: the built-in document, a white page on a transparent ground.
    const QImage builtIn = imageWithPreviewOfFileAtPath(unknown, QSizeF(128, 128), false);
    ASSERT_EQ(builtIn.size(), k128);
    EXPECT_EQ(builtIn.pixelColor(0, 0).alpha(), 0);
    EXPECT_TRUE(near(builtIn.pixelColor(50, 40), Qt::white, 8));
    EXPECT_FALSE(isTransparent(builtIn.copy(0, 0, 128, 128)));

    EXPECT_TRUE(imageWithPreviewOfFileAtPath(QString(), QSizeF(128, 128), false).isNull());
    EXPECT_TRUE(imageWithPreviewOfFileAtPath(text, QSizeF(0, 0), false).isNull());
}

TEST(ThumbnailLoader, DeliversWhatTheSynchronousPathMakesOnceEachOnItsOwnThread) {
    IsolatedDesktop desktop;
    const QStringList files = {
        writeImage(desktop.files() + QStringLiteral("/a.png"), QSize(500, 250), Qt::blue),
        writePdf(desktop.files() + QStringLiteral("/b.pdf"), Qt::red),
        writeBytes(desktop.files() + QStringLiteral("/c.bin"), QByteArray(300, '\x01')),
        writeImage(desktop.files() + QStringLiteral("/d.jpg"), QSize(300, 600), Qt::green),
    };
    ThumbnailLoader loader;
    QSignalSpy idle(&loader, &ThumbnailLoader::idle);
    QObject receiver;
    std::map<QString, QList<QImage>> delivered;
    QThread* const mainThread = QThread::currentThread();
    bool onMainThread = true;
    for (int round = 0; round < 3; ++round) {
        for (const QString& file : files) {
            loader.request(file, k128, &receiver, [&, file](const QImage& image) {
                onMainThread = onMainThread && QThread::currentThread() == mainThread;
                delivered[file].append(image);
            });
        }
    }
    EXPECT_EQ(loader.pendingCount(), 12);
    ASSERT_TRUE(idle.wait(20000));
    EXPECT_TRUE(onMainThread);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        ASSERT_EQ(delivered[file].size(), 3);
        const QImage expected = imageWithPreviewOfFileAtPath(file, QSizeF(k128), false);
        for (const QImage& image : delivered[file])
            EXPECT_EQ(image, expected);
    }
}

TEST(ThumbnailLoader, NothingReachesADestroyedReceiverOrACancelledRequest) {
    IsolatedDesktop desktop;
    const QString file =
        writeImage(desktop.files() + QStringLiteral("/a.png"), QSize(800, 800), Qt::blue);
    int calls = 0;
    {
        ThumbnailLoader loader;
        QSignalSpy idle(&loader, &ThumbnailLoader::idle);
        auto receiver = std::make_unique<QObject>();
        QObject kept;
        loader.request(file, k128, receiver.get(), [&](const QImage&) { ++calls; });
        const quint64 cancelled =
            loader.request(file, k128, &kept, [&](const QImage&) { ++calls; });
        loader.request(file, k128, &kept, [&](const QImage&) { calls += 100; });
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

QImage thumbnailOf(ExtensionAttachmentCollectionViewItem* item) {
    return item->view()->imv()->pixmap().toImage();
}

TEST(ExtensionAttachmentController, ShowsTheVeryListItIsGivenAndFollowsItsChanges) {
    auto list = std::make_shared<List>(List{QStringLiteral("/a/report.txt")});
    ExtensionAttachmentController controller;
    controller.setContent(list);
    EXPECT_EQ(controller.content(), list);
    EXPECT_EQ(controller.rowCount(), 1);

    // The owner appends; told so, the controller adds rows for the new elements only.
    QSignalSpy inserted(&controller, &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(&controller, &QAbstractItemModel::modelReset);
    list->append(QStringLiteral("/b/report.txt"));
    list->append(QUrl::fromLocalFile(QStringLiteral("/c/photo one.png")));
    controller.rearrangeObjects();
    ASSERT_EQ(inserted.size(), 1);
    EXPECT_EQ(inserted.front().at(1).toInt(), 1);
    EXPECT_EQ(inserted.front().at(2).toInt(), 2);
    EXPECT_EQ(reset.size(), 0);
    controller.rearrangeObjects(); // nothing changed: nothing signalled
    EXPECT_EQ(inserted.size(), 1);

    // addObjects appends to that same list.
    controller.addObjects({QUrl(QStringLiteral("https://example.com/x")), 42});
    EXPECT_EQ(list->size(), 5);
    EXPECT_EQ(controller.rowCount(), 5);

    QStringList names, paths;
    for (int row = 0; row < controller.rowCount(); ++row) {
        names << controller.index(row).data().toString();
        paths << controller.index(row).data(ExtensionAttachmentController::PathRole).toString();
    }
    EXPECT_EQ(names, QStringList({"report.txt", "report.txt", "photo one.png", "", ""}));
    EXPECT_EQ(paths, QStringList({"/a/report.txt", "/b/report.txt", "/c/photo one.png", "", ""}));
    // Names of folders and odd paths.
    QStringList lasts;
    for (const char* path : {"/a/folder/", "/a//b//", "/", ""})
        lasts.append(ExtensionAttachmentController::lastPathComponent(QString::fromUtf8(path)));
    EXPECT_EQ(lasts, QStringList({"folder", "b", "/", ""}));

    // Anything but an append starts the rows afresh.
    list->removeFirst();
    controller.rearrangeObjects();
    EXPECT_EQ(reset.size(), 1);
    EXPECT_EQ(controller.rowCount(), 4);
}

TEST(ExtensionAttachmentController, ReadsAndWritesTheListUnderItsOwnersLock) {
    auto list = std::make_shared<List>();
    std::mutex lock; // the owner's
    int accesses = 0;
    ExtensionAttachmentController controller;
    controller.setContent(list, [&](const std::function<void(List&)>& body) {
        const std::lock_guard locked(lock);
        ++accesses;
        body(*list);
    });
    EXPECT_EQ(accesses, 1);

    // Another thread appends under the lock while the strip catches up.
    std::atomic<bool> finished = false;
    std::thread writer([&] {
        for (int i = 0; i < 200; ++i) {
            const std::lock_guard locked(lock);
            list->append(QStringLiteral("/staged/file%1.txt").arg(i));
        }
        finished = true;
    });
    while (!finished)
        controller.rearrangeObjects();
    writer.join();
    controller.rearrangeObjects();
    EXPECT_EQ(controller.rowCount(), 200);
    EXPECT_EQ(controller.index(199).data().toString(), QStringLiteral("file199.txt"));

    controller.addObjects({QStringLiteral("/x/y.txt")});
    const std::lock_guard locked(lock);
    EXPECT_EQ(list->size(), 201);
}

// A strip as the composer makes it, inside a window, over files of several kinds.
struct Strip {
    IsolatedDesktop desktop;
    QWidget window;
    ExtensionAttachmentController controller;
    ExtensionAttachmentCollectionView* view;
    QString image, pdf, unknown, longName;

    explicit Strip(bool synchronous = true) {
        image = writeImage(desktop.files() + QStringLiteral("/holiday.png"), QSize(600, 400),
                           QColor(30, 90, 200));
        pdf = writePdf(desktop.files() + QStringLiteral("/invoice.pdf"), QColor(200, 30, 30));
        unknown = writeBytes(desktop.files() + QStringLiteral("/data.velmora-unknown"),
                             QByteArray("\x01\x02\x03\xff", 4).repeated(64));
        longName = writeImage(desktop.files() +
                                  QStringLiteral("/a very long file name that cannot possibly "
                                                 "fit under its thumbnail.jpg"),
                              QSize(200, 300), QColor(40, 160, 60));
        window.resize(600, 168);
        view = new ExtensionAttachmentCollectionView(QRect(0, 0, 600, 168), &window);
        view->setThumbnailsSynchronous(synchronous);
        view->setAttachmentController(&controller);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    QImage item(int index) { return render(*view).copy(view->itemFrame(index)); }
};

// Empty, the strip is one item tall and transparent; filled, each kind of file shows in its
// square with its name below, two files of one name each with its own picture; emptied again,
// it is transparent again.
TEST(ExtensionAttachmentCollectionView, ShowsEachKindOfAttachmentWithItsNameBelow) {
    Strip strip;
    EXPECT_EQ(strip.view->sizeHint().height(), 168);
    EXPECT_EQ(strip.view->height(), 168);
    EXPECT_TRUE(isTransparent(render(*strip.view)));
    const QString sameName = writeImage(strip.desktop.files() + QStringLiteral("/o/holiday.png"),
                                        QSize(100, 100), QColor(220, 200, 20));
    strip.controller.addObjects(
        {strip.image, strip.pdf, strip.unknown, strip.longName, QUrl::fromLocalFile(sameName)});
    ASSERT_EQ(strip.view->count(), 5);
    const QImage picture = render(*strip.view);
    const QString output = QStringLiteral(VELMORA_TEST_OUTPUT_DIR "/attachment-strip.png");
    EXPECT_TRUE(picture.save(output)) << output.toStdString();

    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        const QRect frame = strip.view->itemFrame(i);
        EXPECT_EQ(frame.size(), QSize(128, 168));
        EXPECT_EQ(strip.view->itemAtIndex(i)->view()->geometry(), frame);
        // Something drawn in the thumbnail square and in the name band, nothing in the gap.
        EXPECT_FALSE(isTransparent(picture.copy(frame.x(), 0, 128, 128)));
        EXPECT_TRUE(isTransparent(picture.copy(frame.x(), 128, 128, 20)));
        EXPECT_FALSE(isTransparent(picture.copy(frame.x(), 148, 128, 20)));
    }
    // The image's own colours, the PDF's red upper half on white, the unknown type's icon.
    EXPECT_TRUE(near(averageColor(strip.item(0), QRect(54, 54, 20, 20)), QColor(30, 90, 200)));
    EXPECT_TRUE(near(averageColor(strip.item(1), QRect(40, 10, 48, 30)), QColor(200, 30, 30)));
    EXPECT_TRUE(near(averageColor(strip.item(1), QRect(40, 90, 48, 30)), Qt::white));
    EXPECT_FALSE(thumbnailOf(strip.view->itemAtIndex(2)).isNull());
    // The long name is cut within its own 128 points: the space between items stays empty.
    const QRect last = strip.view->itemFrame(3);
    EXPECT_TRUE(isTransparent(picture.copy(last.x() - 10, 148, 10, 20)));
    EXPECT_TRUE(isTransparent(picture.copy(last.right() + 1, 148, 10, 20)));
    EXPECT_EQ(strip.view->itemAtIndex(3)->view()->filename(),
              QStringLiteral("a very long file name that cannot possibly fit under its "
                             "thumbnail.jpg"));
    EXPECT_EQ(strip.view->itemAtIndex(4)->view()->filename(), QStringLiteral("holiday.png"));
    EXPECT_TRUE(near(averageColor(strip.item(4), QRect(54, 54, 20, 20)), QColor(220, 200, 20)));

    strip.controller.setContent(std::make_shared<List>());
    EXPECT_EQ(strip.view->count(), 0);
    EXPECT_TRUE(isTransparent(render(*strip.view)));
}

TEST(ExtensionAttachmentCollectionView, ClicksAndArrowsSelectOneItemAndChangeNothingVisible) {
    Strip strip;
    strip.controller.addObjects({strip.image, strip.pdf, strip.unknown});
    const QImage before = render(*strip.view);

    QTest::mouseClick(strip.view, Qt::LeftButton, {}, strip.view->itemFrame(1).center());
    EXPECT_EQ(strip.controller.selectionIndex(), 1);
    EXPECT_TRUE(strip.view->itemAtIndex(1)->view()->isSelected());
    QTest::mouseClick(strip.view, Qt::LeftButton, {}, strip.view->itemFrame(0).center());
    EXPECT_EQ(strip.controller.selectionIndex(), 0);
    EXPECT_FALSE(strip.view->itemAtIndex(1)->isSelected());
    EXPECT_TRUE(strip.view->itemAtIndex(0)->view()->isSelected());
    EXPECT_EQ(render(*strip.view), before);

    for (int i = 0; i < 3; ++i)
        QTest::keyClick(strip.view, Qt::Key_Right);
    EXPECT_EQ(strip.controller.selectionIndex(), 2);
    // A click beside the items clears the selection.
    QTest::mouseClick(strip.view, Qt::LeftButton, {}, QPoint(133, 60));
    EXPECT_EQ(strip.controller.selectionIndex(), -1);
    EXPECT_FALSE(strip.view->itemAtIndex(2)->isSelected());
}

TEST(ExtensionAttachmentCollectionView, ThumbnailsArriveLaterWithoutHoldingUpTheStrip) {
    Strip strip(false);
    QSignalSpy idle(strip.view->thumbnailLoader(), &ThumbnailLoader::idle);
    strip.controller.addObjects({strip.image, strip.pdf, strip.unknown});
    // The names are there at once; the pictures come from the pool.
    EXPECT_EQ(strip.view->itemAtIndex(1)->view()->filename(), QStringLiteral("invoice.pdf"));
    ASSERT_TRUE(idle.wait(20000));
    for (int i = 0; i < 3; ++i) {
        const QString path = strip.view->itemAtIndex(i)->view()->path();
        EXPECT_EQ(thumbnailOf(strip.view->itemAtIndex(i)),
                  imageWithPreviewOfFileAtPath(path, QSizeF(128, 128), false))
            << path.toStdString();
    }
}

} // namespace
