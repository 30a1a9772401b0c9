// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Writes a sliced model layer by layer, so that a model never has to fit into memory.

#include "modelwriter.h"

#include "checksum.h"
#include "runlength.h"

#include <QDataStream>
#include <QIODevice>

#include <utility>

namespace zymodel
{

ModelWriter::ModelWriter(QIODevice *device, ModelHeader header)
    : m_device(device), m_header(std::move(header)),
      m_position(
          quint64(headerBytes(m_header, QVector<LayerEntry>(int(m_header.layerCount))).size()))
{
    m_layers.reserve(int(m_header.layerCount));
    m_device->seek(qint64(m_position));
}

bool ModelWriter::write(const QByteArray &bytes)
{
    return m_device->write(bytes) == bytes.size();
}

bool ModelWriter::addLayer(const QByteArray &mask)
{
    if (m_layers.size() == int(m_header.layerCount))
        return false;
    const QByteArray code = encodeMask(mask);
    m_layers.append({m_position, quint32(code.size()), checksum(code)});
    m_position += quint64(code.size());
    return write(code);
}

bool ModelWriter::finish()
{
    if (m_layers.size() != int(m_header.layerCount)
        || m_header.resin.toUtf8().size() > maxResinBytes)
        return false;
    const QByteArray header = headerBytes(m_header, m_layers);
    QByteArray trailer;
    QDataStream(&trailer, QIODevice::WriteOnly) << checksum(header);
    return write(trailer) && m_device->seek(0) && write(header);
}

} // namespace zymodel
