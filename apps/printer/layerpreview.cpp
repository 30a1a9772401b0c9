// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The layer being exposed as a picture, to look at what prints.

#include "layerpreview.h"

#include <QFileInfo>
#include <QImage>
#include <QSaveFile>

LayerPreview::LayerPreview(const QString &directory, QObject *parent)
    : QObject(parent),
      m_path(QFileInfo(directory).absoluteFilePath() + QStringLiteral("/layer.png"))
{
    constexpr int rest = 200; // ms; a picture takes a tenth of it
    m_rest.setInterval(rest);
    m_rest.setSingleShot(true);
    connect(&m_rest, &QTimer::timeout, this, &LayerPreview::writePending);
}

void LayerPreview::show(const QByteArray &mask, const QSize &size)
{
    m_pending = mask;
    m_size = size;
    if (!m_rest.isActive())
        writePending();
}

void LayerPreview::writePending()
{
    if (m_pending.isEmpty())
        return;
    const auto *pixels = reinterpret_cast<const uchar *>(m_pending.constData());
    const QImage image(pixels, m_size.width(), m_size.height(), m_size.width(),
                       QImage::Format_Grayscale8);
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit())
        Q_EMIT failed(file.errorString());
    m_pending.clear();
    m_rest.start();
}
