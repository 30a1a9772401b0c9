// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a sliced model says about itself before its layers, and how that is written down.

#include "modelheader.h"

#include <QDataStream>
#include <QIODevice>

namespace zymodel
{

namespace
{

constexpr auto streamVersion = QDataStream::Qt_5_12;

// A line end of each kind and an end-of-file mark, so that a transfer that "converts" text shows.
const char magic[magicSize + 1] = "ZYDLP\r\n\x1a";

// The numbers of the fixed part, in the order of the file.
constexpr quint32 ModelHeader::*const numbers[] = {
    &ModelHeader::layerCount,     &ModelHeader::width,          &ModelHeader::height,
    &ModelHeader::pixelPitch,     &ModelHeader::layerThickness, &ModelHeader::exposure,
    &ModelHeader::bottomExposure, &ModelHeader::bottomLayers,   &ModelHeader::lightDelay,
    &ModelHeader::liftHeight,     &ModelHeader::liftSpeed,
};

QString outOfRange(const char *what, quint32 value, quint32 least, quint32 most)
{
    if (value >= least && value <= most)
        return {};
    return QStringLiteral("%1 %2 is outside %3 to %4")
        .arg(QLatin1String(what))
        .arg(value)
        .arg(least)
        .arg(most);
}

QString fault(const ModelHeader &header, quint32 resinBytes)
{
    struct Limit {
        const char *what;
        quint32 value;
        quint32 least;
        quint32 most;
    };
    const Limit limits[] = {
        {"layer count", header.layerCount, 1, maxLayers},
        {"width", header.width, 1, maxSide},
        {"height", header.height, 1, maxSide},
        {"pixel pitch (nm)", header.pixelPitch, 1, 10'000'000},
        {"layer thickness (nm)", header.layerThickness, 1, 10'000'000},
        {"exposure (ms)", header.exposure, 1, 3'600'000},
        {"bottom exposure (ms)", header.bottomExposure, 1, 3'600'000},
        {"bottom layers", header.bottomLayers, 0, header.layerCount},
        {"light delay (ms)", header.lightDelay, 0, 3'600'000},
        {"lift height (um)", header.liftHeight, 0, 1'000'000},
        {"lift speed (um/min)", header.liftSpeed, 1, 100'000'000},
        {"length of the resin's name", resinBytes, 0, maxResinBytes},
    };
    for (const Limit &limit : limits) {
        QString text = outOfRange(limit.what, limit.value, limit.least, limit.most);
        if (!text.isEmpty())
            return text;
    }
    return {};
}

} // namespace

QByteArray headerBytes(const ModelHeader &header, const QVector<LayerEntry> &layers)
{
    const QByteArray resin = header.resin.toUtf8();
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream.writeRawData(magic, magicSize);
    stream << quint32(formatVersion);
    for (const auto number : numbers)
        stream << header.*number;
    stream << quint32(resin.size());
    stream.writeRawData(resin.constData(), int(resin.size()));
    for (const LayerEntry &layer : layers)
        stream << layer.offset << layer.length << layer.crc;
    return bytes;
}

QString parseFixedHeader(const QByteArray &bytes, ModelHeader &header, int &resinBytes)
{
    if (bytes.left(magicSize) != QByteArray::fromRawData(magic, magicSize))
        return QStringLiteral("no sliced model: the magic number is missing");
    if (bytes.size() < fixedHeaderSize)
        return QStringLiteral("header is cut off after %1 of %2 bytes")
            .arg(bytes.size())
            .arg(fixedHeaderSize);
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    stream.skipRawData(magicSize);
    quint32 version = 0;
    stream >> version;
    if (version != formatVersion)
        return QStringLiteral("format version %1 is not known (%2 is)")
            .arg(version)
            .arg(formatVersion);
    for (const auto number : numbers)
        stream >> header.*number;
    quint32 resin = 0;
    stream >> resin;
    resinBytes = int(qMin<quint32>(resin, maxResinBytes));
    return fault(header, resin);
}

QVector<LayerEntry> parseLayerTable(const QByteArray &bytes, int count)
{
    QVector<LayerEntry> layers(count);
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    for (LayerEntry &layer : layers)
        stream >> layer.offset >> layer.length >> layer.crc;
    return layers;
}

} // namespace zymodel
