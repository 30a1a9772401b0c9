// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer as a process of its own: agrees to everything and reports what it is told.

#include "eventlines.h"

#include <zysslechoserver.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include <csignal>

#include <malloc.h>
#include <sys/resource.h>

namespace
{

/// A thousand connections are more than many systems allow without being asked.
void raiseDescriptorLimit()
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

/// No file grows beyond @p bytes: what lies beyond fails to be written, as on a full disk.
void limitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

/// Bytes that are allocated at this moment; 0 where the C library does not tell.
std::size_t heapInUse()
{
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 33)
    const auto info = ::mallinfo2();
    return info.uordblks + info.hblkhd;
#else
    return 0;
#endif
}

QByteArray digest(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return {};
    return hash.result().toHex();
}

/// Looks at the finished file as a host should: the name may lie, and the file may not be there.
int inspect(const QString &directory, const QString &name)
{
    const QFileInfo file(QDir(directory).filePath(name));
    const bool isThere = file.isFile() && name != QLatin1String("wifi_tranfer.tmp");
    printEvent("finish",
               {{QStringLiteral("file"), name},
                {QStringLiteral("isThere"), isThere},
                {QStringLiteral("bytes"), file.size()},
                {QStringLiteral("digest"), QString::fromLatin1(digest(file.filePath()))}});
    return isThere ? 1 : 2;
}

void connectHost(ZySslEchoServer &server, const QString &directory)
{
    const auto agree = [](int &answer) { answer = 1; };
    QObject::connect(&server, &ZySslEchoServer::getPrintState, agree);
    QObject::connect(&server, &ZySslEchoServer::getFilePrintState, agree);
    QObject::connect(&server, &ZySslEchoServer::sigDoPrintPause, agree);
    QObject::connect(&server, &ZySslEchoServer::sigDoPrintStop, agree);
    QObject::connect(&server, &ZySslEchoServer::checkFile,
                     [](const QString &, int &answer) { answer = 1; });
    QObject::connect(&server, &ZySslEchoServer::sifGetVersionCheck,
                     [](QString &version) { version = QStringLiteral("1"); });
    QObject::connect(&server, &ZySslEchoServer::sigGetPrinterStatus,
                     [](PrintStatusPara &status, const QString &token) {
                         status.resin = token;
                         status.sliceLayerCount = QString::number(heapInUse());
                     });
    QObject::connect(&server, &ZySslEchoServer::fileTranStart, [] { printEvent("start"); });
    QObject::connect(&server, &ZySslEchoServer::fileTranDisconnet, [] { printEvent("dropped"); });
    QObject::connect(&server, &ZySslEchoServer::cancle, [] { printEvent("cancelled"); });
    QObject::connect(&server, &ZySslEchoServer::finish,
                     [directory](const QString &name, int &checkState) {
                         checkState = inspect(directory, name);
                     });
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("directory"), QStringLiteral("receive directory"));
    const QCommandLineOption fileLimit(QStringLiteral("file-limit"), {}, QStringLiteral("bytes"));
    parser.addOption(fileLimit);
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);

    raiseDescriptorLimit();
    if (parser.isSet(fileLimit))
        limitFileSize(parser.value(fileLimit).toULongLong());

    const QString directory = parser.positionalArguments().constFirst();
    ZyServerOptions options; // as deployed, but for what this run of the tests wants
    options.setWindow(qEnvironmentVariableIntValue("ZYTEST_WINDOW"));
    ZySslEchoServer server(0, directory, options);
    connectHost(server, directory);
    quitWithStandardInput();
    printEvent("listening", {{QStringLiteral("port"), server.serverPort()}});
    return QCoreApplication::exec();
}
