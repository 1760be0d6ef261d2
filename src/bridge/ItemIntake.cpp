// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/ExtensionUtilities.h"
#include "message/ExtensionMessage.h"
#include "platform/DispatchQueue.h"
#include "platform/ExtensionContext.h"
#include "platform/Log.h"
#include "platform/PngConversion.h"

#include <QUrl>

#include <atomic>
#include <thread>

namespace velmora {

namespace {

// The wait between two looks at the providers: 0.1 s as a single-precision value, widened
// (0.10000000149011612 s).
constexpr double kPollSeconds = static_cast<double>(0.1f);
// Extra looks after the first: at most 101 waits in all, about 10.1 s.
constexpr int kWaitBudget = 100;

// Providers counted minus providers that have answered; shared by the worker and the callbacks.
using PendingCount = std::shared_ptr<std::atomic<qint64>>;
using Status = std::shared_ptr<StagingStatus>;

// What an item that fails before it has a name of its own is called.
const QString kUnnamedItem = QStringLiteral("a shared item");

// Reports the staging of one provider's answer to the share's status.
ExtensionUtilities::StagingObserver observerFor(const Status& status, quint64 id,
                                                const QString& name) {
    return {
        [status, id, name](qsizetype, qint64 done, qint64 total) {
            status->progress(id, name, done, total);
        },
        [status](const QString& what, const QString& reason) { status->leaveOut(what, reason); }};
}

void appendToBody(ExtensionMessage& message, const QString& html) {
    QString body = message.htmlBody();
    if (body.isNull())
        body = QStringLiteral("");
    message.setHtmlBody(body + html);
}

void appendAttachments(ExtensionMessage& message, const QStringList& paths) {
    message.withLock([&] {
        for (const QString& path : paths)
            message.appendAttachment(path);
    });
}

// A URL provider's answer: a file is staged, a web link becomes an anchor and its item's title
// the subject.
void takeLink(const QString& service, ExtensionMessage& message,
              const std::optional<RichText>& title, const QVariant& answer,
              const std::optional<Error>& error, const Status& status, quint64 id) {
    if (error) {
        Log::error(u"[%@] GetItemForExtension kUTTypeURL %@", error->text());
        status->leaveOut(kUnnamedItem, error->text());
        return;
    }
    if (answer.typeId() != QMetaType::QUrl) {
        const QString problem =
            QStringLiteral("not a URL: ") + QString::fromLatin1(answer.typeName());
        Log::error(u"[%@] GetItemForExtension kUTTypeURL %@", problem);
        status->leaveOut(kUnnamedItem, problem);
        return;
    }
    const QUrl url = answer.toUrl();
    if (url.isLocalFile()) {
        const QString path = url.toLocalFile();
        // Named at once: it may wait behind another copy before its own begins.
        status->progress(id, path, 0, -1);
        appendAttachments(message, ExtensionUtilities::ShareFiles(service, {path},
                                                                  observerFor(status, id, path)));
        return;
    }
    const QString address = url.toString(QUrl::FullyEncoded);
    message.withLock([&] {
        message.setSubject(title ? title->string() : QString());
        appendToBody(message, QStringLiteral("<a href=\"%1\">%1</a>").arg(address));
    });
}

// An image provider's answer: written as PNG into the staging folder.
void takeImage(const QString& service, ExtensionMessage& message, const QVariant& answer,
               const std::optional<Error>& error, const Status& status, quint64 id) {
    const QString name = QStringLiteral("image.png");
    if (error) {
        Log::error(u"[%@] GetItemForExtension kUTTypeImage %@", error->text());
        status->leaveOut(name, error->text());
        return;
    }
    const PngConversion::Result png = PngConversion::fromItem(answer);
    if (const Error* failure = std::get_if<Error>(&png)) {
        Log::error(u"[%@] GetItemForExtension kUTTypeImage %@", failure->text());
        status->leaveOut(name, failure->text());
        return;
    }
    appendAttachments(message, ExtensionUtilities::ShareDatas(service, {std::get<QByteArray>(png)},
                                                              observerFor(status, id, name)));
}

// The queue of the intake's wait (made at the priority of its first use). The wait holds its thread
// for up to 10 s while the providers answer on the global queues, so it never takes one of theirs,
// however many answers are due.
DispatchQueue& intakeWaitQueue(DispatchQueue::Priority priority) {
    // The global queues are made first so that they end after this one: at exit its wait may
    // still be handing work to them.
    [[maybe_unused]] static const bool globalsFirst =
        (DispatchQueue::global(DispatchQueue::Priority::Default),
         DispatchQueue::global(DispatchQueue::Priority::Background), true);
    static DispatchQueue queue(priority);
    return queue;
}

// Each provider asked is pending in the status from the request until its answer has been
// staged (or left out), so that items that land after the delivery are still known.
void requestAttachments(const QString& service, const std::shared_ptr<ExtensionMessage>& message,
                        const ExtensionItem& item, const PendingCount& pending,
                        const Status& status) {
    for (const auto& provider : item.attachments()) {
        if (provider->hasItemConformingToTypeIdentifier(kUTTypeURL)) {
            // The callback keeps the title, not the item: the items stay with their request.
            provider->loadItemForTypeIdentifier(
                kUTTypeURL, {},
                [service, message, title = item.attributedTitle(), pending, status,
                 id = status->begin()](const QVariant& answer, const std::optional<Error>& error) {
                    takeLink(service, *message, title, answer, error, status, id);
                    pending->fetch_sub(1, std::memory_order_acq_rel);
                    status->finish(id);
                });
        } else if (provider->hasItemConformingToTypeIdentifier(kUTTypeImage)) {
            provider->loadItemForTypeIdentifier(
                kUTTypeImage, {},
                [service, message, pending, status,
                 id = status->begin()](const QVariant& answer, const std::optional<Error>& error) {
                    takeImage(service, *message, answer, error, status, id);
                    pending->fetch_sub(1, std::memory_order_acq_rel);
                    status->finish(id);
                });
        }
        // A provider of neither kind keeps its unit in the count: the wait runs to its limit.
    }
}

} // namespace

void ExtensionUtilities::GetItemForExtension(const std::shared_ptr<ExtensionContext>& context,
                                             const QString& service, MessageCompletion completion,
                                             Sleep sleep) {
    if (!sleep)
        sleep = [](std::chrono::duration<double> interval) {
            std::this_thread::sleep_for(interval);
        };
    // Before the worker starts, so that a Send pressed at once already waits for the message.
    if (context)
        context->stagingStatus()->expectDelivery();
    intakeWaitQueue(DispatchQueue::Priority::Background)
        .async([context = context, service, completion = std::move(completion),
                sleep = std::move(sleep)]() mutable {
            // A missing context is a share of nothing.
            ExtensionContext::Items items =
                context ? context->inputItems() : ExtensionContext::Items();
            qint64 announced = 0;
            for (const auto& item : items)
                announced += item->attachments().size();
            const auto pending = std::make_shared<std::atomic<qint64>>(announced);
            const std::shared_ptr<ExtensionMessage> message = ExtensionMessage::init();
            // A share of nothing has a status of its own, which nobody reads.
            const Status status =
                context ? context->stagingStatus() : std::make_shared<StagingStatus>();

            for (const auto& item : items) {
                const auto& text = item->attributedContentText();
                if (text && text->length() > 0) {
                    // Callbacks of earlier items may be changing the body already.
                    message->withLock(
                        [&] { appendToBody(*message, text->toHtml() + QStringLiteral("<br/>")); });
                }
                requestAttachments(service, message, *item, pending, status);
            }
            // The request's items are released where their owner releases them, not here.
            items.clear();
            context.reset();

            int budget = kWaitBudget;
            while (true) {
                sleep(std::chrono::duration<double>(kPollSeconds));
                if (pending->load(std::memory_order_acquire) == 0 || budget == 0)
                    break;
                --budget;
            }
            if (completion)
                completion(message, std::nullopt);
        });
}

} // namespace velmora
