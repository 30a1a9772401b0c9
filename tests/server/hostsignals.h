// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a peer sends so that a host is called, one entry for each of the twelve signals.

#ifndef HOSTSIGNALS_H
#define HOSTSIGNALS_H

#include <QByteArray>
#include <QList>

#include "endings.h"
#include "rawtcppeer.h"

namespace zytest
{

struct HostSignal {
    const char *name;
    /// The messages that lead to it; the last one causes it.
    QList<QByteArray> frames;
    /// True for the one that only an interrupted reception causes.
    bool needsEnding;
};

inline QByteArray textFrame(const QByteArray &text)
{
    return RawTcpPeer::frame(RawTcpPeer::Text, text);
}

inline QByteArray commandFrame(const char *command)
{
    return textFrame(QByteArray("{\"cmd\":\"") + command + "\",\"filename\":\"job\"}");
}

inline QByteArray startFileFrame(const char *size = "5")
{
    return textFrame(
        QByteArray(R"({"cmd":"START_FILE","filename":"a.txt","key":"78563412","size":")") + size
        + "\"}");
}

inline QByteArray chunkFrame(const QByteArray &chunk)
{
    return RawTcpPeer::frame(RawTcpPeer::Binary, qCompress(chunk));
}

inline QList<HostSignal> hostSignals()
{
    return {
        {"getPrintState", {startFileFrame()}, false},
        {"fileTranStart", {startFileFrame()}, false},
        {"finish", {startFileFrame(), chunkFrame("abcde")}, false},
        {"cancle", {startFileFrame(), chunkFrame("ab"), commandFrame("CANCEL_FILE")}, false},
        {"fileTranDisconnet", {startFileFrame(), chunkFrame("ab")}, true},
        {"getFilePrintState", {commandFrame("START_PRINT")}, false},
        {"checkFile", {commandFrame("START_PRINT")}, false},
        {"sigDoPrintPause", {commandFrame("PRINT_PAUSE")}, false},
        {"sigDoPrintStop", {commandFrame("PRINT_STOP")}, false},
        {"sifGetVersionCheck", {commandFrame("VERSION_CHECK")}, false},
        {"sigGetPrinterStatus", {commandFrame("GET_PRINT_STATUS")}, false},
        {"sigSetPrintPara", {commandFrame("PRINT_PARA_SET")}, false},
    };
}

/// Has @p peer send what leads to @p signal; false when the printer does not answer on the way.
inline bool provoke(const HostSignal &signal, RawTcpPeer &peer, Ending ending = TcpReset)
{
    for (const QByteArray &frame : signal.frames)
        peer.write(frame);
    if (!signal.needsEnding)
        return true;
    const bool isReceiving = !peer.takeText().isNull() && !peer.takeText().isNull();
    end(peer, ending);
    return isReceiving;
}

} // namespace zytest

#endif // HOSTSIGNALS_H
