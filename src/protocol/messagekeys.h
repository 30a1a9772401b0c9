// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Every JSON key of the wire protocol, once.

#ifndef MESSAGEKEYS_H
#define MESSAGEKEYS_H

#include <QLatin1String>

namespace zyws::keys
{

/// A constant expression with every compiler, which QLatin1String("…") is not.
template <int N> constexpr QLatin1String literal(const char (&text)[N])
{
    return QLatin1String(text, N - 1);
}

inline constexpr QLatin1String cmd = literal("cmd");
inline constexpr QLatin1String token = literal("token");

// File transfer.
inline constexpr QLatin1String filename = literal("filename");
inline constexpr QLatin1String size = literal("size");
inline constexpr QLatin1String offset = literal("offset");
inline constexpr QLatin1String key = literal("key");
inline constexpr QLatin1String errorcode = literal("errorcode");
inline constexpr QLatin1String compress = literal("compress");
inline constexpr QLatin1String wifistate = literal("wifistate");
inline constexpr QLatin1String received = literal("received");
inline constexpr QLatin1String checkstate = literal("checkstate");

// Print jobs, status, parameters and version.
inline constexpr QLatin1String status = literal("status");
inline constexpr QLatin1String printStatus = literal("printStatus");
inline constexpr QLatin1String sliceLayerCount = literal("sliceLayerCount");
inline constexpr QLatin1String curSliceLayer = literal("curSliceLayer");
inline constexpr QLatin1String printRemainTime = literal("printRemainTime");
inline constexpr QLatin1String initExposure = literal("initExposure");
inline constexpr QLatin1String delayLight = literal("delayLight");
inline constexpr QLatin1String printExposure = literal("printExposure");
inline constexpr QLatin1String printHeight = literal("printHeight");
inline constexpr QLatin1String eleSpeed = literal("eleSpeed");
inline constexpr QLatin1String bottomExposureNum = literal("bottomExposureNum");
inline constexpr QLatin1String layerThickness = literal("layerThickness");
inline constexpr QLatin1String resin = literal("resin");
inline constexpr QLatin1String version = literal("version");

} // namespace zyws::keys

#endif // MESSAGEKEYS_H
