// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A valid sliced model, made by zymodel.

#include "samplemodel.h"

#include <QProcess>
#include <QTemporaryDir>

QString sampleModel(const QTemporaryDir &directory, int layers)
{
    const QString path = directory.filePath(QStringLiteral("sphere.zydlp"));
    const int result = QProcess::execute(QStringLiteral(ZYMODEL),
                                         {QStringLiteral("--out"), path, QStringLiteral("--layers"),
                                          QString::number(layers), QStringLiteral("--resolution"),
                                          QStringLiteral("144x256")});
    return result == 0 ? path : QString();
}
