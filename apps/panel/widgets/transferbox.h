// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Choosing a file and sending it: name on the printer, progress, rate, time left, cancel, resume.

#ifndef PANEL_TRANSFERBOX_H
#define PANEL_TRANSFERBOX_H

#include "upload.h"

#include <ratemeter.h>

#include <QElapsedTimer>
#include <QGroupBox>
#include <QPointer>
#include <QTimer>

class QLineEdit;
class QMessageBox;
class QProgressBar;
class QPushButton;

namespace zypanel
{

class DropHint;
class ElidedLabel;

class TransferBox : public QGroupBox
{
    Q_OBJECT

public:
    explicit TransferBox(QWidget *parent = nullptr);

    /// Offers @p path for sending, under its own name.
    void setFile(const QString &path);
    /// Not while another is being sent or waits to be resumed.
    bool takesFile() const;
    void chooseFile();
    /// A file is being dragged over the panel.
    void showDrag(bool isDragging);

    /// Files can be sent now.
    void setConnected(bool isConnected);
    void showUpload(Upload::State state);
    void showResumed(qint64 from);
    void showReading(qint64 done, qint64 total);
    void showProgress(qint64 received, qint64 total);
    /// Of what is being sent, rounded down; negative while nothing is.
    int percentage() const;

Q_SIGNALS:
    void sendRequested(const QString &path, const QString &name);
    void cancelRequested();
    void resumeRequested();
    void discardRequested();
    void fileChosen();

protected:
    bool event(QEvent *event) override;

private:
    void buildFields();
    void buildButtons();
    void layOut();
    void checkFile();
    void updateButtons();
    void updateDetail();
    QString detailText() const;
    QString sendingText() const;
    void askToCancel();

    bool m_isConnected = false;
    Upload::State m_state = Upload::State::Idle;
    zysession::RateMeter m_rate;
    QElapsedTimer m_clock; ///< since the file was offered
    QTimer m_tick; ///< while sending: what is shown becomes old
    qint64 m_lastProgress = 0; ///< by the clock
    qint64 m_from = 0; ///< bytes that the printer had before
    qint64 m_received = 0;
    qint64 m_total = 0;
    ZySendResult::FileFault m_fault = ZySendResult::FileFault::Missing; ///< of the chosen file

    DropHint *m_hint;
    QLineEdit *m_path;
    QPushButton *m_choose;
    QLineEdit *m_name;
    QProgressBar *m_progress;
    ElidedLabel *m_detail;
    QPushButton *m_send;
    QPushButton *m_resume;
    QPushButton *m_cancel;
    QPointer<QMessageBox> m_question;
};

} // namespace zypanel

#endif // PANEL_TRANSFERBOX_H
