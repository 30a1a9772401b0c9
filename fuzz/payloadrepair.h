// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Makes a damaged payload consistent again, so that the damage is all that is wrong with it.

#ifndef PAYLOADREPAIR_H
#define PAYLOADREPAIR_H

#include <cstddef>
#include <cstdint>

namespace fuzzing
{

/**
 * Gives the payload of @p size bytes at @p data the size prefix and the checksum of what
 * libdeflate, the less strict inflater, reads in it, and returns where it ends now. Left as it is
 * when libdeflate refuses it.
 */
std::size_t repairPayload(std::uint8_t *data, std::size_t size);

} // namespace fuzzing

#endif // PAYLOADREPAIR_H
