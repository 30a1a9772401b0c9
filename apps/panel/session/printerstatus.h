// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's state as its last status reply told it.

#ifndef PANEL_PRINTERSTATUS_H
#define PANEL_PRINTERSTATUS_H

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>

class QJsonObject;

namespace zypanel
{

/// Print parameters by wire key; the values are the printer's own texts.
using Parameters = QMap<QString, QString>;

struct PrinterStatus {
    enum class State {
        Unknown, ///< no reply yet, or a word that this panel does not know
        Ready,
        Printing,
        Complete,
        Failed,
        Ended,
        Paused, ///< "PRINT_STOP"
        Halting, ///< on the way to a pause or to the end
        Completing,
        TokenRejected,
    };

    State state = State::Unknown;
    QString word; ///< the state as it travelled
    QString filename;
    QString remainingTime; ///< the printer's own text
    QString layerThickness;
    QString resin;
    int layer = 0;
    int layerCount = 0; ///< 0 when the printer names none
    Parameters parameters;

    static PrinterStatus fromReply(const QJsonObject &reply);

    /// A job is on the machine.
    bool hasJob() const;
    bool canPause() const { return state == State::Printing; }
    /// A paused job goes on when it is started again.
    bool canContinue() const { return state == State::Paused; }
    bool canStop() const;

    bool operator==(const PrinterStatus &other) const;
    bool operator!=(const PrinterStatus &other) const { return !(*this == other); }
};

/// The six parameters that a printer takes, in the order in which people read them.
const QStringList &parameterKeys();

} // namespace zypanel

Q_DECLARE_METATYPE(zypanel::PrinterStatus)

#endif // PANEL_PRINTERSTATUS_H
