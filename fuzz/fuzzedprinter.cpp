// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A real server with one real connection, for targets that feed it messages.

#include "fuzzedprinter.h"

#include "envelope.h"
#include "fuzztarget.h"
#include "linkoptions.h"
#include "vocabulary.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>

#include <zyfiletranshandle.h>

#include <csignal>

#include <sys/resource.h>

namespace fuzzing
{

namespace
{

constexpr int patience = 20000; // ms
constexpr rlim_t largestFile = 64 * 1024 * 1024;

/// A peer may announce any size, and Qt copies a file that it cannot rename: this machine's disk
/// must not pay for that. Beyond the limit the server meets a full disk.
void limitFileSize()
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = largestFile;
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

#ifdef ZYFUZZ_HARDENED
ZyServerOptions hardened()
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setSyncsToDisk(false); // hundreds of inputs a second
    options.setKeepFree(0);
    options.setMaxBacklog(0); // an input is sent faster than any peer sends
    return options;
}
#endif

std::unique_ptr<ZySslEchoServer> makeServer(const QString &directory)
{
#ifdef ZYFUZZ_HARDENED
    return std::make_unique<ZySslEchoServer>(quint16(0), directory, hardened());
#else
    return std::make_unique<ZySslEchoServer>(quint16(0), QString(), QString(), directory, nullptr);
#endif
}

void waitUntil(const std::function<bool()> &isSo, const char *what)
{
    QElapsedTimer waited;
    waited.start();
    while (!isSo()) {
        require(waited.elapsed() < patience, what);
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace

bool staysInside(const QString &fileName)
{
    return !fileName.contains(QLatin1Char('/'));
}

FuzzedPrinter &FuzzedPrinter::instance()
{
    static FuzzedPrinter printer;
    return printer;
}

bool FuzzedPrinter::refuses(const QByteArray &inflated)
{
#ifdef ZYFUZZ_HARDENED
    return inflated.size() > hardened().maxChunk();
#else
    Q_UNUSED(inflated)
    return false;
#endif
}

FuzzedPrinter::FuzzedPrinter() : m_server(makeServer(m_dir.path()))
{
    limitFileSize();
    require(m_dir.isValid() && m_server->isListening(), "no printer to try");
    connectHost();
    takeWarnings(); // of the certificate that is not there
}

void FuzzedPrinter::connectHost()
{
    ZySslEchoServer *const server = m_server.get();
    const auto answer = [this](int &value) { value = m_hostAnswer; };
    using Server = ZySslEchoServer;
    QObject::connect(server, &Server::getPrintState, server, answer);
    QObject::connect(server, &Server::getFilePrintState, server, answer);
    QObject::connect(server, &Server::sigDoPrintPause, server, answer);
    QObject::connect(server, &Server::sigDoPrintStop, server, answer);
    QObject::connect(server, &Server::checkFile, server,
                     [this](const QString &, int &checkState) { checkState = m_hostAnswer; });
    QObject::connect(server, &Server::finish, server,
                     [this](const QString &fileName, int &checkState) {
                         checkState = m_hostAnswer;
                         if (onFinished)
                             onFinished(path(fileName));
                     });
    QObject::connect(server, &Server::sifGetVersionCheck, server,
                     [this](QString &version) { version = QString::number(m_hostAnswer); });
    QObject::connect(server, &Server::sigGetPrinterStatus, server,
                     [this](PrintStatusPara &record, const QString &token) {
                         record.printStatus = m_hostAnswer;
                         record.filename = token;
                     });
}

bool FuzzedPrinter::hasConnection() const
{
    return m_server->findChild<ZyFileTransHandle *>(QString(), Qt::FindDirectChildrenOnly);
}

void FuzzedPrinter::begin(int hostAnswer)
{
    QDir dir(m_dir.path());
    const QStringList files = dir.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &file : files)
        dir.remove(file);
    m_hostAnswer = hostAnswer;
    m_peer = std::make_unique<QWebSocket>();
    m_peer->open(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(m_server->serverPort())));
    waitUntil([this] { return hasConnection() && m_peer->isValid(); }, "no connection");
    zyws::setLinkOptions(*m_peer);
}

void FuzzedPrinter::text(const QByteArray &message)
{
    const QString text = QString::fromUtf8(message);
    if (staysInside(zyws::parseMessage(text).value(zyws::keys::filename).toString()))
        m_peer->sendTextMessage(text);
}

void FuzzedPrinter::binary(const QByteArray &payload)
{
    if (isBearable(payload))
        m_peer->sendBinaryMessage(payload);
}

void FuzzedPrinter::settle()
{
    // The messages stand in the server's delivery queue before the ping is read, and the queue is
    // served before the pong can arrive.
    bool isAnswered = false;
    const auto pong = QObject::connect(m_peer.get(), &QWebSocket::pong, m_peer.get(),
                                       [&isAnswered] { isAnswered = true; });
    m_peer->ping();
    // One that protects itself may have ended the connection.
    waitUntil([&] { return isAnswered || !m_peer->isValid(); },
              "the printer does not answer a ping");
    QObject::disconnect(pong);
}

void FuzzedPrinter::end()
{
    settle();
    m_peer->abort();
    waitUntil([this] { return !hasConnection(); }, "the printer keeps a connection that is gone");
    m_peer.reset();
}

} // namespace fuzzing
