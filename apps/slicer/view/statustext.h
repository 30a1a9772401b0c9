// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's status, for people.

#ifndef STATUSTEXT_H
#define STATUSTEXT_H

#include <QJsonObject>
#include <QString>

/// All that the printer reports, one line each.
QString statusBlock(const QString &printer, const QJsonObject &status);
/// "printing demo.zydlp, layer 120 of 400 (30 %), remaining 0:12:30"
QString statusLine(const QJsonObject &status);
/// Layers done of all, 0 to 1; negative when the printer does not say.
double layerFraction(const QJsonObject &status);
/// "0:12:30" for a count of seconds, any other text as it is.
QString remainingText(const QJsonObject &status);

#endif // STATUSTEXT_H
