// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A session that writes down what it says.

#ifndef LISTENER_H
#define LISTENER_H

#include "printersession.h"

#include <QStringList>
#include <QTest>

struct Listener {
    explicit Listener(int polling = 20)
    {
        zypanel::PrinterSession::Timeouts timeouts;
        timeouts.polling = polling;
        session.setTimeouts(timeouts);
        QObject::connect(&session, &zypanel::PrinterSession::noticed, &session,
                         [this](const zypanel::Notice &notice) { said.append(notice.text); });
    }

    bool hasSaid(const zypanel::Notice &notice) const { return said.contains(notice.text); }

    bool connectTo(const QUrl &url)
    {
        session.connectTo(url, QStringLiteral("secret"));
        return QTest::qWaitFor(
            [this] { return session.link() == zypanel::PrinterSession::Link::Open; }, 60000);
    }

    zypanel::PrinterSession session;
    QStringList said;
};

#endif // LISTENER_H
