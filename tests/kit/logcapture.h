// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Records the log lines written while it lives.

#ifndef LOGCAPTURE_H
#define LOGCAPTURE_H

#include <QString>
#include <QStringList>
#include <QVector>
#include <QtGlobal>

namespace zytest
{

/// Replaces the message handler while it lives; every message is passed on to the one before.
class LogCapture
{
public:
    struct Line {
        QtMsgType type;
        QString category;
        QString text;
    };

    LogCapture();
    ~LogCapture();

    const QVector<Line> &lines() const { return m_lines; }
    /// The texts of every category that starts with @p categoryPrefix, in order.
    QStringList texts(const QString &categoryPrefix = {}) const;
    void clear() { m_lines.clear(); }

private:
    Q_DISABLE_COPY(LogCapture)
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text);

    QVector<Line> m_lines;
    QtMessageHandler m_previousHandler;
    LogCapture *m_outer;
};

} // namespace zytest

#endif // LOGCAPTURE_H
