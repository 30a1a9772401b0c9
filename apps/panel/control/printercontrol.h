// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel's connection for commands: the printer's status, its prints and parameters.

#ifndef PANEL_PRINTERCONTROL_H
#define PANEL_PRINTERCONTROL_H

#include "notice.h"
#include "words.h"

#include <exchange.h>
#include <printerlink.h>
#include <printerstatus.h>
#include <savedprinters.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

namespace zypanel
{

/**
 * Keeps one connection open, also while an Upload sends a file on another, and asks for the status
 * on it. Turns what comes of commands into notices.
 *
 * A connection that was open and is lost is opened again, with growing pauses, until the user ends
 * it. What the printer said last is kept meanwhile.
 *
 * Not to be deleted in a slot connected to its signals.
 */
class PrinterControl : public QObject
{
    Q_OBJECT

public:
    enum class Link {
        Closed,
        Connecting,
        Open,
        Silent, ///< open, but the printer answers nothing
        Lost, ///< about to be opened again
    };
    Q_ENUM(Link)

    /// All in ms.
    struct Timing {
        zysession::TimeLimits limits{10000, 5000, 120000};
        int polling = 1000; ///< between status requests
        int firstPause = 1000; ///< before a lost connection is opened again; doubles each time
        int longestPause = 30000;
    };

    explicit PrinterControl(QObject *parent = nullptr);
    ~PrinterControl() override;

    /// For the next connection.
    void setTiming(const Timing &timing) { m_timing = timing; }

    Link link() const { return m_link; }
    /// Commands can be given.
    bool isOpen() const { return m_link == Link::Open || m_link == Link::Silent; }
    const zysession::Printer &printer() const { return m_printer; }
    /// For people: the saved name, or host and port.
    QString printerName() const { return nameOf(m_printer); }
    static QString nameOf(const zysession::Printer &printer);

    /// As last heard; state Unknown without parameters until then.
    const zysession::PrinterStatus &status() const { return m_status; }
    QDateTime lastHeard() const { return m_lastHeard; }
    /// The printer checks a file that is to be printed.
    bool isChecking() const { return m_isChecking; }
    /// The last one that was to be printed, and so the one that is checked.
    QString fileToPrint() const { return m_fileToPrint; }

    void connectTo(const zysession::Printer &printer, const QString &token);
    /// For the commands to come; the connection stays.
    void setToken(const QString &token);
    void disconnectFromPrinter();
    /// The printer has another name now, if it is this one.
    void rename(const zysession::Printer &printer);

    /// Goes on with a paused print of the same name.
    void startPrint(const QString &file);
    void pausePrint();
    void stopPrint();
    /// The parameters that are to change.
    void setParameters(const zysession::Parameters &parameters);

Q_SIGNALS:
    /// Another printer than before: nothing that was known holds any more.
    void printerChanged();
    void linkChanged(zypanel::PrinterControl::Link link);
    void statusChanged(const zysession::PrinterStatus &status);
    void checkingChanged(bool isChecking);
    /// The printer has taken new parameters or not; these are its values, as last heard.
    void parametersSettled(const zysession::Parameters &current);
    void noticed(const zypanel::Notice &notice);
    /// There is no connection, because nothing here knows the printer's certificate.
    void certificateUnknown(const QString &fingerprint);

private:
    struct Conversation;
    using Result = zysession::Exchange::Result;

    void close();
    void listen();
    void listenToCommands();
    void onOpened();
    void onFailed();
    void onDropped();
    void reconnectLater();
    void poll();
    void onHeard();
    void onStatus(const Result &result);
    void onVersion(const Result &result);
    void onPrintEnded(const Result &result);
    void onParametersEnded(const Result &result);
    void report(PrinterCommand command, const Result &result, const QString &subject);
    void setLink(Link link);
    void setStatus(const zysession::PrinterStatus &status);
    void setChecking(bool isChecking);
    void say(Severity severity, const QString &text);

    Timing m_timing;
    zysession::Printer m_printer;
    std::unique_ptr<Conversation> m_conversation;
    Link m_link = Link::Closed;
    QTimer m_pollTimer;
    QTimer m_reconnectTimer;
    int m_pause = 0; ///< before the next attempt to open a lost connection
    QElapsedTimer m_silentSince;
    QDateTime m_lastHeard;

    zysession::PrinterStatus m_status;
    bool m_isChecking = false;
    QString m_fileToPrint;
    bool m_isContinuing = false; ///< the print asked for was paused
    PrinterCommand m_halting = PrinterCommand::Pause; ///< the last of pause and stop
};

} // namespace zypanel

#endif // PANEL_PRINTERCONTROL_H
