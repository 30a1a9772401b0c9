// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Writes a seed for each message of the vocabulary: messageseeds DIRECTORY

#include "vocabulary.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

namespace
{

bool write(const QDir &directory, QLatin1String name, const QByteArray &content)
{
    QFile file(directory.filePath(name));
    return directory.mkpath(QStringLiteral(".")) && file.open(QIODevice::WriteOnly)
        && file.write(content) == content.size();
}

QByteArray bytesOf(QLatin1String text)
{
    return {text.data(), text.size()};
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    const QDir seeds(QString::fromLocal8Bit(argv[1]));
    bool isWritten = true;
    for (const zyws::Message &message : zyws::messages) {
        // The host says yes; see the formats at the top of the targets' files.
        isWritten &= write(seeds.filePath(QStringLiteral("servertext")), message.word,
                           'y' + bytesOf(message.request));
        isWritten &= write(seeds.filePath(QStringLiteral("clientreplies")), message.word,
                           bytesOf(message.reply));
    }
    return isWritten ? 0 : 1;
}
