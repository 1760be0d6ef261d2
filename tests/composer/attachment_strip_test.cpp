// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "AttachmentFiles.h"
#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentCollectionViewItem.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionAttachmentView.h"
#include "composer/FilePreview.h"
#include "composer/ThumbnailLoader.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include <atomic>
#include <mutex>
#include <thread>

using namespace velmora;
using namespace velmora::test;

namespace {

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
