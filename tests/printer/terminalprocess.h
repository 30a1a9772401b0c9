// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A zyprinter on a terminal of its own, whose screen the test reads.

#ifndef TERMINALPROCESS_H
#define TERMINALPROCESS_H

#include "terminal.h"

#include <QTemporaryDir>
#include <QUrl>

class TerminalProcess : public zytest::Terminal
{
public:
    /// Starts it; false when it does not say where it listens.
    bool start(const QStringList &arguments, const QSize &size, const char *terminalType = "xterm");
    QUrl url() const { return m_url; }
    QString path(const QString &name) const { return m_dir.filePath(name); }

    /// The lines of the last whole screen.
    QStringList screen();
    /// Waits until a line of the screen holds @p text.
    bool shows(const QString &text);

private:
    QTemporaryDir m_dir;
    QUrl m_url;
};

#endif // TERMINALPROCESS_H
