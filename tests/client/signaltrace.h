// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// All signals of a client, in the order of their emission, as readable lines.

#ifndef SIGNALTRACE_H
#define SIGNALTRACE_H

#include <QObject>
#include <QStringList>

class ZySslEchoClient;

namespace zytest
{

/**
 * Each emission is one line, such as `connected()` or `fileTransProgress(/tmp/a.zydlp, 1000, 200)`;
 * JSON objects stand there as compact text. None of the sixteen signals is left out, so an exact
 * comparison also shows what was not emitted.
 */
class SignalTrace : public QObject
{
    Q_OBJECT

public:
    explicit SignalTrace(ZySslEchoClient &client);

    const QStringList &lines() const { return m_lines; }
    /// The lines of one signal.
    QStringList of(const QString &signalName) const;
    int count(const QString &signalName) const { return int(of(signalName).size()); }
    /// The names of the signals alone.
    QStringList names() const;
    void clear() { m_lines.clear(); }

Q_SIGNALS:
    void grown(const QString &line);

private:
    void add(const QString &name, const QStringList &arguments);

    QStringList m_lines;
};

} // namespace zytest

#endif // SIGNALTRACE_H
