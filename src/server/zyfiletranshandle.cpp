// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The handle: construction, dispatch of commands, busy state, end of the connection.

#include "zyfiletranshandle.h"

#include "messagekeys.h"
#include "serverlog.h"
#include "statuswords.h"

ZyFileTransHandle::ZyFileTransHandle(QObject *parent, QWebSocket *socket)
    : ZyWebHandle(parent, socket)
{
    const QMetaObject &meta = staticMetaObject;
    m_transCmdEnum = meta.enumerator(meta.indexOfEnumerator("TRANSCMD"));
    m_printStatusEnum = meta.enumerator(meta.indexOfEnumerator("STAET_PRINT_STATUS"));
}

ZyFileTransHandle::~ZyFileTransHandle() = default;

void ZyFileTransHandle::processJson(QJsonObject json)
{
    struct Dispatch {
        TRANSCMD command;
        void (ZyFileTransHandle::*handler)(QJsonObject);
    };
    // The whole vocabulary of requests. Anything else gets no reply at all.
    static constexpr Dispatch table[] = {
        {GET_PRINT_STATUS, &ZyFileTransHandle::getPrintStatus},
        {START_FILE, &ZyFileTransHandle::startFile},
        {CANCEL_FILE, &ZyFileTransHandle::cancelFile},
        {START_PRINT, &ZyFileTransHandle::startPrint},
        {PRINT_PAUSE, &ZyFileTransHandle::printPause},
        {PRINT_STOP, &ZyFileTransHandle::printStop},
        {VERSION_CHECK, &ZyFileTransHandle::verSionCheck},
        {PRINT_PARA_SET, &ZyFileTransHandle::setPrintPara},
    };

    const QString word = json.value(zyws::keys::cmd).toString();
    qCDebug(lcZyServer) << "strCmd:" << word;
    for (const Dispatch &entry : table) {
        if (word == QLatin1String(m_transCmdEnum.valueToKey(entry.command))) {
            (this->*entry.handler)(json);
            return;
        }
    }
}

int ZyFileTransHandle::status()
{
    if (m_isReceiving)
        return ReceivingFile;
    return m_printState == CHECKING ? CheckingPrintFile : Idle;
}

void ZyFileTransHandle::onDisconnect()
{
    if (m_file.isOpen())
        m_file.close();
    if (m_isReceiving) {
        // Only into the file that holds the data: a finished file would be damaged, and with a
        // record in a new, empty one a transfer would resume after a hole.
        if (!m_isCompleted && m_file.exists())
            saveKeyInfo();
        m_isReceiving = false;
    }
}

QString ZyFileTransHandle::commandWord(int command) const
{
    return QLatin1String(m_transCmdEnum.valueToKey(command));
}

QString ZyFileTransHandle::getCmdExeStatusKey(int code)
{
    return zyws::commandResultWord(code);
}

QString ZyFileTransHandle::getPrintStatusKey(int code)
{
    return zyws::printStatusWord(code);
}
