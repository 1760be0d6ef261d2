// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Writes the files the start-up benchmark shares: a 4000 x 3000 photograph-sized JPEG and a
// 20-page PDF, drawn with Qt, into the folder given.
#include <QColor>
#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QRandomGenerator>

#include <cstdio>

namespace {

// Gradients and many small shapes, so that the JPEG is as large and as slow to decode as a
// photograph of that size rather than a flat picture.
bool writeJpeg(const QString& path) {
    QImage image(4000, 3000, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 4000, 3000);
    sky.setColorAt(0, QColor(30, 80, 160));
    sky.setColorAt(1, QColor(240, 200, 120));
    painter.fillRect(image.rect(), sky);
    QRandomGenerator random(15);
    for (int i = 0; i < 20000; ++i) {
        const QColor colour(random.bounded(256), random.bounded(256), random.bounded(256), 140);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(random.bounded(4000), random.bounded(3000), 4 + random.bounded(60),
                            4 + random.bounded(60));
    }
    painter.end();
    return image.save(path, "JPEG", 90);
}

bool writePdf(const QString& path) {
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setResolution(150);
    QPainter painter(&writer);
    if (!painter.isActive())
        return false;
    QFont font = painter.font();
    font.setPointSize(11);
    painter.setFont(font);
    const QString line = QStringLiteral(
        "The Analytical Engine weaves algebraical patterns just as the Jacquard loom weaves "
        "flowers and leaves.");
    for (int page = 1; page <= 20; ++page) {
        if (page > 1)
            writer.newPage();
        painter.drawText(QRect(100, 80, 1000, 60), Qt::AlignLeft,
                         QStringLiteral("Report, page %1 of 20").arg(page));
        for (int row = 0; row < 50; ++row)
            painter.drawText(QRect(100, 180 + row * 30, 1000, 30), Qt::AlignLeft, line);
        painter.fillRect(QRect(100, 1700 - page * 20, 200 + page * 30, 20), QColor(90, 120, 200));
    }
    return painter.end();
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: startup_share_files FOLDER\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!QDir().mkpath(folder.path()) || !writeJpeg(folder.filePath(QStringLiteral("photo.jpg"))) ||
        !writePdf(folder.filePath(QStringLiteral("report.pdf")))) {
        std::fprintf(stderr, "startup_share_files: cannot write into %s\n", argv[1]);
        return 1;
    }
    return 0;
}
