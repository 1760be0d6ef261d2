// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractListModel>
#include <QItemSelectionModel>

#include <functional>
#include <memory>

namespace velmora {

// Holds the attachment list the strip shows, in order, and its single selection.
class ExtensionAttachmentController : public QAbstractListModel {
    Q_OBJECT
public:
    // Elements: file paths (QString) or file URLs (QUrl).
    using AttachmentList = QVariantList;
    // Runs body with the list while holding the lock its owner changes it under.
    using ListAccess = std::function<void(const std::function<void(AttachmentList&)>& body)>;

    enum Role {
        AttachmentRole = Qt::UserRole + 1, // the element as it is in the list
        PathRole,                          // its file path; empty for an element that has none
    };

    explicit ExtensionAttachmentController(QObject* parent = nullptr);

    // Shows list itself, not a copy: a list another object owns and changes (under the lock
    // access takes; without access the list is read and changed directly, so it must then
    // change on this thread only). Tell the controller with rearrangeObjects() when it did.
    void setContent(std::shared_ptr<AttachmentList> list, ListAccess access = {});
    std::shared_ptr<AttachmentList> content() const { return m_content; }
    // Reads the content list again. Attachments appended since become new rows and the rows
    // before them stay as they are; any other change starts the rows afresh.
    void rearrangeObjects();
    // Appends to the content list and shows the new attachments.
    void addObjects(const QVariantList& objects);
    // The attachments as shown.
    const QVariantList& arrangedObjects() const { return m_arranged; }

    QItemSelectionModel* selectionModel() const { return m_selection; }
    // The selected row, -1 when none.
    int selectionIndex() const;
    // Selects row alone; -1 or a row out of range clears the selection.
    void setSelectionIndex(int row);

    // An element's file path: a string as it is, a local file URL's path; empty otherwise.
    static QString pathOfAttachment(const QVariant& attachment);
    // The last component of a path ("b" for "/a/b" and "/a/b/").
    static QString lastPathComponent(const QString& path);
    // A copy of list in an array of its own. Take it under the lock of a list that another
    // thread changes: a plain copy would share that list's array, and the other thread, once it
    // finds itself the array's only user again, grows the array in place, ordered by nothing
    // but the relaxed count Qt's containers check, while this thread may still be reading it.
    static QVariantList unsharedCopy(const QVariantList& list);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    void withContent(const std::function<void(AttachmentList&)>& body) const;
    QVariantList readContent() const;

    std::shared_ptr<AttachmentList> m_content;
    ListAccess m_access;
    QVariantList m_arranged; // this thread's copy, what the rows show
    QItemSelectionModel* m_selection;
};

} // namespace velmora
