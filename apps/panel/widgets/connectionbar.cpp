// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Where the printer is chosen: address or saved name, access token, connect.

#include "connectionbar.h"

#include "badge.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QSignalBlocker>

namespace zypanel
{

using Link = PrinterControl::Link;

namespace
{

const QLatin1String lastUsedKey("printerPanel/lastPrinter");

} // namespace

ConnectionBar::ConnectionBar(QWidget *parent)
    : QWidget(parent), m_address(new QComboBox), m_token(new QLineEdit), m_connect(new QPushButton),
      m_save(new QPushButton(tr("Sa&ve…"))), m_remove(new QPushButton(tr("Remo&ve"))),
      m_badge(new Badge)
{
    buildFields();
    buildButtons();
    layOut();
    refreshNames();
    m_address->setEditText(QSettings().value(lastUsedKey).toString());
    showLink(Link::Closed);
}

void ConnectionBar::buildFields()
{
    m_address->setObjectName(QStringLiteral("address"));
    m_address->setEditable(true);
    m_address->setInsertPolicy(QComboBox::NoInsert);
    m_address->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_address->setMinimumContentsLength(22);
    m_address->setAccessibleName(tr("Printer"));
    m_address->lineEdit()->setAccessibleName(m_address->accessibleName());
    m_address->setToolTip(tr("A saved name, or an address such as ws://192.168.1.20:8080"));
    m_address->lineEdit()->setPlaceholderText(tr("ws://address:port or a saved name"));

    m_token->setObjectName(QStringLiteral("token"));
    m_token->setEchoMode(QLineEdit::Password);
    m_token->setAccessibleName(tr("Access token"));
    m_token->setToolTip(tr("Needed only by printers that ask for one; saved with the printer"));
    m_token->setPlaceholderText(tr("none"));
    m_token->setMaximumWidth(fontMetrics().averageCharWidth() * 20);

    connect(m_address, &QComboBox::editTextChanged, this, &ConnectionBar::updateButtons);
    connect(m_address->lineEdit(), &QLineEdit::returnPressed, this, [this] {
        if (m_link == Link::Closed)
            toggle();
    });
    connect(m_token, &QLineEdit::editingFinished, this,
            [this] { Q_EMIT tokenChanged(m_token->text()); });
}

void ConnectionBar::buildButtons()
{
    m_connect->setObjectName(QStringLiteral("connect"));
    m_save->setObjectName(QStringLiteral("saveName"));
    m_save->setToolTip(tr("Give this address a name"));
    m_save->setAccessibleDescription(m_save->toolTip());
    m_remove->setObjectName(QStringLiteral("removeName"));
    m_remove->setToolTip(tr("Forget this saved name"));
    m_remove->setAccessibleDescription(m_remove->toolTip());
    m_badge->setObjectName(QStringLiteral("linkBadge"));
    connect(m_connect, &QPushButton::clicked, this, &ConnectionBar::toggle);
    connect(m_save, &QPushButton::clicked, this, &ConnectionBar::askForName);
    connect(m_remove, &QPushButton::clicked, this, &ConnectionBar::removeSaved);
}

void ConnectionBar::layOut()
{
    auto *printerLabel = new QLabel(tr("P&rinter"));
    printerLabel->setBuddy(m_address);
    auto *tokenLabel = new QLabel(tr("To&ken"));
    tokenLabel->setBuddy(m_token);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(printerLabel);
    layout->addWidget(m_address, 1);
    layout->addWidget(tokenLabel);
    layout->addWidget(m_token);
    layout->addWidget(m_connect);
    layout->addWidget(m_save);
    layout->addWidget(m_remove);
    layout->addStretch(0);
    layout->addWidget(m_badge);
}

QString ConnectionBar::address() const
{
    return m_address->currentText().trimmed();
}

void ConnectionBar::setAddress(const QString &nameOrAddress)
{
    m_address->setEditText(nameOrAddress);
}

QString ConnectionBar::token() const
{
    return m_token->text();
}

void ConnectionBar::setToken(const QString &token)
{
    m_token->setText(token);
}

void ConnectionBar::showLink(Link link)
{
    m_link = link;
    m_connect->setText(tr("Dis&connect"));
    switch (link) {
    case Link::Closed:
        m_connect->setText(tr("&Connect"));
        m_badge->showQuiet(tr("Not connected"));
        break;
    case Link::Connecting:
        m_connect->setText(tr("&Give up"));
        m_badge->show(Severity::Info, tr("Connecting…"));
        break;
    case Link::Open:
        m_badge->show(Severity::Good, tr("Connected"));
        break;
    case Link::Silent:
        m_badge->show(Severity::Warning, tr("No answer"));
        break;
    case Link::Lost:
        m_badge->show(Severity::Error, tr("Connection lost"));
        break;
    }
    m_badge->setAccessibleName(tr("Connection: %1").arg(m_badge->text()));
    m_badge->updateGeometry();
    updateButtons();
}

void ConnectionBar::toggle()
{
    if (m_link == Link::Closed)
        requestConnection();
    else
        Q_EMIT disconnectRequested();
}

void ConnectionBar::requestConnection()
{
    const zysession::Printer printer = m_saved.resolve(address());
    if (printer.url.isEmpty()) {
        const QString text = zysession::isPrinterName(address())
            ? tr("Unknown printer “%1”: no printer is saved under this name. Give an address such "
                 "as ws://192.168.1.20:8080.")
            : tr("“%1” is neither a saved printer nor an address such as "
                 "ws://192.168.1.20:8080.");
        Q_EMIT noticed({Severity::Error, Topic::Connection, text.arg(address())});
        return;
    }
    QSettings().setValue(lastUsedKey, address());
    Q_EMIT connectRequested(printer, token().isEmpty() ? printer.token : token());
}

void ConnectionBar::refreshNames()
{
    const QString text = m_address->currentText();
    {
        const QSignalBlocker blocker(m_address);
        m_address->clear();
        m_saved.read();
        for (const zysession::Printer &printer : m_saved.printers()) {
            m_address->addItem(printer.name);
            m_address->setItemData(m_address->count() - 1, printer.url.toString(), Qt::ToolTipRole);
        }
        m_address->setEditText(text);
    }
    updateButtons();
}

void ConnectionBar::updateButtons()
{
    const bool isSaved = !m_saved.find(address()).url.isEmpty();
    m_address->setEnabled(m_link == Link::Closed);
    m_connect->setEnabled(m_link != Link::Closed || !address().isEmpty());
    m_save->setVisible(!isSaved);
    m_save->setEnabled(!m_saved.resolve(address()).url.isEmpty());
    m_remove->setVisible(isSaved);
}

void ConnectionBar::askForName()
{
    auto *dialog = new QInputDialog(this);
    dialog->setObjectName(QStringLiteral("nameDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Save printer"));
    dialog->setLabelText(tr("Name for %1:").arg(m_saved.resolve(address()).url.toString()));
    connect(dialog, &QInputDialog::textValueSelected, this, &ConnectionBar::saveAs);
    dialog->open();
}

void ConnectionBar::saveAs(const QString &name)
{
    const QString trimmed = name.trimmed();
    if (!zysession::isPrinterName(trimmed)) {
        Q_EMIT noticed({Severity::Error, Topic::SavedPrinters,
                        tr("“%1” cannot be a printer's name. Use letters, digits, “-” and "
                           "“_”, at most 64.")
                            .arg(trimmed)});
        return;
    }
    m_saved.save({trimmed, m_saved.resolve(address()).url, token()});
    refreshNames();
    m_address->setEditText(trimmed);
    Q_EMIT noticed(
        {Severity::Info, Topic::SavedPrinters, tr("The printer is saved as %1.").arg(trimmed)});
}

void ConnectionBar::removeSaved()
{
    const QString name = address();
    const QString url = m_saved.find(name).url.toString();
    m_saved.remove(name);
    refreshNames();
    m_address->setEditText(url);
    Q_EMIT noticed(
        {Severity::Info, Topic::SavedPrinters, tr("The saved name %1 is removed.").arg(name)});
}

} // namespace zypanel
