// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Records the log lines written while it lives.

#include "logcapture.h"

namespace zytest
{

namespace
{
LogCapture *innermost = nullptr;
}

LogCapture::LogCapture() : m_outer(innermost)
{
    innermost = this;
    m_previousHandler = qInstallMessageHandler(record);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previousHandler);
    innermost = m_outer;
}

QStringList LogCapture::texts(const QString &categoryPrefix) const
{
    QStringList texts;
    for (const Line &line : m_lines) {
        if (line.category.startsWith(categoryPrefix))
            texts.append(line.text);
    }
    return texts;
}

void LogCapture::record(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    // The handler before may be this very function, when captures nest.
    LogCapture *capture = innermost;
    capture->m_lines.append({type, QString::fromUtf8(context.category), text});
    innermost = capture->m_outer;
    if (capture->m_previousHandler)
        capture->m_previousHandler(type, context, text);
    innermost = capture;
}

} // namespace zytest
