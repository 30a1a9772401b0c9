// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a sliced model says about itself before its layers, and how that is written down.

#ifndef MODELHEADER_H
#define MODELHEADER_H

#include <QByteArray>
#include <QString>
#include <QVector>

namespace zymodel
{

inline constexpr int formatVersion = 1;
inline constexpr int magicSize = 8;
inline constexpr int fixedHeaderSize = 60; ///< bytes up to the resin's name
inline constexpr int tableEntrySize = 16; ///< bytes per layer
inline constexpr int trailerSize = 4; ///< the header's CRC, at the end of the file

inline constexpr int maxLayers = 100000;
inline constexpr int maxSide = 16384; ///< pixels
inline constexpr int maxResinBytes = 255;

/// Where a layer's code lies in the file.
struct LayerEntry {
    quint64 offset = 0; ///< from the start of the file
    quint32 length = 0; ///< bytes
    quint32 crc = 0; ///< CRC-32 of these bytes
};

/// How the model is to be printed. Whole numbers, so that nothing is lost to rounding.
struct ModelHeader {
    quint32 layerCount = 0;
    quint32 width = 0; ///< pixels
    quint32 height = 0; ///< pixels
    quint32 pixelPitch = 0; ///< nm
    quint32 layerThickness = 0; ///< nm
    quint32 exposure = 0; ///< ms
    quint32 bottomExposure = 0; ///< ms
    quint32 bottomLayers = 0; ///< layers that get bottomExposure
    quint32 lightDelay = 0; ///< ms between a movement and the next exposure
    quint32 liftHeight = 0; ///< um
    quint32 liftSpeed = 0; ///< um per minute
    QString resin; ///< at most maxResinBytes of UTF-8

    qint64 pixels() const { return qint64(width) * height; }
};

/// Header and layer table as they stand at the start of the file.
QByteArray headerBytes(const ModelHeader &header, const QVector<LayerEntry> &layers);

/// Why no reader would take a model with this header; empty when it would.
QString headerFault(const ModelHeader &header);

/**
 * Reads the fixed part of a header.
 *
 * @param resinBytes the length of the resin's name that follows it.
 * @return what is wrong, empty when nothing is.
 */
QString parseFixedHeader(const QByteArray &bytes, ModelHeader &header, int &resinBytes);

/// Reads a layer table of @p count entries.
QVector<LayerEntry> parseLayerTable(const QByteArray &bytes, int count);

} // namespace zymodel

#endif // MODELHEADER_H
