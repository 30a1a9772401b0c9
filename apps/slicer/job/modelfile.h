// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The local file to send and its name on the printer: what is checked before anything is sent.

#ifndef MODELFILE_H
#define MODELFILE_H

#include "outcome.h"
#include "request.h"

namespace zyslicer
{

/// Ok, or why the file cannot be sent.
Outcome checkModelFile(const ModelFile &file);
/// The same for all of them; two must not have one name, the second would replace the first.
Outcome checkModelFiles(const QVector<ModelFile> &files);

} // namespace zyslicer

#endif // MODELFILE_H
