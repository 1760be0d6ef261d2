// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AtomicProperty.h"

#include <QPointer>
#include <QWidget>

class QLabel;

namespace velmora {

class ThumbnailLoader;

// One attachment of the strip: its thumbnail above, its file name centred below.
class ExtensionAttachmentView : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 128;
    static constexpr int kHeight = 168;
    static constexpr int kThumbnailSide = 128;
    static constexpr int kNameHeight = 20; // at the bottom, 20 points below the thumbnail
    static constexpr int kNameFontPixels = 13;

    explicit ExtensionAttachmentView(const QRect& frame, QWidget* parent = nullptr);

    // The thumbnail's image view, along the top edge.
    QLabel* imv() const { return m_imv; }

    // Shows the file at path: its name now, its thumbnail when made (through the loader when
    // one is set, at once otherwise). A null path changes nothing. Where no thumbnail can be
    // had the image view keeps what it showed.
    void prepareAttach(const QString& path);
    // Makes thumbnails off the user-interface thread; none: prepareAttach makes them itself.
    void setThumbnailLoader(ThumbnailLoader* loader);

    // Kept, not shown: a selected attachment looks like any other.
    void setSelected(bool selected) { m_selectedx = selected; }
    bool isSelected() const { return m_selectedx; }

    QString path() const { return m_path.get(); }
    void setPath(QString path) { m_path.set(std::move(path)); }
    QString filename() const { return m_filename.get(); }
    void setFilename(QString filename) { m_filename.set(std::move(filename)); }

    // Draws a file name as the view does: centred in rect, cut with an ellipsis when too long.
    static void drawName(QPainter& painter, const QRect& rect, const QString& filename,
                         const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showThumbnail(const QImage& image);

    QLabel* m_imv;
    bool m_selectedx = false;
    AtomicProperty<QString> m_path;
    AtomicProperty<QString> m_filename;
    QPointer<ThumbnailLoader> m_loader;
    quint64 m_request = 0; // the loader's request for the current path; 0: none
};

} // namespace velmora
