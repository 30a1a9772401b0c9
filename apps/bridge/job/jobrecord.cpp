// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What all bridges know of a job: zy/jobs/<group>/<job>, and a row of the ledger.

#include "jobrecord.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace zybridge
{

namespace
{

using State = JobRecord::State;

constexpr std::array words{
    "placing", "starting", "printing", "complete", "failed", "stopped", "refused", "doubtful",
};

} // namespace

QJsonObject JobRecord::toJson() const
{
    QJsonObject object{{QStringLiteral("job"), id},
                       {QStringLiteral("state"), QLatin1String(words[std::size_t(state)])},
                       {QStringLiteral("epoch"), epoch},
                       {QStringLiteral("step"), step},
                       {QStringLiteral("bridge"), bridge}};
    const auto insert = [&](const char *key, const QString &value) {
        if (!value.isEmpty())
            object.insert(QLatin1String(key), value);
    };
    insert("printer", printer);
    insert("file", file);
    insert("before", before);
    insert("error", error);
    insert("text", text);
    return object;
}

std::optional<JobRecord> JobRecord::fromJson(const QString &group, const QJsonObject &object)
{
    const auto value = [&](const char *key) { return object.value(QLatin1String(key)).toString(); };
    const QString word = value("state");
    const auto found = std::find_if(words.begin(), words.end(),
                                    [&](const char *each) { return word == QLatin1String(each); });
    JobRecord record;
    record.group = group;
    record.id = value("job");
    record.epoch = object.value(QLatin1String("epoch")).toInt();
    record.step = object.value(QLatin1String("step")).toInt();
    record.bridge = value("bridge");
    record.printer = value("printer");
    record.file = value("file");
    record.before = value("before");
    record.error = value("error");
    record.text = value("text");
    if (found == words.end() || !isJobName(record.id) || record.bridge.isEmpty()
        || record.epoch < 1)
        return std::nullopt;
    record.state = State(found - words.begin());
    return record;
}

bool isJobName(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^[A-Za-z0-9_-]{1,64}$"));
    return pattern.match(text).hasMatch();
}

} // namespace zybridge
