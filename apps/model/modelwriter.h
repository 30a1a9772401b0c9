// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Writes a sliced model layer by layer, so that a model never has to fit into memory.

#ifndef MODELWRITER_H
#define MODELWRITER_H

#include "modelheader.h"

class QIODevice;

namespace zymodel
{

class ModelWriter
{
public:
    /// @param device open for writing, seekable, not owned. @param header with the final
    /// layerCount.
    ModelWriter(QIODevice *device, ModelHeader header);

    /// Appends a layer; @p mask has one byte per pixel: 0 dark, 255 fully lit. False when it could
    /// not be written.
    bool addLayer(const QByteArray &mask);
    /// Completes the file after the last layer. False when it could not be written or when layers
    /// are missing or the resin's name is too long.
    bool finish();

private:
    bool write(const QByteArray &bytes);

    QIODevice *m_device;
    ModelHeader m_header;
    QVector<LayerEntry> m_layers;
    quint64 m_position;
};

} // namespace zymodel

#endif // MODELWRITER_H
