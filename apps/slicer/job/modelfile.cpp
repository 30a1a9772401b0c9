// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The local file to send and its name on the printer: what is checked before anything is sent.

#include "modelfile.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace zyslicer
{

namespace
{

constexpr int longestName = 255; // bytes in UTF-8, on any file system of a printer

Outcome localFileError(const QString &what, const QString &value, const QString &advice)
{
    return {ExitCode::LocalFile, what, value, advice};
}

Outcome checkName(const QString &name)
{
    const QString advice = QStringLiteral("give another name with --as");
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    if (name.isEmpty())
        return localFileError(QStringLiteral("no file name"), QStringLiteral("\"\""), advice);
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        return localFileError(QStringLiteral("path separator in the file name"), name, advice);
    if (name == QLatin1String(".") || name.contains(QLatin1String("..")))
        return localFileError(QStringLiteral("file name leads out of the printer's folder"), name,
                              advice);
    if (std::any_of(name.begin(), name.end(), isControl))
        return localFileError(QStringLiteral("control character in the file name"), name, advice);
    // The printer receives into a file of this name and would lose the model on completion.
    if (name.compare(QLatin1String("wifi_tranfer.tmp"), Qt::CaseInsensitive) == 0)
        return localFileError(QStringLiteral("file name reserved by the printer"), name, advice);
    if (name.toUtf8().size() > longestName)
        return localFileError(QStringLiteral("file name too long"), name, advice);
    return {};
}

} // namespace

Outcome checkModelFile(const ModelFile &file)
{
    const QFileInfo info(file.path);
    if (!info.exists())
        return localFileError(QStringLiteral("no such file"), file.path,
                              QStringLiteral("check the path"));
    if (!info.isFile())
        return localFileError(QStringLiteral("not a regular file"), file.path,
                              QStringLiteral("give a sliced model file"));
    QFile local(file.path);
    if (!local.open(QIODevice::ReadOnly))
        return localFileError(
            QStringLiteral("file not readable"), file.path,
            QStringLiteral("check its permissions (%1)").arg(local.errorString()));
    // The printer would wait for its end for ever.
    if (local.size() == 0)
        return localFileError(QStringLiteral("file is empty"), file.path,
                              QStringLiteral("slice the model again"));
    return checkName(file.name);
}

Outcome checkModelFiles(const QVector<ModelFile> &files)
{
    QHash<QString, QString> paths; // by name
    for (const ModelFile &file : files) {
        if (paths.contains(file.name))
            return {ExitCode::Usage, QStringLiteral("two files of one name"),
                    QStringLiteral("%1 and %2").arg(paths.value(file.name), file.path),
                    QStringLiteral("send one of them by itself, under another name, with --as")};
        paths.insert(file.name, file.path);
    }
    for (const ModelFile &file : files) {
        Outcome outcome = checkModelFile(file);
        if (!outcome.isOk())
            return outcome;
    }
    return {};
}

} // namespace zyslicer
