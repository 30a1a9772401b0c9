// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Asks before something is done that destroys work.

#include "confirmation.h"

#include <QMessageBox>
#include <QPushButton>

namespace zypanel
{

QMessageBox *confirm(QWidget *parent, const Question &question,
                     const std::function<void()> &accepted)
{
    auto *box = new QMessageBox(QMessageBox::Warning, question.title, question.text,
                                QMessageBox::NoButton, parent);
    box->setObjectName(QStringLiteral("confirmation"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(question.consequence);
    auto *accept = box->addButton(question.accept, QMessageBox::DestructiveRole);
    accept->setObjectName(QStringLiteral("confirmationAccept"));
    auto *reject = box->addButton(question.reject, QMessageBox::RejectRole);
    reject->setObjectName(QStringLiteral("confirmationReject"));
    box->setDefaultButton(reject);
    box->setEscapeButton(reject);
    QObject::connect(accept, &QPushButton::clicked, parent, accepted);
    box->open();
    return box;
}

} // namespace zypanel
