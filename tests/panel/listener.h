// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel's control of a printer, and its upload, with all that they say written down.

#ifndef LISTENER_H
#define LISTENER_H

#include "printercontrol.h"
#include "upload.h"

#include <QStringList>
#include <QTest>

#include <waiting.h>

struct Listener {
    explicit Listener(int polling = 20)
    {
        timing.polling = polling;
        timing.firstPause = 20;
        const auto write = [this](const zypanel::Notice &notice) { said.append(notice.text); };
        QObject::connect(&control, &zypanel::PrinterControl::noticed, &control, write);
        QObject::connect(&upload, &zypanel::Upload::noticed, &control, write);
    }

    static zysession::Printer printerAt(const QUrl &url) { return {{}, url, {}}; }

    bool hasSaid(const zypanel::Notice &notice) const { return said.contains(notice.text); }

    void beginConnecting(const QUrl &url)
    {
        control.setTiming(timing);
        control.connectTo(printerAt(url), QStringLiteral("secret"));
    }

    bool awaitLink(zypanel::PrinterControl::Link link)
    {
        return QTest::qWaitFor([&] { return control.link() == link; }, zytest::patience);
    }

    bool connectTo(const QUrl &url)
    {
        beginConnecting(url);
        return awaitLink(zypanel::PrinterControl::Link::Open);
    }

    bool send(const QString &path, const QString &name)
    {
        return upload.send(control.printer(), path, name);
    }

    bool awaitUpload(zypanel::Upload::State state)
    {
        return QTest::qWaitFor([&] { return upload.state() == state; }, zytest::patience);
    }

    zypanel::PrinterControl::Timing timing;
    zypanel::PrinterControl control;
    zypanel::Upload upload;
    QStringList said;
};

#endif // LISTENER_H
