// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One job on one printer: its file, its start, its print.

#include "placement.h"

#include "printer/transfer.h"

#include <utility>

namespace zybridge
{

using zysession::Exchange;
using State = zysession::PrinterStatus::State;

namespace
{

// A status on the way when the print began may still speak of the time before.
constexpr int strangeAnswersLimit = 3;
constexpr qint64 longestCheck = 120000; // ms

} // namespace

Placement::Placement(Station &station, FileStore &files, QObject *parent)
    : QObject(parent), m_station(station), m_files(files)
{
    connect(&station.printer(), &PrinterBridge::statusHeard, this, &Placement::onStatusHeard);
    connect(&station.printer(), &PrinterBridge::onlineChanged, this,
            [this] { m_hasStayedOn = m_hasStayedOn && m_station.printer().isOnline(); });
}

void Placement::begin(const FileRequest &file, const QString &name)
{
    m_phase = Phase::Bringing;
    m_name = name;
    m_files.provide(file, [self = QPointer<Placement>(this)](const FileStore::Answer &found) {
        if (!self || !self->isBringing())
            return;
        const Failure failure{found.error, found.text};
        if (!found.path.isEmpty())
            self->send(found.path);
        else if (found.isPassing)
            Q_EMIT self->notFetched(failure);
        else
            Q_EMIT self->refused(failure);
    });
}

void Placement::send(const QString &path)
{
    m_path = path;
    m_transfer
        = new Transfer(m_station.printer().printer(), path, m_name, m_station.topics(), this);
    connect(m_transfer, &Transfer::ended, this, &Placement::onTransferEnded);
    m_transfer->start();
}

void Placement::leave()
{
    m_phase = Phase::Idle;
    if (!m_transfer) {
        deleteLater();
        return;
    }
    m_transfer->disconnect(this);
    connect(m_transfer, &Transfer::ended, this, &QObject::deleteLater);
    m_transfer->cancel();
}

void Placement::onTransferEnded(const Failure &failure, const QString &storedName,
                                bool isFileAtFault)
{
    m_transfer->deleteLater();
    m_transfer.clear();
    if (failure.isNone() && storedName != m_name && !std::exchange(m_isSentAgain, true)) {
        // The printer had the beginning of another job with the same file, and went on with it
        // under that name. It has nothing to go on with now.
        send(m_path);
        return;
    }
    m_phase = Phase::Idle;
    if (failure.isNone())
        Q_EMIT isThere(storedName);
    else if (isFileAtFault)
        Q_EMIT refused(failure);
    else
        Q_EMIT notStarted(failure, failure.word == QLatin1String("refused"));
}

void Placement::start(const QString &storedName, const QString &before)
{
    m_storedName = storedName;
    m_before = before;
    if (!m_mayHaveStarted && !m_station.printer().isOnline()) {
        // It cannot be asked, so there will be nothing to find out.
        Q_EMIT notStarted({QStringLiteral("offline"), QStringLiteral("the printer has gone")},
                          false);
        return;
    }
    m_phase = Phase::Starting;
    m_station.printer().ask(
        {PrinterBridge::Command::Kind::Print, m_storedName, {}},
        [self = QPointer<Placement>(this)](const PrinterBridge::Result &result) {
            if (self)
                self->onStartAnswered(result);
        });
}

void Placement::onStartAnswered(const PrinterBridge::Result &result)
{
    using Ending = Exchange::Ending;
    const bool isBusy = result.ending == Ending::Busy;
    if (result.ending == Ending::Done) {
        watch(m_storedName);
        Q_EMIT started();
    } else if (result.ending == Ending::NoAnswer || result.ending == Ending::ConnectionLost
               || (m_mayHaveStarted && isBusy)) {
        // Busy with the file itself, perhaps, since the first time.
        findOut(m_storedName, m_before, m_hasStayedOn && isBusy);
    } else {
        m_phase = Phase::Idle;
        Q_EMIT notStarted(failureOf(result), !isBusy);
    }
}

void Placement::findOut(const QString &storedName, const QString &before, bool hasStayedOn)
{
    m_hasStayedOn = hasStayedOn;
    m_storedName = storedName;
    m_before = before;
    m_strangeAnswers = 0;
    m_mayHaveStarted = true;
    m_sinceFindingOut.start();
    m_phase = Phase::FindingOut;
}

void Placement::watch(const QString &storedName)
{
    m_storedName = storedName;
    m_strangeAnswers = 0;
    m_phase = Phase::Printing;
}

void Placement::onStatusHeard()
{
    // Such an answer says nothing of any print.
    if (m_station.printer().status().state == State::TokenRejected)
        return;
    if (m_phase == Phase::FindingOut)
        lookWhetherStarted();
    else if (m_phase == Phase::Printing)
        lookWhetherOver();
}

void Placement::lookWhetherStarted()
{
    const zysession::PrinterStatus &status = m_station.printer().status();
    // A job of another group may have had the same name.
    const bool wasLast = m_before == m_storedName;
    if (status.filename == m_storedName && status.state != State::Ready
        && (status.hasJob() || !wasLast)) {
        watch(m_storedName);
        Q_EMIT started();
        return;
    }
    if (++m_strangeAnswers < strangeAnswersLimit)
        return;
    // One that has been switched on since names no file, whatever it has begun to print. One that
    // checks the file names none yet, either: asked once more, it says that it is busy.
    if (status.filename == m_before && (!m_before.isEmpty() || m_hasStayedOn) && !wasLast) {
        // Not at once: another bridge may have claimed the job meanwhile.
        m_phase = Phase::Idle;
        Q_EMIT isThere(m_storedName);
    } else if (!status.filename.isEmpty() && status.filename != m_storedName) {
        Q_EMIT over(JobRecord::State::Doubtful,
                    QStringLiteral("the printer speaks of %1 now").arg(status.filename));
    } else if (m_sinceFindingOut.hasExpired(longestCheck)) {
        // One that checks the file says nothing of it yet, but not for so long.
        Q_EMIT over(JobRecord::State::Doubtful,
                    QStringLiteral("the printer does not say whether it has begun to print it"));
    }
}

void Placement::lookWhetherOver()
{
    const zysession::PrinterStatus &status = m_station.printer().status();
    if (status.filename != m_storedName || status.state == State::Ready) {
        if (++m_strangeAnswers >= strangeAnswersLimit)
            Q_EMIT over(JobRecord::State::Failed,
                        QStringLiteral("the printer does not know of the print any more"));
        return;
    }
    m_strangeAnswers = 0;
    if (status.state == State::Complete)
        Q_EMIT over(JobRecord::State::Complete, {});
    else if (status.state == State::Failed)
        Q_EMIT over(JobRecord::State::Failed, QStringLiteral("the print failed"));
    else if (status.state == State::Ended)
        Q_EMIT over(JobRecord::State::Stopped, QStringLiteral("the print was stopped"));
}

} // namespace zybridge
