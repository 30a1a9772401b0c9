// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer behind a proxy that mistreats the connection.

#ifndef BENCH_H
#define BENCH_H

#include "cuttingproxy.h"
#include "modelfiles.h"
#include "testprinter.h"
#include "texts.h"

constexpr int chunks = 8; ///< of the file to send

struct Bench {
    zytest::TestPrinter printer;
    zytest::CuttingProxy proxy{printer.port()};

    QStringList send(const QString &file, const QStringList &more = {}) const
    {
        return QStringList{"send"_s,  file,        "--to"_s,       proxy.url().toString(),
                           "--as"_s,  "a.zydlp"_s, "--back-off"_s, "0.05"_s,
                           "--json"_s}
        + more;
    }
    QByteArray stored() const { return zytest::readFile(printer.path("a.zydlp"_s)); }
};

#endif // BENCH_H
