// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel for one printer, as a widget for any slicing application.

#ifndef PRINTERPANEL_H
#define PRINTERPANEL_H

#include <QWidget>

namespace zypanel
{

class ConnectionBar;
class EventLog;
class NoticeStrip;
class ParameterForm;
class PrintBox;
class PrinterControl;
class TransferBox;
class Upload;
struct Notice;

/**
 * Connects to a printer, sends it files and runs its prints.
 *
 * An application embeds it like any widget and hands it what it has sliced:
 *
 *     auto *panel = new zypanel::PrinterPanel(this);
 *     panel->setFile(slicedPath);
 *
 * Files are sent in a thread of the library's own, so nothing of the application holds them up.
 * Deleting the panel ends a transfer, which can then be resumed later.
 */
class PrinterPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PrinterPanel(QWidget *parent = nullptr);
    ~PrinterPanel() override;

    /// Connects to "ws://host:port" or to a saved name.
    void connectTo(const QString &nameOrAddress);
    void disconnectFromPrinter();
    void setToken(const QString &token);
    /// Offers @p path for sending.
    void setFile(const QString &path);
    void chooseFile();

    bool isTransferring() const;
    PrinterControl *control() const { return m_control; }
    Upload *upload() const { return m_upload; }

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void layOut();
    void wireConnection();
    void wireTransfer();
    void wirePrint();
    void showNotice(const Notice &notice);
    void updateApplicable();

    PrinterControl *m_control;
    Upload *m_upload;
    ConnectionBar *m_connection;
    NoticeStrip *m_strip;
    TransferBox *m_transfer;
    PrintBox *m_print;
    ParameterForm *m_parameters;
    EventLog *m_log;
};

} // namespace zypanel

#endif // PRINTERPANEL_H
