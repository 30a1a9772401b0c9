// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The messages by which Home Assistant finds a printer.

#ifndef HOMEASSISTANT_H
#define HOMEASSISTANT_H

#include "mqtt/mqttconnection.h"

#include <QVector>

namespace zybridge
{

/// Retained messages that describe the printer's topics: sensors of its state, and buttons.
QVector<Message> homeAssistantMessages(const QString &printer);

} // namespace zybridge

#endif // HOMEASSISTANT_H
