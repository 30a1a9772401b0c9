// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Choosing a file and sending it: name on the printer, progress, rate, time left, cancel, resume.

#ifndef PANEL_TRANSFERBOX_H
#define PANEL_TRANSFERBOX_H

#include "printercontrol.h"
#include "upload.h"

#include <ratemeter.h>

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

    void showLink(PrinterControl::Link link);
    void showUpload(Upload::State state);
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

    PrinterControl::Link m_link = PrinterControl::Link::Closed;
    Upload::State m_state = Upload::State::Idle;
    zysession::RateMeter m_rate;
    QElapsedTimer m_clock;
    qint64 m_received = 0;
    qint64 m_total = 0;
    ZySendResult::FileFault m_fault
        = ZySendResult::FileFault::Missing; ///< of the file that is to be sent

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
