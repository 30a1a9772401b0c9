// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Many virtual printers in one process: real servers, whose prints only take time.

#include <printstatuspara.h>
#include <zysslechoserver.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QLoggingCategory>
#include <QThread>
#include <QTimer>

#include <cstdio>
#include <memory>
#include <vector>

#include <sched.h>

namespace
{

constexpr int layers = 5;
enum Status { Idle = 0, Printing = 1, Complete = 2, Stopped = 4 };

/// One line for each change: its time in ms since 1970, what the printer then says.
class VirtualPrinter : public QObject
{
public:
    VirtualPrinter(const QString &name, const QString &directory, int layerTime)
        : m_name(name), m_directory(directory), m_server(0, directory, ZyServerOptions())
    {
        m_timer.setInterval(layerTime);
        connect(&m_timer, &QTimer::timeout, this, &VirtualPrinter::exposeLayer);
        connect(&m_server, &ZySslEchoServer::getPrintState, this, [](int &answer) { answer = 1; });
        connect(&m_server, &ZySslEchoServer::finish, this,
                [](const QString &, int &state) { state = 1; });
        connect(&m_server, &ZySslEchoServer::getFilePrintState, this,
                [this](int &answer) { answer = m_status == Printing ? 0 : 1; });
        connect(&m_server, &ZySslEchoServer::checkFile, this, &VirtualPrinter::print);
        connect(&m_server, &ZySslEchoServer::sigDoPrintStop, this, [this](int &answer) {
            answer = m_status == Printing ? 1 : 0;
            if (answer == 1)
                become(Stopped);
        });
        connect(&m_server, &ZySslEchoServer::sigGetPrinterStatus, this, &VirtualPrinter::tell);
        say("listens");
    }

private:
    void print(const QString &file, int &answer)
    {
        if (!QDir(m_directory).exists(file))
            return;
        m_file = file;
        m_layer = 1;
        become(Printing);
        answer = 1;
    }

    void exposeLayer()
    {
        if (m_layer == layers) {
            become(Complete);
        } else {
            ++m_layer;
            say("layer");
        }
    }

    void become(Status status)
    {
        m_status = status;
        if (status == Printing)
            m_timer.start();
        else
            m_timer.stop();
        say(status == Printing ? "printing" : status == Complete ? "complete" : "stopped");
    }

    void say(const char *what) const
    {
        std::printf("{\"time\":%lld,\"printer\":\"%s\",\"port\":%d,\"what\":\"%s\",\"file\":\"%s\","
                    "\"layer\":%d}\n",
                    static_cast<long long>(QDateTime::currentMSecsSinceEpoch()), qPrintable(m_name),
                    m_server.serverPort(), what, qPrintable(m_file), m_layer);
        std::fflush(stdout);
    }

    void tell(PrintStatusPara &status) const
    {
        status.printStatus = m_status;
        status.filename = m_file;
        if (m_layer == 0)
            return;
        status.curSliceLayer = QString::number(m_layer);
        status.sliceLayerCount = QString::number(layers);
    }

    const QString m_name;
    const QString m_directory;
    ZySslEchoServer m_server;
    QTimer m_timer;
    Status m_status = Idle;
    QString m_file;
    int m_layer = 0;
};

/// A thread for each printer, since a server changes the current directory; here that of its thread
/// alone.
class PrinterThread : public QThread
{
public:
    PrinterThread(const QString &name, const QString &directory, int layerTime)
        : m_name(name), m_directory(directory), m_layerTime(layerTime)
    {
    }

protected:
    void run() override
    {
        unshare(CLONE_FS);
        const VirtualPrinter printer(m_name, m_directory, m_layerTime);
        exec();
    }

private:
    const QString m_name;
    const QString m_directory;
    const int m_layerTime;
};

} // namespace

/// farm DIRECTORY COUNT LAYER_TIME
int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QStringList arguments = QCoreApplication::arguments();
    const QDir directory(QDir(arguments.at(1)).absolutePath());
    std::vector<std::unique_ptr<PrinterThread>> printers;
    for (int i = 0; i < arguments.at(2).toInt(); ++i) {
        const QString name = QStringLiteral("printer%1").arg(i);
        directory.mkpath(name);
        printers.push_back(std::make_unique<PrinterThread>(name, directory.filePath(name),
                                                           arguments.at(3).toInt()));
        printers.back()->start();
    }
    return QCoreApplication::exec();
}
