// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The layer being exposed as a picture, to look at what prints.

#include "layerpreview.h"

#include "replacement.h"

#include <QFileInfo>
#include <QImage>
#include <QSaveFile>

namespace zyprinter
{

namespace
{

QString picturePath(const QString &directory)
{
    return QFileInfo(directory).absoluteFilePath() + QStringLiteral("/layer.png");
}

} // namespace

LayerPreview::LayerPreview(const QString &directory, QObject *parent)
    : QObject(parent), m_path(picturePath(directory))
{
    constexpr int rest = 200; // ms; a picture takes a tenth of it
    m_rest.setInterval(rest);
    m_rest.setSingleShot(true);
    connect(&m_rest, &QTimer::timeout, this, &LayerPreview::writePending);
}

QString LayerPreview::pictureFault(const QString &directory)
{
    const QString fault = zyapp::replacementFault(picturePath(directory));
    return fault.isEmpty()
        ? QString()
        : QStringLiteral("has a layer.png that cannot be replaced (%1)").arg(fault);
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
    const QString fault = write(image);
    m_pending.clear();
    m_rest.start();
    const bool isNew = fault != m_fault;
    m_fault = fault;
    if (isNew && !fault.isEmpty())
        Q_EMIT failed(fault);
}

/// Empty, or why it could not be written.
QString LayerPreview::write(const QImage &image) const
{
    // Again, since it may have come there meanwhile.
    QString fault = zyapp::replacementFault(m_path);
    if (!fault.isEmpty())
        return fault;
    QSaveFile file(m_path);
    const bool isWritten
        = file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") && file.commit();
    return isWritten ? QString() : file.errorString();
}

} // namespace zyprinter
