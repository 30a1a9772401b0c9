// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Reads and checks a sliced model, one layer in memory at a time.

#include "modelreader.h"

#include "checksum.h"
#include "runlength.h"

#include <QFileInfo>
#include <QtEndian>

namespace zymodel
{

namespace
{

QString layerFault(int layer, const QString &what)
{
    return QStringLiteral("layer %1: %2").arg(layer).arg(what);
}

QString mismatch(quint32 stated, quint32 computed)
{
    return QStringLiteral("CRC mismatch (stated %1, computed %2)")
        .arg(stated, 8, 16, QLatin1Char('0'))
        .arg(computed, 8, 16, QLatin1Char('0'));
}

QString cutOff(const QString &what, qint64 wanted, qint64 had)
{
    return QStringLiteral("file is cut off in %1: %2 bytes wanted, %3 there")
        .arg(what)
        .arg(wanted)
        .arg(had);
}

} // namespace

bool ModelReader::fail(const QString &reason)
{
    m_error = reason;
    return false;
}

bool ModelReader::open(const QString &path)
{
    m_file.close();
    m_file.setFileName(path);
    // Opening a FIFO would wait for a writer.
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return fail(QStringLiteral("it is no regular file"));
    // Unbuffered: whole layers are read at once, and as they are at that time.
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return fail(m_file.errorString());
    return readHeader();
}

bool ModelReader::readHeader()
{
    int resinBytes = 0;
    const QString fault = parseFixedHeader(m_file.read(fixedHeaderSize), m_header, resinBytes);
    return fault.isEmpty() ? readTable(resinBytes) : fail(fault);
}

bool ModelReader::readTable(int resinBytes)
{
    const QByteArray resin = m_file.read(resinBytes);
    const qint64 tableSize = qint64(m_header.layerCount) * tableEntrySize;
    const QByteArray table = m_file.read(tableSize);
    if (resin.size() + table.size() != resinBytes + tableSize)
        return fail(cutOff(QStringLiteral("the layer table"), resinBytes + tableSize,
                           resin.size() + table.size()));
    const qint64 dataStart = m_file.pos();
    m_header.resin = QString::fromUtf8(resin);
    m_layers = parseLayerTable(table, layerCount());

    if (!m_file.seek(m_file.size() - trailerSize))
        return fail(m_file.errorString());
    const QByteArray trailer = m_file.read(trailerSize);
    if (m_file.size() < dataStart + trailerSize)
        return fail(cutOff(QStringLiteral("the layers"), dataStart + trailerSize, m_file.size()));
    m_file.seek(0);
    const quint32 computed = checksum(m_file.read(dataStart));
    const auto stated = qFromBigEndian<quint32>(trailer.constData());
    // The places first: of a file that is cut off, the last bytes are no CRC at all.
    if (!checkPlaces(dataStart))
        return false;
    return stated == computed || fail(QStringLiteral("header: ") + mismatch(stated, computed));
}

/// Layers follow one another without a gap, from the end of the table to the trailer.
bool ModelReader::checkPlaces(qint64 dataStart)
{
    auto expected = quint64(dataStart);
    for (int layer = 1; layer <= layerCount(); ++layer) {
        const LayerEntry &entry = m_layers.at(layer - 1);
        if (entry.offset != expected)
            return fail(layerFault(
                layer,
                QStringLiteral("starts at byte %1 instead of %2").arg(entry.offset).arg(expected)));
        // A run of one pixel takes two bytes; a longer code would only cost memory.
        if (entry.length > 2 * m_header.pixels())
            return fail(layerFault(layer,
                                   QStringLiteral("%1 bytes are more than %2 pixels take")
                                       .arg(entry.length)
                                       .arg(m_header.pixels())));
        expected += entry.length;
    }
    const qint64 size = qint64(expected) + trailerSize;
    if (m_file.size() < size)
        return fail(cutOff(QStringLiteral("the layers"), size, m_file.size()));
    if (m_file.size() > size)
        return fail(
            QStringLiteral("%1 bytes too many after the last layer").arg(m_file.size() - size));
    return true;
}

bool ModelReader::readCode(int layer, QByteArray &code)
{
    if (layer < 1 || layer > layerCount())
        return fail(layerFault(layer, QStringLiteral("does not exist")));
    const LayerEntry &entry = m_layers.at(layer - 1);
    if (!m_file.seek(qint64(entry.offset)))
        return fail(layerFault(layer, m_file.errorString()));
    code = m_file.read(entry.length);
    const quint32 computed = checksum(code);
    return computed == entry.crc || fail(layerFault(layer, mismatch(entry.crc, computed)));
}

bool ModelReader::failRuns(int layer)
{
    return fail(
        layerFault(layer, QStringLiteral("its runs do not make %1 pixels").arg(m_header.pixels())));
}

bool ModelReader::checkLayer(int layer)
{
    QByteArray code;
    if (!readCode(layer, code))
        return false;
    return isMaskCode(code, m_header.pixels()) || failRuns(layer);
}

bool ModelReader::checkAllLayers()
{
    for (int layer = 1; layer <= layerCount(); ++layer) {
        if (!checkLayer(layer))
            return false;
    }
    return true;
}

bool ModelReader::readLayer(int layer, QByteArray &mask)
{
    QByteArray code;
    if (!readCode(layer, code))
        return false;
    mask.resize(int(m_header.pixels()));
    return decodeMask(code, mask) || failRuns(layer);
}

} // namespace zymodel
