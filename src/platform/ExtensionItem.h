// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ItemProvider.h"
#include "platform/RichText.h"

#include <QList>

#include <memory>
#include <optional>

namespace velmora {

// One item of a share request: optional text and title, and the providers of its attachments.
// Built before the request starts; read-only afterwards, so any thread may read it.
class ExtensionItem {
public:
    using Attachments = QList<std::shared_ptr<ItemProvider>>;

    const std::optional<RichText>& attributedContentText() const { return m_contentText; }
    void setAttributedContentText(std::optional<RichText> text) { m_contentText = std::move(text); }
    const std::optional<RichText>& attributedTitle() const { return m_title; }
    void setAttributedTitle(std::optional<RichText> title) { m_title = std::move(title); }
    // The providers, in the order in which they were shared.
    const Attachments& attachments() const { return m_attachments; }
    void setAttachments(Attachments attachments) { m_attachments = std::move(attachments); }

private:
    std::optional<RichText> m_contentText;
    std::optional<RichText> m_title;
    Attachments m_attachments;
};

} // namespace velmora
