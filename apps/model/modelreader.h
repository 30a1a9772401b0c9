// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Reads and checks a sliced model, one layer in memory at a time.

#ifndef MODELREADER_H
#define MODELREADER_H

#include "modelheader.h"

#include <QFile>

namespace zymodel
{

/**
 * A sliced model on disk. The file stays open: on Unix it can be read to its end even when it is
 * replaced or deleted meanwhile.
 *
 * Every operation that fails leaves its reason in error(), for example
 * "layer 17: CRC mismatch (table says 1f00c0de, data gives 00000000)". Layers count from 1.
 */
class ModelReader
{
public:
    /// Opens @p path and checks header, table and sizes, but no layer's data.
    bool open(const QString &path);
    const QString &error() const { return m_error; }

    const ModelHeader &header() const { return m_header; }
    int layerCount() const { return int(m_header.layerCount); }
    qint64 fileSize() const { return m_file.size(); }

    /// Checks a layer's CRC and code.
    bool checkLayer(int layer);
    /// Checks every layer.
    bool checkAllLayers();
    /// Decodes a layer into @p mask, one byte per pixel, after checking it.
    bool readLayer(int layer, QByteArray &mask);

private:
    bool fail(const QString &reason);
    bool failRuns(int layer);
    bool readHeader();
    bool readTable(int resinBytes);
    bool checkPlaces(qint64 dataStart);
    bool readCode(int layer, QByteArray &code);

    QFile m_file;
    ModelHeader m_header;
    QVector<LayerEntry> m_layers;
    QString m_error;
};

} // namespace zymodel

#endif // MODELREADER_H
