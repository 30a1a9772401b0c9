// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a printer is doing, as its last status reply says.

#ifndef PRINTERSTATUS_H
#define PRINTERSTATUS_H

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>

class QJsonObject;

namespace zysession
{

/// Print parameters by wire key; the values are the printer's own texts.
using Parameters = QMap<QString, QString>;

/// The six parameters that a printer takes.
const QStringList &parameterKeys();

/// Whether both texts mean the same: numbers are compared as numbers, since a printer may write
/// "30" as "30.0".
bool isSameValue(const QString &left, const QString &right);

struct PrinterStatus {
    enum class State {
        Unknown, ///< no reply yet, or a word that nobody knows
        Ready,
        Printing,
        Complete,
        Failed,
        Ended, ///< stopped
        Paused, ///< "PRINT_STOP"
        Halting, ///< on the way to a pause or to the end
        Completing, ///< the last layer is done, the plate is on its way up
        TokenRejected, ///< the printer says nothing else then
    };

    State state = State::Unknown;
    QString word; ///< the state as it travelled
    QString filename; ///< of the print
    QString remainingTime; ///< the printer's own text
    QString layerThickness;
    QString resin;
    int layer = 0; ///< 0 to layerCount, unless the printer says otherwise
    int layerCount = 0; ///< 0 when the printer names none
    Parameters parameters; ///< all six

    static PrinterStatus fromReply(const QJsonObject &reply);

    /// A print is on the machine: it runs, rests or is about to end.
    bool hasJob() const;
    bool canPause() const { return state == State::Printing; }
    /// A paused print goes on when it is started again.
    bool canContinue() const { return state == State::Paused; }
    bool canStop() const;
    /// Layers done of all, 0 to 1; negative when the printer does not say.
    double layerFraction() const;
    /// -1 when the printer's text is no count of seconds.
    qint64 remainingSeconds() const;

    /// The same for a reader: numbers are compared as numbers.
    bool operator==(const PrinterStatus &other) const;
    bool operator!=(const PrinterStatus &other) const { return !(*this == other); }
};

} // namespace zysession

Q_DECLARE_METATYPE(zysession::PrinterStatus)

#endif // PRINTERSTATUS_H
