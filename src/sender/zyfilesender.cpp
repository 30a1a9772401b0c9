// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Brings one file to one printer: the half that lives in the application's thread.

#include "zyfilesender.h"

#include "filetransfer.h"
#include "sendresultdata.h"
#include "sendthread.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

using zyws::NameFault;
using zyws::SendThread;
using zyws::SendWorker;

class ZyFileSender::Private
{
public:
    zyws::SendJob job;
    SendThread *thread = nullptr; ///< from start() to finished()
    bool isStarted = false;

    void end() { std::exchange(thread, nullptr)->abandon(); }
};

namespace
{

QString nameOnPrinter(const QString &filePath, const QString &name)
{
    return name.isNull() ? QFileInfo(filePath).fileName() : name;
}

ZySendResult::FileFault fileFault(const QString &path)
{
    using FileFault = ZySendResult::FileFault;
    const QFileInfo info(path);
    if (!info.exists())
        return FileFault::Missing;
    if (!info.isFile())
        return FileFault::NotAFile;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return FileFault::Unreadable;
    return file.size() > 0 ? FileFault::None : FileFault::Empty;
}

} // namespace

ZyFileSender::ZyFileSender(const QUrl &printer, const QString &filePath, const QString &name,
                           QObject *parent)
    : QObject(parent), d(new Private{{printer, filePath, nameOnPrinter(filePath, name), {}}})
{
    // Both travel between the two threads.
    qRegisterMetaType<ZySendResult>();
    qRegisterMetaType<ZySendResult::Interruption>();
}

ZyFileSender::~ZyFileSender()
{
    if (d->thread)
        d->end();
}

void ZyFileSender::setOptions(const ZySendOptions &options)
{
    d->job.options = options;
}

ZySendOptions ZyFileSender::options() const
{
    return d->job.options;
}

void ZyFileSender::start()
{
    if (std::exchange(d->isStarted, true))
        return;
    d->thread = new SendThread(d->job);
    const SendWorker *worker = &d->thread->worker();
    connect(worker, &SendWorker::offered, this, &ZyFileSender::offered);
    connect(worker, &SendWorker::resumed, this, &ZyFileSender::resumed);
    connect(worker, &SendWorker::restarted, this, &ZyFileSender::restarted);
    connect(worker, &SendWorker::progress, this, &ZyFileSender::progress);
    connect(worker, &SendWorker::retrying, this, &ZyFileSender::retrying);
    connect(worker, &SendWorker::reading, this, &ZyFileSender::reading);
    connect(worker, &SendWorker::finished, this, [this](const ZySendResult &result) {
        d->end();
        Q_EMIT finished(result);
    });
    d->thread->start();
    if (!d->thread->isRunning() && !d->thread->isFinished())
        QMetaObject::invokeMethod(
            this,
            [this] {
                d->end();
                ZySendResult::Data data;
                data.ending = ZySendResult::Ending::NoConnection;
                data.connectionFault = ZySendResult::ConnectionFault::Network;
                data.detail = QStringLiteral("the system has no thread left");
                data.name = d->job.name;
                data.printer = d->job.printer.toString();
                Q_EMIT finished(ZySendResult(data));
            },
            Qt::QueuedConnection);
}

void ZyFileSender::cancel()
{
    if (d->thread)
        QMetaObject::invokeMethod(&d->thread->worker(), &SendWorker::cancel, Qt::QueuedConnection);
}

void ZyFileSender::leave()
{
    if (d->thread)
        QMetaObject::invokeMethod(&d->thread->worker(), &SendWorker::leave, Qt::QueuedConnection);
}

bool ZyFileSender::canCancel() const
{
    return d->thread && d->thread->worker().canCancel();
}

ZySendResult ZyFileSender::checkFile(const QString &filePath, const QString &name)
{
    ZySendResult::Data data;
    data.ending = ZySendResult::Ending::LocalFile;
    data.name = filePath;
    data.fileFault = fileFault(filePath);
    if (data.fileFault == ZySendResult::FileFault::None) {
        data.name = nameOnPrinter(filePath, name);
        data.fileFault = checkName(data.name);
    }
    return data.fileFault == ZySendResult::FileFault::None ? ZySendResult() : ZySendResult(data);
}

ZySendResult::FileFault ZyFileSender::checkName(const QString &name)
{
    using FileFault = ZySendResult::FileFault;
    switch (zyws::nameFault(name)) {
    case NameFault::None:
        break;
    case NameFault::Empty:
        return FileFault::NameEmpty;
    case NameFault::Separator:
        return FileFault::NameHasSeparator;
    case NameFault::Directory:
        return FileFault::NameIsDirectory;
    case NameFault::ControlCharacter:
        return FileFault::NameHasControlCharacter;
    case NameFault::Reserved:
        return FileFault::NameReserved;
    case NameFault::TooLong:
        return FileFault::NameTooLong;
    }
    return FileFault::None;
}
