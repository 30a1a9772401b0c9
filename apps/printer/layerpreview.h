// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The layer being exposed as a picture, to look at what prints.

#ifndef LAYERPREVIEW_H
#define LAYERPREVIEW_H

#include <QByteArray>
#include <QObject>
#include <QSize>
#include <QTimer>

class QImage;

namespace zyprinter
{

/// Keeps "layer.png" in a directory up to date: always a whole picture, at most five a second, the
/// last layer always among them.
class LayerPreview : public QObject
{
    Q_OBJECT

public:
    explicit LayerPreview(const QString &directory, QObject *parent = nullptr);

    /// Why no picture can be put into @p directory because of what has its name there; empty when
    /// one can.
    static QString pictureFault(const QString &directory);

    /// @param mask one byte per pixel of @p size.
    void show(const QByteArray &mask, const QSize &size);

Q_SIGNALS:
    /// The picture could not be written; once for as long as the reason stays the same.
    void failed(const QString &reason);

private:
    void writePending();
    QString write(const QImage &image) const;

    QString m_path;
    QTimer m_rest; ///< between two pictures
    QByteArray m_pending; ///< shown and not yet written; empty when there is none
    QSize m_size;
    QString m_fault; ///< of the last picture
};

} // namespace zyprinter

#endif // LAYERPREVIEW_H
