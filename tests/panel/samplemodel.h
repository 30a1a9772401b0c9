// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A valid sliced model, made by zymodel.

#ifndef SAMPLEMODEL_H
#define SAMPLEMODEL_H

#include <QString>

class QTemporaryDir;

/// Writes a small model of @p layers layers into @p directory; an empty path when that failed.
QString sampleModel(const QTemporaryDir &directory, int layers);

#endif // SAMPLEMODEL_H
