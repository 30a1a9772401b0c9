// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The ways in which a peer leaves.

#ifndef ENDINGS_H
#define ENDINGS_H

#include <QTest>

#include "rawtcppeer.h"

namespace zytest
{

enum Ending { OrderlyClose, TcpEnd, TcpReset };

inline void end(RawTcpPeer &peer, Ending ending)
{
    if (ending == OrderlyClose)
        peer.write(RawTcpPeer::frame(RawTcpPeer::Close, {}));
    else if (ending == TcpEnd)
        peer.socket().disconnectFromHost();
    else
        peer.reset();
}

} // namespace zytest

Q_DECLARE_METATYPE(zytest::Ending)

namespace zytest
{

inline void addEndings()
{
    QTest::addColumn<Ending>("ending");
    QTest::newRow("close frame") << OrderlyClose;
    QTest::newRow("end of the TCP connection") << TcpEnd;
    QTest::newRow("TCP reset") << TcpReset;
}

} // namespace zytest

#endif // ENDINGS_H
