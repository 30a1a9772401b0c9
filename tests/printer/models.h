// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sliced models for the tests, good and bad.

#ifndef MODELS_H
#define MODELS_H

#include "modelfiles.h"
#include "modelheader.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// A header for a model of @p layers layers of 16x8 pixels with every other field plausible.
zymodel::ModelHeader smallHeader(int layers);

/// A mask of the small header's size, different for each layer: dark, lit and grey.
QByteArray smallMask(int layer);

/// The bytes of a valid model of @p layers such layers.
QByteArray smallModel(int layers);

/// A file whose CRCs are all right, with whatever codes are given.
QByteArray craftedModel(zymodel::ModelHeader header, const QVector<QByteArray> &codes);

using zytest::readFile;
using zytest::writeFile;

#endif // MODELS_H
