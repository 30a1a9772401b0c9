// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The handle: construction, busy state, end of the connection.

#include "zyfiletranshandle.h"

ZyFileTransHandle::ZyFileTransHandle(QObject *parent, QWebSocket *socket)
    : ZyWebHandle(parent, socket)
{
    const QMetaObject &meta = staticMetaObject;
    m_transCmdEnum = meta.enumerator(meta.indexOfEnumerator("TRANSCMD"));
    m_printStatusEnum = meta.enumerator(meta.indexOfEnumerator("STAET_PRINT_STATUS"));
}

ZyFileTransHandle::~ZyFileTransHandle() = default;

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
        // The static function: the other one takes a link to nothing for a file.
        if (!m_isCompleted && QFile::exists(m_file.fileName()))
            saveKeyInfo();
        m_isReceiving = false;
    }
}
