// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Loads a server with clients that ask for its status. The same for every server.

#include "crowd.h"
#include "processusage.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <exception>

namespace
{

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// "accept" keeps the connections until standard input ends, for somebody to look at the server.
QJsonObject run(const QString &mode, zybench::Crowd &crowd, int requests)
{
    QJsonObject result{{QStringLiteral("connect"), crowd.connectSeconds()}};
    if (mode == QLatin1String("accept")) {
        zybench::printLine(result);
        while (std::getchar() != EOF) { }
        return {};
    }
    crowd.askInTurn(std::max(requests / 10, 1)); // warms both ends up
    if (mode == QLatin1String("latency"))
        result.insert(QStringLiteral("latency"), median(crowd.askInTurn(requests)));
    else
        result.insert(QStringLiteral("throughput"), requests / crowd.askTogether(requests));
    result.insert(QStringLiteral("answer"), QString::fromUtf8(crowd.answer()));
    return result;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QCommandLineOption port(QStringLiteral("port"), QStringLiteral("The server's port."),
                                  QStringLiteral("PORT"));
    const QCommandLineOption clients(QStringLiteral("clients"), QStringLiteral("Connections."),
                                     QStringLiteral("N"), QStringLiteral("1"));
    const QCommandLineOption requests(QStringLiteral("requests"),
                                      QStringLiteral("Requests to measure, of all together."),
                                      QStringLiteral("N"), QStringLiteral("4000"));
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({port, clients, requests});
    parser.addPositionalArgument(QStringLiteral("mode"),
                                 QStringLiteral("latency, throughput or accept"));
    parser.process(app);
    zybench::allowManyFiles();
    try {
        zybench::Crowd crowd(parser.value(port).toUShort(), parser.value(clients).toInt());
        const QJsonObject result
            = run(parser.positionalArguments().value(0), crowd, parser.value(requests).toInt());
        if (!result.isEmpty())
            zybench::printLine(result);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "zy_bench_load: %s\n", failure.what());
        return 1;
    }
    return 0;
}
