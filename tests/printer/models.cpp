// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sliced models for the tests, good and bad.

#include "models.h"

#include "checksum.h"
#include "modelwriter.h"

#include <QBuffer>
#include <QDataStream>
#include <QFile>

using zymodel::LayerEntry;
using zymodel::ModelHeader;

ModelHeader smallHeader(int layers)
{
    ModelHeader header;
    header.layerCount = quint32(layers);
    header.width = 16;
    header.height = 8;
    header.pixelPitch = 50000;
    header.layerThickness = 50000;
    header.exposure = 2500;
    header.bottomExposure = 30000;
    header.bottomLayers = quint32(qMin(2, layers));
    header.lightDelay = 500;
    header.liftHeight = 5000;
    header.liftSpeed = 120000;
    header.resin = QStringLiteral("Grau µ");
    return header;
}

QByteArray smallMask(int layer)
{
    QByteArray mask(16 * 8, '\0');
    const int lit = layer % 100 + 1;
    mask.replace(10, lit, QByteArray(lit, '\xff'));
    mask[9] = char(layer % 254 + 1);
    return mask;
}

QByteArray smallModel(int layers)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    zymodel::ModelWriter writer(&buffer, smallHeader(layers));
    for (int layer = 1; layer <= layers; ++layer)
        writer.addLayer(smallMask(layer));
    writer.finish();
    return buffer.data();
}

QByteArray craftedModel(ModelHeader header, const QVector<QByteArray> &codes)
{
    QVector<LayerEntry> layers(codes.size());
    auto offset = quint64(zymodel::headerBytes(header, layers).size());
    QByteArray data;
    for (int i = 0; i < codes.size(); ++i) {
        layers[i] = {offset, quint32(codes[i].size()), zymodel::checksum(codes[i])};
        offset += quint64(codes[i].size());
        data += codes[i];
    }
    const QByteArray head = zymodel::headerBytes(header, layers);
    QByteArray trailer;
    QDataStream(&trailer, QIODevice::WriteOnly) << zymodel::checksum(head);
    return head + data + trailer;
}
