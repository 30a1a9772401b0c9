// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Where the printer is chosen: address or saved name, access token, connect.

#ifndef PANEL_CONNECTIONBAR_H
#define PANEL_CONNECTIONBAR_H

#include "printercontrol.h"

#include <printerbrowser.h>
#include <savedprinters.h>

#include <QMap>
#include <QTimer>
#include <QWidget>

class QBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zypanel
{

class Badge;
class ElidedLabel;
class PrinterChoice;

class ConnectionBar : public QWidget
{
    Q_OBJECT

public:
    explicit ConnectionBar(QWidget *parent = nullptr);

    /// As if it was typed.
    void setAddress(const QString &nameOrAddress);
    /// Address and token of @p printer, unless the address is that printer's already.
    void setPrinter(const zysession::Printer &printer);
    void setToken(const QString &token);
    /// The typed token, or else the one saved with the printer.
    QString token() const;
    /// Which certificate the printer may show, in place of what is saved with it.
    void setCertificate(const QString &nameOrAddress, const QString &authorities,
                        const QString &fingerprint);
    /// Remembers the certificate of @p printer: with the saved one, else until the program ends.
    /// Returns the printer with it.
    zysession::Printer trust(zysession::Printer printer, const QString &fingerprint);
    /// In two rows.
    void setNarrow(bool isNarrow);
    /// What it needs in one row.
    int wideWidth() const;
    /// @p printer is the one at the other end, whatever the address says by now.
    void showLink(PrinterControl::Link link, const zysession::Printer &printer);

    /// Asks for a connection to the address, or says what is wrong with it.
    void requestConnection();

Q_SIGNALS:
    void connectRequested(const zysession::Printer &printer);
    void disconnectRequested();
    void tokenChanged(const QString &token);
    void printerSaved(const zysession::Printer &printer);
    void noticed(const zypanel::Notice &notice);

private:
    using Link = PrinterControl::Link;

    void buildFields();
    void buildButtons();
    void layOut();
    QString address() const;
    /// Of the address; its url is empty when it is none.
    zysession::Printer printer() const;
    zysession::Printer resolve(const QString &text) const;
    /// What a certificate is remembered by: a printer that was found may get another address.
    static QString keyOf(const zysession::Printer &printer);
    void onFoundChanged();
    void lookFor();
    void sayUnknown();
    void toggle();
    void refreshNames();
    void updateButtons();
    void onAddressChanged();
    void askForName();
    void save(const zysession::Printer &printer);
    void askToForget();
    void forget(const zysession::Printer &printer);
    bool report(zysession::SettingsFault fault);

    zysession::SavedPrinters m_saved;
    zydiscovery::PrinterBrowser m_browser;
    QVector<zydiscovery::FoundPrinter> m_found;
    QTimer m_search; ///< for the printer of the address, which is to be connected to
    Link m_link = Link::Closed;
    struct Certificate {
        QString authorities;
        QString fingerprint;
    };
    /// Those that outweigh saved ones while the program runs; see keyOf().
    QMap<QString, Certificate> m_certificates;
    bool m_isTokenUsed = false; ///< the typed token is of the printer that is or was connected
    QBoxLayout *m_rows;
    QBoxLayout *m_printerRow;
    QBoxLayout *m_buttonRow;
    QLabel *m_printerLabel;
    PrinterChoice *m_address;
    ElidedLabel *m_name; ///< of the connected printer, in the address's place
    QLineEdit *m_token;
    QPushButton *m_connect;
    QPushButton *m_save;
    QPushButton *m_forget;
    Badge *m_badge;
};

} // namespace zypanel

#endif // PANEL_CONNECTIONBAR_H
