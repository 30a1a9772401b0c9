// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What most client tests start from: a printer under control, a client, and all it emits and logs.

#ifndef SESSION_H
#define SESSION_H

#include "logcapture.h"
#include "modelfiles.h"
#include "signaltrace.h"
#include "waiting.h"

#include <zysslechoclient.h>

#include <QTemporaryDir>
#include <QTest>

namespace zytest
{

/// Has @p client compress in as many threads as this run of the tests wants: ZYTEST_THREADS, or
/// none.
inline void useThreads(ZySslEchoClient &client)
{
    client.setCompressionThreads(qEnvironmentVariableIntValue("ZYTEST_THREADS"));
}

/// @p Printer is ScriptedPrinter or RawPrinter.
template <typename Printer> struct Session {
    Printer printer;
    LogCapture log;
    ZySslEchoClient client{printer.url()};
    SignalTrace trace{client};

    Session() { useThreads(client); }

    /// What the client alone has logged.
    QStringList logLines() const { return log.texts(QStringLiteral("zywebsocket.client")); }

    /// Waits for the connection, then forgets what it emitted and logged.
    bool open()
    {
        const bool isOpen = QTest::qWaitFor(
            [this] {
                return trace.count(QStringLiteral("connected")) == 1
                    && printer.connectionCount() == 1;
            },
            patience);
        trace.clear();
        log.clear();
        return isOpen;
    }

    /// Runs a private slot at once, as the meta-object allows anyone to.
    template <typename... Arguments> bool invoke(const char *slot, Arguments... arguments)
    {
        return QMetaObject::invokeMethod(&client, slot, Qt::DirectConnection, arguments...);
    }
};

/// A session with files to send.
template <typename Printer> struct TransferSession : Session<Printer> {
    QTemporaryDir dir;

    QString writeFile(const QString &name, const QByteArray &contents)
    {
        return zytest::writeFile(dir.filePath(name), contents);
    }

    /// The last signal of a transfer, however it ends: the reply that started it, passed on.
    bool hasEnded() const
    {
        const QString reply = QStringLiteral("\"cmd\":\"START_FILE\"");
        return this->trace.of(QStringLiteral("jsonMessageReceived")).join(QChar()).contains(reply);
    }
};

} // namespace zytest

/// Waits like QTRY_COMPARE, as long as a loaded machine may need.
#define WAIT_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, zytest::patience)
#define WAIT_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, zytest::patience)

#endif // SESSION_H
