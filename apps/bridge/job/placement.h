// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One job on one printer: its file, its start, its print.

#ifndef PLACEMENT_H
#define PLACEMENT_H

#include "jobrecord.h"
#include "printer/station.h"

#include <QPointer>

namespace zybridge
{

class Transfer;

/**
 * begin() brings the file, and ends in isThere(). start() asks for the print, and ends in started()
 * or notStarted(). Then the print is watched until over(). leave() deletes the object, also in a
 * slot; the printer is to have no other job before.
 */
class Placement : public QObject
{
    Q_OBJECT

public:
    /// @p station and @p files outlive the placement.
    Placement(Station &station, FileStore &files, QObject *parent = nullptr);

    Station &station() { return m_station; }
    bool isIdle() const { return m_phase == Phase::Idle; }
    bool isBringing() const { return m_phase == Phase::Bringing; }
    bool isAsking() const { return m_phase == Phase::Starting; }

    /// Brings @p file to the printer under @p name.
    void begin(const FileRequest &file, const QString &name);
    /// The printer is asked to print @p storedName. @p before: the file of its last print until
    /// now.
    void start(const QString &storedName, const QString &before);
    /// The printer may have been asked to print it. Its status says whether it was: it names this
    /// file then, and still the one before otherwise; where there was none, that says something
    /// only of a printer that @p hasStayedOn since. Ends in started(), isThere() or over().
    void findOut(const QString &storedName, const QString &before, bool hasStayedOn);
    /// The print runs, as far as is known.
    void watch(const QString &storedName);
    /// Deletes the object, after a file on its way was cancelled.
    void leave();

Q_SIGNALS:
    void isThere(const QString &storedName);
    void started();
    /// Its file cannot be had now.
    void notFetched(const zybridge::Failure &failure);
    /// This printer does not print it. @p isJobSuspect: others may not, either.
    void notStarted(const zybridge::Failure &failure, bool isJobSuspect);
    /// No printer will.
    void refused(const zybridge::Failure &failure);
    void over(zybridge::JobRecord::State state, const QString &text);

private:
    enum class Phase { Idle, Bringing, Starting, FindingOut, Printing };

    void send(const QString &path);
    void onTransferEnded(const Failure &failure, const QString &storedName, bool isFileAtFault);
    void onStartAnswered(const PrinterBridge::Result &result);
    void onStatusHeard();
    void lookWhetherStarted();
    void lookWhetherOver();

    Station &m_station;
    FileStore &m_files;
    Phase m_phase = Phase::Idle;
    QPointer<Transfer> m_transfer;
    QString m_path; ///< of the file here
    QString m_name; ///< that it is to have on the printer
    bool m_isSentAgain = false;
    QString m_storedName;
    QString m_before;
    bool m_mayHaveStarted = false; ///< it was asked before, perhaps
    bool m_hasStayedOn = false; ///< since then
    QElapsedTimer m_sinceFindingOut;
    int m_strangeAnswers = 0; ///< in a row: the printer speaks of another print, or of none
};

} // namespace zybridge

#endif // PLACEMENT_H
