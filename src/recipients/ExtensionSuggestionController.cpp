// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/ExtensionSuggestionController.h"

#include "recipients/ExtensionSuggestionTableView.h"
#include "recipients/ExtensionTokenField.h"
#include "recipients/SuggestionListModel.h"
#include "recipients/TableViewZemlo.h"
#include "views/FlippedView.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QVBoxLayout>

namespace velmora {

ExtensionSuggestionController::ExtensionSuggestionController(const QRect& frame, QObject* parent)
    : ViewController(parent)
    , m_frame(frame)
    , m_model(new SuggestionListModel(this)) {}

ExtensionSuggestionController::~ExtensionSuggestionController() {
    cancelSuggestions();
    releaseView();
}

ExtensionSuggestionTableView* ExtensionSuggestionController::table() const {
    return m_table;
}

ExtensionTokenField* ExtensionSuggestionController::tokenField() const {
    return m_tokenField;
}

void ExtensionSuggestionController::loadView() {
    m_data = {};
    m_book = ContactBook::load();

    auto* root = new FlippedView(m_frame);
    setView(root);
    // The style's pop-up frame over the list's edges sets it apart from whatever lies beneath (a
    // thumbnail, the body's text). It is drawn over the list's outermost pixels, so the list keeps
    // its whole height for rows. No blurred shadow: a graphics effect renders the list into an
    // image and blurs it on every paint, work Qt spreads over its own thread pool.
    // The list fills the panel and follows its size.
    auto* layout = new QVBoxLayout(root);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* table = new ExtensionSuggestionTableView(QRect(QPoint(0, 0), m_frame.size()), root);
    layout->addWidget(table);
    AssignTable(table);
    auto* frame = new FlippedView(
        QRect(QPoint(0, 0), m_frame.size()),
        [](FlippedView* view, const QRect&) {
            QPainter painter(view);
            QStyleOptionFrame option;
            option.initFrom(view);
            option.lineWidth = view->style()->pixelMetric(QStyle::PM_MenuPanelWidth, &option, view);
            view->style()->drawPrimitive(QStyle::PE_FrameMenu, &option, &painter, view);
        },
        root);
    frame->setAttribute(Qt::WA_TransparentForMouseEvents);
    frame->raise();
    root->hide();
}

const SuggestionMatcher& ExtensionSuggestionController::matcher() const {
    // Before the view is built there are no contacts, as in a book that is empty.
    static const SuggestionMatcher none;
    return m_book ? m_book->matcher() : none;
}

bool ExtensionSuggestionController::contactsReady() const {
    return m_book && m_book->isReady();
}

void ExtensionSuggestionController::suggestForTextField(ExtensionTokenField* field,
                                                        const QString& text) {
    if (!m_book || m_book->isReady()) {
        showForTextField(field, objectsForString(text));
        return;
    }
    const bool asked = !m_waitingField.isNull();
    m_waitingField = field;
    if (asked)
        return;
    m_book->whenReady(this, [this] {
        if (const QPointer<ExtensionTokenField> waiting = std::exchange(m_waitingField, nullptr))
            waiting->askForCompletions();
    });
}

void ExtensionSuggestionController::AssignTable(ExtensionSuggestionTableView* table) {
    m_data = {};
    m_model->setRows(m_data);
    m_table = table;
    table->setModel(m_model);
    table->setSuggestioncontroller(this);
}

void ExtensionSuggestionController::showForTextField(ExtensionTokenField* field,
                                                     const Suggestions& arr) {
    m_tokenField = field;
    if (m_visible) {
        populateSuggestion(arr);
        return;
    }
    m_visible = true;
    if (field)
        field->setSuggestioncontroller(this);
    FlippedView* root = view();
    if (field) {
        // In the coordinates of the view that holds both the field and the list.
        const QWidget* holder = root->parentWidget();
        const QPoint origin =
            holder ? holder->mapFromGlobal(field->mapToGlobal(QPoint(0, 0))) : field->pos();
        root->setGeometry(origin.x(), origin.y() + field->height() + kGap, field->width(), kHeight);
    }
    root->raise();
    populateSuggestion(arr);
    root->show();
}

void ExtensionSuggestionController::populateSuggestion(const Suggestions& arr) {
    m_data = arr;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_data.isEmpty())
                cancelSuggestions();
            reloadTable();
        },
        Qt::QueuedConnection);
}

void ExtensionSuggestionController::reloadTable() {
    m_model->setRows(m_data);
    // The list keeps one row selected once it has rows: a fresh list starts at its first.
    if (m_table && !m_data.isEmpty())
        TableViewZemlo::SelectRow(m_table, 0, true, false);
}

void ExtensionSuggestionController::cancelSuggestions() {
    if (FlippedView* root = loadedView())
        root->hide();
    m_visible = false;
}

void ExtensionSuggestionController::selectNext() {
    if (m_table)
        TableViewZemlo::SelectNext(m_table);
}

void ExtensionSuggestionController::selectPrev() {
    if (m_table)
        TableViewZemlo::SelectPrev(m_table);
}

std::optional<Recipient> ExtensionSuggestionController::objectForSelectedRow() const {
    return m_table ? objectForRow(TableViewZemlo::maxSelectedRow(m_table)) : std::nullopt;
}

std::optional<Recipient> ExtensionSuggestionController::objectForRow(qsizetype row) const {
    if (row < 0 || row >= m_data.size())
        return std::nullopt;
    return m_data.at(row);
}

void ExtensionSuggestionController::insertObjectFoRow(qsizetype row) {
    const auto object = objectForRow(row);
    if (object && m_tokenField)
        m_tokenField->addObject(object, m_tokenField->fieldEditor());
}

} // namespace velmora
