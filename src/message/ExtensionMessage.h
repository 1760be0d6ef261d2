// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "directory/ExtensionAddress.h"
#include "platform/AtomicProperty.h"
#include "request/UrlText.h"

#include <QDateTime>
#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>

#include <memory>
#include <mutex>

namespace velmora {

// A message's recipients of one kind, in order; the list object is shared by whoever fills it.
using AddressList = QList<std::shared_ptr<ExtensionAddress>>;
// A message's attachments in the order they were added: each a path (QString) or a file URL
// (QUrl); other values are carried but skipped where a path is needed.
using AttachmentList = QVariantList;

// One mail message: what the composer sends, what the share intake fills, and what a message
// dictionary of the main application describes. Held by std::shared_ptr, as records have
// identity; each field is read and written atomically.
class ExtensionMessage {
public:
    // The plain record: every field null, the bodies and lists included.
    ExtensionMessage() = default;
    ExtensionMessage(const ExtensionMessage&) = delete;
    ExtensionMessage& operator=(const ExtensionMessage&) = delete;

    // The share flow's empty message: bodies "" and four distinct empty lists; the rest null.
    static std::shared_ptr<ExtensionMessage> init();
    // Reads a message dictionary ("subject", "messageId", "from", "account", "folder",
    // "folderStid", "isUnread", "date", "avatar"); a malformed one is logged and the fields
    // read before the fault are kept.
    static std::shared_ptr<ExtensionMessage> initWithDictonary(const QVariant& d);
    // Reads a command URL back (see docs/command-url.md): recipients only as the texts
    // toString/ccString/bccString, attachments as paths in the query's key order, and the
    // command ignored. Never fails.
    static std::shared_ptr<ExtensionMessage> ExtensionMessageWithUrl(const UrlText& url);
    static std::shared_ptr<ExtensionMessage> ExtensionMessageWithUrl(const QUrl& url);

    QString subject() const { return m_subject.get(); }
    void setSubject(QString v) { m_subject.set(std::move(v)); }
    QString account() const { return m_account.get(); }
    void setAccount(QString v) { m_account.set(std::move(v)); }
    QString from() const { return m_from.get(); }
    void setFrom(QString v) { m_from.set(std::move(v)); }
    QString messageId() const { return m_messageId.get(); }
    void setMessageId(QString v) { m_messageId.set(std::move(v)); }
    QString folderPath() const { return m_folderPath.get(); }
    void setFolderPath(QString v) { m_folderPath.set(std::move(v)); }
    QString dateString() const { return m_dateString.get(); }
    void setDateString(QString v) { m_dateString.set(std::move(v)); }
    QString plainBody() const { return m_plainBody.get(); }
    void setPlainBody(QString v) { m_plainBody.set(std::move(v)); }
    QString htmlBody() const { return m_htmlBody.get(); }
    void setHtmlBody(QString v) { m_htmlBody.set(std::move(v)); }
    // An instant; null when unset.
    QDateTime date() const { return m_date.get(); }
    void setDate(QDateTime v) { m_date.set(std::move(v)); }
    // The sender's avatar; null when there is none or its bytes are no image.
    QImage image() const { return m_image.get(); }
    void setImage(QImage v) { m_image.set(std::move(v)); }
    // 0 or 1 as a number, stored as the dictionary gave it.
    QVariant unread() const { return m_unread.get(); }
    void setUnread(QVariant v) { m_unread.set(std::move(v)); }
    QVariant folderStandardId() const { return m_folderStandardId.get(); }
    void setFolderStandardId(QVariant v) { m_folderStandardId.set(std::move(v)); }
    std::shared_ptr<AddressList> to() const { return m_to.get(); }
    void setTo(std::shared_ptr<AddressList> v) { m_to.set(std::move(v)); }
    std::shared_ptr<AddressList> cc() const { return m_cc.get(); }
    void setCc(std::shared_ptr<AddressList> v) { m_cc.set(std::move(v)); }
    std::shared_ptr<AddressList> bcc() const { return m_bcc.get(); }
    void setBcc(std::shared_ptr<AddressList> v) { m_bcc.set(std::move(v)); }
    // The recipients as one text each, as a command URL carries them ("a@x;b@y;").
    QString toString() const { return m_toString.get(); }
    void setToString(QString v) { m_toString.set(std::move(v)); }
    QString ccString() const { return m_ccString.get(); }
    void setCcString(QString v) { m_ccString.set(std::move(v)); }
    QString bccString() const { return m_bccString.get(); }
    void setBccString(QString v) { m_bccString.set(std::move(v)); }
    // The list object itself: change its contents only inside withLock.
    std::shared_ptr<AttachmentList> attachments() const { return m_attachments.get(); }
    void setAttachments(std::shared_ptr<AttachmentList> v) { m_attachments.set(std::move(v)); }

    // Runs f under the record's own lock. Every change to the contents of attachments() goes
    // through it, as the share intake adds files from several threads; the lock is recursive,
    // so f may call appendAttachment.
    template <typename F> decltype(auto) withLock(F&& f) const {
        const std::lock_guard lock(m_lock);
        return std::forward<F>(f)();
    }
    // Appends one path or file URL under the record's lock; nothing when there is no list.
    void appendAttachment(const QVariant& item);

    // True for this very record, or for a record of the same message (isEqualToModel); false
    // for null.
    bool isEqual(const ExtensionMessage* other) const;
    bool isEqual(const std::shared_ptr<const ExtensionMessage>& other) const {
        return isEqual(other.get());
    }
    // The same message: equal messageId and equal account, nothing else. A null messageId or
    // account matches no other record.
    bool isEqualToModel(const ExtensionMessage& other) const;
    // "ExtensionMessage <subject>", "(null)" for a null subject.
    QString description() const;

    // The command URL that hands this message to the main application: "velmora://" + command
    // + "?" + the query of its non-empty fields. Null when that text is not a valid URL (a
    // command holding a space); otherwise it holds the text exactly as built.
    UrlText queryUrl(const QString& command) const;

    // The body as HTML: htmlBody with the attachments as images appended (and stored back), or
    // else plainBody with line breaks as "<br>" and links as anchors (stored back too).
    QString renderHtml();
    // The links of text in order, each as a normalised absolute URL (duplicates kept).
    QStringList searchUrlsDetector(const QString& text) const;

private:
    AtomicProperty<QString> m_subject;
    AtomicProperty<QString> m_account;
    AtomicProperty<QString> m_from;
    AtomicProperty<QString> m_messageId;
    AtomicProperty<QString> m_folderPath;
    AtomicProperty<QString> m_dateString;
    AtomicProperty<QString> m_plainBody;
    AtomicProperty<QString> m_htmlBody;
    AtomicProperty<QDateTime> m_date;
    AtomicProperty<QImage> m_image;
    AtomicProperty<QVariant> m_unread;
    AtomicProperty<QVariant> m_folderStandardId;
    AtomicProperty<std::shared_ptr<AddressList>> m_to;
    AtomicProperty<std::shared_ptr<AddressList>> m_cc;
    AtomicProperty<std::shared_ptr<AddressList>> m_bcc;
    AtomicProperty<QString> m_toString;
    AtomicProperty<QString> m_ccString;
    AtomicProperty<QString> m_bccString;
    AtomicProperty<std::shared_ptr<AttachmentList>> m_attachments;

    mutable std::recursive_mutex m_lock;
};

} // namespace velmora
