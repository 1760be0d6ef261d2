// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "message/ExtensionMessage.h"

#include <QList>
#include <QString>
#include <QWidget>

#include <memory>

class QLabel;
class QToolButton;

namespace velmora {

class ExtensionAddress;

// The composer's row of Cc and Bcc recipients that a share brought (a mailto: link's cc and
// bcc), each shown by its address with a button that removes it, and under them a notice line
// (for instance the attachments a request asked for and did not get). The composer hides it
// while it is empty, so that a share without these keeps its usual column. Every recipient that
// will be sent to is on show here, never clipped: the row wraps and grows.
class ExtensionCopyRecipientsView : public QWidget {
    Q_OBJECT
public:
    enum class Field { Cc, Bcc };

    explicit ExtensionCopyRecipientsView(QWidget* parent = nullptr);

    void addRecipient(Field field, const std::shared_ptr<ExtensionAddress>& address);
    // Removes the recipient at index of field, as its remove button does.
    void removeRecipient(Field field, qsizetype index);
    AddressList recipients(Field field) const;

    void setNotice(const QString& text);
    QString notice() const;

    // Nothing to show: no recipients and no notice.
    bool isEmpty() const;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

Q_SIGNALS:
    // The recipients or the notice changed, and with them the row's height.
    void changed();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // One recipient, or a field's heading when remove is null: laid out together, never split.
    struct Piece {
        QLabel* label = nullptr;
        QToolButton* remove = nullptr;
    };
    void rebuild();
    // Places the pieces in lines across width and returns the height they take.
    int flow(int width, bool place) const;
    AddressList& list(Field field) { return field == Field::Cc ? m_cc : m_bcc; }

    AddressList m_cc;
    AddressList m_bcc;
    QList<Piece> m_pieces;
    QLabel* m_notice = nullptr;
};

} // namespace velmora
