// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What most tests of the file sender start from: a file, a sender with short limits, its signals.

#ifndef SENDING_H
#define SENDING_H

#include "modelfiles.h"
#include "scriptedprinter.h"
#include "waiting.h"

#include <zyfilesender.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace zytest
{

/// Of the file that was offered last.
inline QString offeredKey(const ScriptedPrinter &printer)
{
    const QJsonObject offer = printer.messages(QStringLiteral("START_FILE")).last();
    return offer.value(QStringLiteral("key")).toString();
}

/// Limits for a test: pauses that do not slow it down, timeouts that only a fault reaches.
inline ZySendOptions impatient(int stallTimeout = patience)
{
    ZySendOptions options;
    options.setConnectTimeout(patience);
    options.setStallTimeout(stallTimeout);
    options.setVerdictTimeout(patience);
    options.setCancelTimeout(patience);
    options.setFirstPause(20);
    options.setLongestPause(200);
    return options;
}

/// A local file and its sender to @p url, not started yet.
class Sending
{
public:
    Sending(const QUrl &url, const QByteArray &contents, const ZySendOptions &options = impatient(),
            const QString &name = QStringLiteral("part.bin"))
        : m_path(writeFile(m_directory.filePath(QStringLiteral("local.bin")), contents)),
          sender(std::make_unique<ZyFileSender>(url, m_path, name)),
          offered(sender.get(), &ZyFileSender::offered),
          resumed(sender.get(), &ZyFileSender::resumed),
          restarted(sender.get(), &ZyFileSender::restarted),
          progress(sender.get(), &ZyFileSender::progress),
          retrying(sender.get(), &ZyFileSender::retrying),
          finished(sender.get(), &ZyFileSender::finished)
    {
        sender->setOptions(options);
    }

    QString path() const { return m_path; }

    /// Starts the sender and waits for its end; false when it does not come.
    bool run()
    {
        sender->start();
        return waitForEnd();
    }
    bool waitForEnd()
    {
        return waitUntil([this] { return finished.count() > 0; });
    }
    /// What it ended with; only after it has.
    ZySendResult result() const { return finished.at(0).at(0).value<ZySendResult>(); }

private:
    QTemporaryDir m_directory;
    QString m_path;

public:
    std::unique_ptr<ZyFileSender> sender;
    QSignalSpy offered;
    QSignalSpy resumed;
    QSignalSpy restarted;
    QSignalSpy progress;
    QSignalSpy retrying;
    QSignalSpy finished;
};

} // namespace zytest

#endif // SENDING_H
