// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "RecipientsHost.h"

#include "recipients/ExtensionSuggestionTableView.h"

namespace velmora::test {

RecipientsHost::RecipientsHost() {
    resize(600, 400);
    field = new ExtensionTokenField(this);
    field->setGeometry(20, 40, 560, 26);
    field->setPlaceholderString(QStringLiteral("To:"));
    subject = new QLineEdit(this);
    subject->setGeometry(20, 80, 560, 26);
    setTabOrder(field, subject);
    controller = new ExtensionSuggestionController(QRect(0, 0, 600, 400), this);
    controller->view()->setParent(this);
    field->setSuggestioncontroller(controller);
}

bool RecipientsHost::waitForRows(int rows) {
    return QTest::qWaitFor([&] { return rowCount() == rows; }, 5000);
}

QStringList RecipientsHost::rowTexts() const {
    QStringList out;
    const QAbstractItemModel* model = controller->table()->model();
    for (int row = 0; row < model->rowCount(); ++row)
        out.append(model->index(row, 0).data().toString());
    return out;
}

QStringList RecipientsHost::tokens() const {
    QStringList out;
    for (const Token& t : field->objectValue())
        out.append(isCommitted(t) ? u'[' + displayString(t) + u']' : textOf(t));
    return out;
}

void RecipientsTest::SetUp() {
    writeContacts();
    if (!IsSkipped())
        showHost();
}

void RecipientsTest::writeContacts() {
    QByteArray json = R"([
        {"mail": "ann.smith@x.test", "firstName": "Ann", "lastName": "Smith", "rank": 3},
        {"mail": "annie@y.test", "firstName": "Annie", "lastName": "Hall", "rank": 9},
        {"mail": "hannah@w.test", "rank": 1},
        {"mail": "known@x.test", "firstName": "Known", "lastName": "Person"})";
    for (int i = 0; i < 30; ++i)
        json += QStringLiteral(R"(, {"mail": "bulk%1@list.test", "firstName": "Bulk"})")
                    .arg(i, 2, 10, QLatin1Char('0'))
                    .toUtf8();
    json += "]";
    if (!writePlist(container.dataFolder() + QStringLiteral("/Contacts/Addresses.plist"), json,
                    false))
        GTEST_SKIP() << "python3 is needed to write property lists";
}

void RecipientsTest::showHost() {
    host = std::make_unique<RecipientsHost>();
    host->show();
    host->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(host.get()));
    host->field->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return host->field->hasFocus(); }, 5000));
}

void RecipientsTest::typeAndWait(const QString& text, int rows) {
    QTest::keyClicks(host->field, text);
    ASSERT_TRUE(host->waitForRows(rows)) << "rows: " << host->rowCount();
}

} // namespace velmora::test
