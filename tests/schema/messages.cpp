// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Prints the vocabulary as one JSON object: a sample of each message, and the words of each list.

#include "vocabulary.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace
{

template <typename Words> QJsonArray listed(const Words &words)
{
    QJsonArray list;
    for (const QLatin1String word : words)
        list.append(word);
    return list;
}

} // namespace

int main()
{
    QJsonArray samples;
    for (const zyws::Message &message : zyws::messages)
        samples.append(QJsonObject{{QStringLiteral("request"), message.request},
                                   {QStringLiteral("reply"), message.reply}});
    const QLatin1String results[]
        = {zyws::results::done, zyws::results::failed, zyws::results::tokenError};
    const QJsonObject vocabulary{
        {QStringLiteral("samples"), samples},
        {QStringLiteral("printStart"), listed(zyws::printstart::all)},
        {QStringLiteral("printStates"), listed(zyws::printstates::all)},
        {QStringLiteral("results"), listed(results)},
        {QStringLiteral("parameters"), listed(zyws::keys::parameters)},
    };
    std::puts(QJsonDocument(vocabulary).toJson().constData());
}
