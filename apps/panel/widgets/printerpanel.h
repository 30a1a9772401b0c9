// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel for one printer, as a widget for any slicing application.

#ifndef PRINTERPANEL_H
#define PRINTERPANEL_H

#include <QPointer>
#include <QWidget>

class QBoxLayout;
class QMessageBox;
class QScrollArea;

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
 * Deleting the panel ends a transfer, which can then be resumed later. What does not fit is
 * scrolled.
 */
class PrinterPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PrinterPanel(QWidget *parent = nullptr);
    ~PrinterPanel() override;

    /// Connects to "ws://host:port" or to a saved name.
    void connectTo(const QString &nameOrAddress);
    /// Which certificate the printer at a wss:// address may show, in place of what is saved with
    /// it: one that the PEM file @p authorities vouches for, or the one with this SHA-256
    /// fingerprint.
    void setCertificate(const QString &nameOrAddress, const QString &authorities,
                        const QString &fingerprint);
    /// A file under way is interrupted, without a question.
    void disconnectFromPrinter();
    void setToken(const QString &token);
    /// Offers @p path for sending, unless another file is being sent.
    void setFile(const QString &path);
    void chooseFile();

    bool isTransferring() const;
    PrinterControl *control() const { return m_control; }
    Upload *upload() const { return m_upload; }

    QSize sizeHint() const override;

Q_SIGNALS:
    /// For a window's title, for example "45 % – bench1"; empty without a printer.
    void headlineChanged(const QString &headline);
    /// A file or a print has ended or failed, or the connection has.
    void attentionWanted(const zypanel::Notice &notice);
    void transferringChanged(bool isTransferring);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void layOut();
    void leaveDropsToThePanel();
    int wideWidth() const;
    void wireConnection();
    void wireTransfer();
    void wirePrint();
    void changePrinter();
    void onLinkChanged();
    void onUploadChanged();
    void resumeUpload();
    void askToDisconnect();
    void askToTrust(const QString &fingerprint);
    void commitToken();
    void showNotice(const Notice &notice);
    void updateHeadline();

    PrinterControl *m_control;
    Upload *m_upload;
    QScrollArea *m_scroll;
    QBoxLayout *m_columns;
    QBoxLayout *m_left;
    QBoxLayout *m_right;
    ConnectionBar *m_connection;
    NoticeStrip *m_strip;
    TransferBox *m_transfer;
    PrintBox *m_print;
    ParameterForm *m_parameters;
    EventLog *m_log;
    bool m_wasTransferring = false;
    QString m_headline;
    QPointer<QMessageBox> m_question;
    QPointer<QMessageBox> m_trustQuestion;
};

} // namespace zypanel

#endif // PRINTERPANEL_H
