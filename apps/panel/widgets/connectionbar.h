// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Where the printer is chosen: address or saved name, access token, connect.

#ifndef PANEL_CONNECTIONBAR_H
#define PANEL_CONNECTIONBAR_H

#include "printercontrol.h"

#include <savedprinters.h>

#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace zypanel
{

class Badge;

class ConnectionBar : public QWidget
{
    Q_OBJECT

public:
    explicit ConnectionBar(QWidget *parent = nullptr);

    QString address() const;
    void setAddress(const QString &nameOrAddress);
    QString token() const;
    void setToken(const QString &token);
    /// Asks for a connection to the address, with the typed token or else the saved one.
    void requestConnection();
    void showLink(PrinterControl::Link link);

Q_SIGNALS:
    void connectRequested(const zysession::Printer &printer, const QString &token);
    void disconnectRequested();
    void tokenChanged(const QString &token);
    void noticed(const zypanel::Notice &notice);

private:
    void buildFields();
    void buildButtons();
    void layOut();
    void toggle();
    void refreshNames();
    void updateButtons();
    void askForName();
    void saveAs(const QString &name);
    void removeSaved();

    zysession::SavedPrinters m_saved;
    PrinterControl::Link m_link = PrinterControl::Link::Closed;
    QComboBox *m_address;
    QLineEdit *m_token;
    QPushButton *m_connect;
    QPushButton *m_save;
    QPushButton *m_remove;
    Badge *m_badge;
};

} // namespace zypanel

#endif // PANEL_CONNECTIONBAR_H
