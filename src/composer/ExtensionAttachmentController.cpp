// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ExtensionAttachmentController.h"

#include <QUrl>

namespace velmora {

ExtensionAttachmentController::ExtensionAttachmentController(QObject* parent)
    : QAbstractListModel(parent)
    , m_content(std::make_shared<AttachmentList>())
    , m_selection(new QItemSelectionModel(this, this)) {}

void ExtensionAttachmentController::setContent(std::shared_ptr<AttachmentList> list,
                                               ListAccess access) {
    m_content = list ? std::move(list) : std::make_shared<AttachmentList>();
    m_access = std::move(access);
    beginResetModel();
    m_arranged = readContent();
    endResetModel();
}

void ExtensionAttachmentController::withContent(
    const std::function<void(AttachmentList&)>& body) const {
    if (m_access)
        m_access(body);
    else
        body(*m_content);
}

QVariantList ExtensionAttachmentController::readContent() const {
    QVariantList copy;
    withContent([&copy](AttachmentList& list) { copy = unsharedCopy(list); });
    return copy;
}

void ExtensionAttachmentController::rearrangeObjects() {
    const QVariantList now = readContent();
    const qsizetype before = m_arranged.size();
    const bool appended =
        now.size() >= before && std::equal(m_arranged.cbegin(), m_arranged.cend(), now.cbegin());
    if (!appended) {
        beginResetModel();
        m_arranged = now;
        endResetModel();
        return;
    }
    if (now.size() == before)
        return;
    beginInsertRows({}, int(before), int(now.size() - 1));
    m_arranged = now;
    endInsertRows();
}

void ExtensionAttachmentController::addObjects(const QVariantList& objects) {
    if (objects.isEmpty())
        return;
    withContent([&objects](AttachmentList& list) { list.append(objects); });
    rearrangeObjects();
}

int ExtensionAttachmentController::selectionIndex() const {
    const QModelIndexList rows = m_selection->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void ExtensionAttachmentController::setSelectionIndex(int row) {
    if (row == selectionIndex())
        return;
    if (row < 0 || row >= rowCount()) {
        m_selection->clear();
        return;
    }
    m_selection->setCurrentIndex(index(row),
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

QString ExtensionAttachmentController::pathOfAttachment(const QVariant& attachment) {
    if (attachment.typeId() == QMetaType::QString)
        return attachment.toString();
    if (attachment.typeId() == QMetaType::QUrl) {
        const QUrl url = attachment.toUrl();
        return url.isLocalFile() ? url.toLocalFile() : QString();
    }
    return {};
}

QVariantList ExtensionAttachmentController::unsharedCopy(const QVariantList& list) {
    return QVariantList(list.cbegin(), list.cend());
}

QString ExtensionAttachmentController::lastPathComponent(const QString& path) {
    QStringView trimmed(path);
    while (trimmed.size() > 1 && trimmed.endsWith(QLatin1Char('/')))
        trimmed.chop(1);
    const qsizetype slash = trimmed.lastIndexOf(QLatin1Char('/'));
    if (slash < 0 || trimmed.size() == 1)
        return trimmed.toString();
    return trimmed.mid(slash + 1).toString();
}

int ExtensionAttachmentController::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_arranged.size());
}

QVariant ExtensionAttachmentController::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const QVariant& attachment = m_arranged.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return lastPathComponent(pathOfAttachment(attachment));
    case AttachmentRole:
        return attachment;
    case PathRole:
        return pathOfAttachment(attachment);
    default:
        return {};
    }
}

QHash<int, QByteArray> ExtensionAttachmentController::roleNames() const {
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(AttachmentRole, "attachment");
    names.insert(PathRole, "path");
    return names;
}

} // namespace velmora
