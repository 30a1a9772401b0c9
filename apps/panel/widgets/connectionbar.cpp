// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Where the printer is chosen: address or saved name, access token, connect.

#include "connectionbar.h"

#include "badge.h"
#include "elidedlabel.h"
#include "printerchoice.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>

namespace zypanel
{

using zysession::Printer;

namespace
{

const QLatin1String lastUsedKey("printerPanel/lastPrinter");
constexpr int searchTime = 5000; // ms

QString keyOfName(const QString &announcedName)
{
    return zydiscovery::addressByName(announcedName).toLower();
}

} // namespace

ConnectionBar::ConnectionBar(QWidget *parent)
    : QWidget(parent), m_rows(new QHBoxLayout(this)), m_printerRow(new QHBoxLayout),
      m_buttonRow(new QHBoxLayout), m_printerLabel(new QLabel(tr("P&rinter"))),
      m_address(new PrinterChoice), m_name(new ElidedLabel), m_token(new QLineEdit),
      m_connect(new QPushButton), m_save(new QPushButton(tr("Sa&ve…"))),
      m_forget(new QPushButton(tr("Forge&t…"))), m_badge(new Badge)
{
    buildFields();
    buildButtons();
    layOut();
    refreshNames();
    m_address->setEditText(QSettings().value(lastUsedKey).toString());
    showLink(Link::Closed, {});
}

void ConnectionBar::buildFields()
{
    m_address->setObjectName(QStringLiteral("address"));

    m_name->setObjectName(QStringLiteral("printerTitle"));
    m_name->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QFont bold = m_name->font();
    bold.setBold(true);
    m_name->setFont(bold);

    m_token->setObjectName(QStringLiteral("token"));
    m_token->setEchoMode(QLineEdit::Password);
    m_token->setAccessibleName(tr("Access token"));
    m_token->setToolTip(tr("Needed only by printers that ask for one"));
    m_token->setMinimumWidth(fontMetrics().averageCharWidth() * 9);
    m_token->setMaximumWidth(fontMetrics().averageCharWidth() * 20);

    m_search.setSingleShot(true);
    m_search.setInterval(searchTime);
    connect(&m_search, &QTimer::timeout, this, &ConnectionBar::sayUnknown);
    connect(&m_browser, &zydiscovery::PrinterBrowser::changed, this,
            &ConnectionBar::onFoundChanged);
    connect(m_address, &QComboBox::editTextChanged, this, &ConnectionBar::onAddressChanged);
    connect(m_address->lineEdit(), &QLineEdit::returnPressed, this, &ConnectionBar::toggle);
    connect(m_token, &QLineEdit::textEdited, this,
            [this] { m_isTokenUsed = m_link != Link::Closed; });
    connect(m_token, &QLineEdit::editingFinished, this, [this] { Q_EMIT tokenChanged(token()); });
}

void ConnectionBar::buildButtons()
{
    m_connect->setObjectName(QStringLiteral("connect"));
    m_save->setObjectName(QStringLiteral("saveName"));
    m_save->setToolTip(tr("Save this printer under a name"));
    m_save->setAccessibleDescription(m_save->toolTip());
    m_forget->setObjectName(QStringLiteral("forgetName"));
    m_forget->setToolTip(tr("Remove this printer from the saved ones"));
    m_forget->setAccessibleDescription(m_forget->toolTip());
    m_badge->setObjectName(QStringLiteral("linkBadge"));
    connect(m_connect, &QPushButton::clicked, this, &ConnectionBar::toggle);
    connect(m_save, &QPushButton::clicked, this, &ConnectionBar::askForName);
    connect(m_forget, &QPushButton::clicked, this, &ConnectionBar::askToForget);
}

/// The order of creation is the tab order; the layouts follow it.
void ConnectionBar::layOut()
{
    m_printerLabel->setBuddy(m_address);
    auto *tokenLabel = new QLabel(tr("To&ken"));
    tokenLabel->setBuddy(m_token);
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->addLayout(m_printerRow, 1);
    m_rows->addLayout(m_buttonRow);
    m_printerRow->addWidget(m_printerLabel);
    m_printerRow->addWidget(m_address, 1);
    m_printerRow->addWidget(m_name, 1);
    m_printerRow->addWidget(m_badge);
    m_buttonRow->addWidget(tokenLabel);
    m_buttonRow->addWidget(m_token, 1);
    m_buttonRow->addWidget(m_connect);
    m_buttonRow->addWidget(m_save);
    m_buttonRow->addWidget(m_forget);
}

void ConnectionBar::setNarrow(bool isNarrow)
{
    m_rows->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

int ConnectionBar::wideWidth() const
{
    return m_printerRow->minimumSize().width() + m_buttonRow->minimumSize().width()
        + m_rows->spacing();
}

QString ConnectionBar::address() const
{
    return m_address->currentText().trimmed();
}

QString ConnectionBar::keyOf(const Printer &printer)
{
    return printer.announcedName.isEmpty() ? printer.url.toString()
                                           : keyOfName(printer.announcedName);
}

Printer ConnectionBar::printer() const
{
    Printer printer = resolve(address());
    const auto given = m_certificates.constFind(keyOf(printer));
    if (given != m_certificates.constEnd()) {
        printer.authorities = given->authorities;
        printer.fingerprint = given->fingerprint;
    }
    return printer;
}

Printer ConnectionBar::resolve(const QString &text) const
{
    const QString announced = zydiscovery::nameInAddress(text);
    Printer printer;
    if (announced.isNull())
        printer = m_saved.resolve(text);
    if (!printer.url.isEmpty() || text.isEmpty())
        return printer;
    // Also by its name alone, as it is completed while it is typed.
    const zydiscovery::FoundPrinter found
        = zydiscovery::printerNamed(announced.isNull() ? text : announced, m_found);
    printer.url = found.url;
    printer.announcedName = found.name;
    return printer;
}

void ConnectionBar::onFoundChanged()
{
    const QVector<zydiscovery::FoundPrinter> found = m_browser.printers();
    if (found == m_found)
        return; // an open list is left alone
    m_found = found;
    m_address->offer(m_saved.printers(), m_found);
    updateButtons();
    if (m_search.isActive() && !printer().url.isEmpty())
        requestConnection();
}

void ConnectionBar::setCertificate(const QString &nameOrAddress, const QString &authorities,
                                   const QString &fingerprint)
{
    // A printer on the network may not have been found yet.
    const QString announced = zydiscovery::nameInAddress(nameOrAddress);
    m_certificates.insert(announced.isNull() ? keyOf(resolve(nameOrAddress)) : keyOfName(announced),
                          {authorities, fingerprint});
}

Printer ConnectionBar::trust(Printer printer, const QString &fingerprint)
{
    printer.fingerprint = fingerprint;
    // As it is saved: a token that was typed is not saved by the way.
    Printer saved = m_saved.find(printer.name);
    saved.fingerprint = fingerprint;
    if (saved.url == printer.url)
        report(m_saved.save(saved));
    else
        m_certificates.insert(keyOf(printer), {{}, fingerprint});
    return printer;
}

void ConnectionBar::setAddress(const QString &nameOrAddress)
{
    m_address->setEditText(nameOrAddress);
}

void ConnectionBar::setPrinter(const Printer &printer)
{
    if (this->printer().url == printer.url)
        return;
    // The name may have been forgotten, or given to another printer.
    if (m_saved.find(printer.name).url == printer.url)
        setAddress(printer.name);
    else if (!printer.announcedName.isEmpty())
        setAddress(zydiscovery::addressByName(printer.announcedName));
    else
        setAddress(printer.url.toString());
    setToken(printer.token == this->printer().token ? QString() : printer.token);
}

QString ConnectionBar::token() const
{
    return m_token->text().isEmpty() ? printer().token : m_token->text();
}

void ConnectionBar::setToken(const QString &token)
{
    m_token->setText(token);
    m_isTokenUsed = m_link != Link::Closed;
}

void ConnectionBar::showLink(Link link, const Printer &printer)
{
    const Link before = m_link;
    const bool hadFocus = m_address->lineEdit()->hasFocus() || m_connect->hasFocus();
    m_link = link;
    if (link != Link::Closed)
        m_isTokenUsed = true;
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
    m_name->setText(printer.description());
    // The address leaves, and the focus must not go on to the token: what is typed next would
    // become one.
    if (hadFocus && link != Link::Closed)
        m_connect->setFocus();
    m_address->setVisible(link == Link::Closed);
    m_name->setVisible(link != Link::Closed);
    if (hadFocus && before == Link::Connecting && link == Link::Closed)
        m_address->lineEdit()->setFocus();
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
    // Another program may have saved it meanwhile.
    refreshNames();
    const Printer printer = this->printer();
    if (printer.url.isEmpty()) {
        lookFor();
        return;
    }
    m_search.stop();
    ZyTlsTrust trust;
    const QString fault = printer.readTrust(trust);
    if (!fault.isEmpty()) {
        Q_EMIT noticed(
            {Severity::Error, Topic::Connection,
             tr("The certificate of %1 cannot be checked: %2").arg(printer.label(), fault)});
        return;
    }
    QSettings().setValue(lastUsedKey, address());
    Q_EMIT connectRequested(printer);
}

/// The printer of the address is not known, or not known yet.
void ConnectionBar::lookFor()
{
    if (zydiscovery::nameInAddress(address()).isEmpty() || !m_browser.fault().isEmpty()) {
        sayUnknown();
        return;
    }
    m_search.start();
    Q_EMIT noticed(
        {Severity::Info, Topic::Connection,
         tr("Looking for “%1” on the network…").arg(zydiscovery::nameInAddress(address()))});
}

void ConnectionBar::sayUnknown()
{
    const QString announced = zydiscovery::nameInAddress(address());
    QString text = tr("“%1” is neither a saved printer nor an address such as "
                      "ws://192.168.1.20:8080.")
                       .arg(address());
    if (zysession::isPrinterName(address()))
        text = tr("Unknown printer “%1”: no printer is saved under this name. Give an address such "
                  "as ws://192.168.1.20:8080.")
                   .arg(address());
    else if (!announced.isEmpty() && m_browser.fault().isEmpty())
        text = tr("No printer named “%1” is announced on the network.").arg(announced);
    else if (!announced.isEmpty())
        text = tr("Printers cannot be looked for on the network: %1.").arg(m_browser.fault());
    Q_EMIT noticed({Severity::Error, Topic::Connection, text});
}

/// A token that was typed for one printer is not for the next.
void ConnectionBar::onAddressChanged()
{
    if (m_isTokenUsed)
        setToken({});
    m_search.stop();
    updateButtons();
}

void ConnectionBar::refreshNames()
{
    report(m_saved.read());
    m_address->offer(m_saved.printers(), m_found);
    updateButtons();
}

void ConnectionBar::updateButtons()
{
    const Printer printer = this->printer();
    m_connect->setEnabled(m_link != Link::Closed || !address().isEmpty());
    m_save->setEnabled(!printer.url.isEmpty());
    m_forget->setEnabled(!printer.name.isEmpty() && m_link == Link::Closed);
    m_token->setPlaceholderText(printer.token.isEmpty() ? tr("none") : tr("saved"));
}

} // namespace zypanel
