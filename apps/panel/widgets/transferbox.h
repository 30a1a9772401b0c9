// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Choosing a file and sending it: name on the printer, progress, rate, time left, cancel, resume.

#ifndef PANEL_TRANSFERBOX_H
#define PANEL_TRANSFERBOX_H

#include "localfile.h"
#include "printersession.h"
#include "transferestimate.h"

#include <QElapsedTimer>
#include <QGroupBox>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace zypanel
{

class DropHint;

class TransferBox : public QGroupBox
{
    Q_OBJECT

public:
    explicit TransferBox(QWidget *parent = nullptr);

    /// Offers @p path for sending, under its own name.
    void setFile(const QString &path);
    QString file() const;
    /// Not while another is being sent or waits to be resumed.
    bool takesFile() const;
    void chooseFile();
    /// A file is being dragged over the panel.
    void showDrag(bool isDragging);

    void showLink(PrinterSession::Link link);
    void showTransfer(PrinterSession::Transfer transfer);
    void showProgress(qint64 received, qint64 total);

Q_SIGNALS:
    void sendRequested(const QString &path, const QString &name);
    void cancelRequested();
    void resumeRequested();
    void discardRequested();

protected:
    bool event(QEvent *event) override;

private:
    void buildFields();
    void buildButtons();
    void layOut();
    void checkFile();
    void updateButtons();
    void updateDetail();
    void askToCancel();

    PrinterSession::Link m_link = PrinterSession::Link::Closed;
    PrinterSession::Transfer m_transfer = PrinterSession::Transfer::Idle;
    TransferEstimate m_estimate;
    QElapsedTimer m_clock;
    qint64 m_received = 0;
    qint64 m_total = 0;
    FileFault m_fault = FileFault::Missing; ///< of the file that is to be sent

    DropHint *m_hint;
    QLineEdit *m_path;
    QPushButton *m_choose;
    QLineEdit *m_name;
    QProgressBar *m_progress;
    QLabel *m_detail;
    QPushButton *m_send;
    QPushButton *m_resume;
    QPushButton *m_cancel;
};

} // namespace zypanel

#endif // PANEL_TRANSFERBOX_H
