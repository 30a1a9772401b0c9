// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One file on its way to one printer, with its progress as events.

#ifndef TRANSFER_H
#define TRANSFER_H

#include "printertopics.h"
#include "statewords.h"

#include <zyfilesender.h>

namespace zybridge
{

class Transfer : public QObject
{
    Q_OBJECT

public:
    /// @p topics must outlive the transfer.
    Transfer(const zysession::Printer &printer, const QString &path, const QString &name,
             PrinterTopics &topics, QObject *parent = nullptr);

    void start() { m_sender.start(); }
    /// Has the printer forget what it has of the file; answered by ended().
    void cancel() { m_sender.cancel(); }

Q_SIGNALS:
    /// The end, exactly once; the object may be deleted in a slot. @p storedName as the printer has
    /// it. @p isFileAtFault: no printer would take the file.
    void ended(const zybridge::Failure &failure, const QString &storedName, bool isFileAtFault);

private:
    void onProgress(qint64 received, qint64 total);
    void onFinished(const ZySendResult &result);

    const QString m_name;
    PrinterTopics &m_topics;
    ZyFileSender m_sender;
    QElapsedTimer m_sinceProgress;
};

} // namespace zybridge

#endif // TRANSFER_H
