// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Every JSON key of the wire protocol, once.

#ifndef MESSAGEKEYS_H
#define MESSAGEKEYS_H

#include <QLatin1String>

namespace zyws::keys
{

inline constexpr QLatin1String cmd{"cmd"};
inline constexpr QLatin1String token{"token"};

// File transfer.
inline constexpr QLatin1String filename{"filename"};
inline constexpr QLatin1String size{"size"};
inline constexpr QLatin1String offset{"offset"};
inline constexpr QLatin1String key{"key"};
inline constexpr QLatin1String errorcode{"errorcode"};
inline constexpr QLatin1String compress{"compress"};
inline constexpr QLatin1String wifistate{"wifistate"};
inline constexpr QLatin1String received{"received"};
inline constexpr QLatin1String checkstate{"checkstate"};

// Print jobs, status, parameters and version.
inline constexpr QLatin1String status{"status"};
inline constexpr QLatin1String printStatus{"printStatus"};
inline constexpr QLatin1String sliceLayerCount{"sliceLayerCount"};
inline constexpr QLatin1String curSliceLayer{"curSliceLayer"};
inline constexpr QLatin1String printRemainTime{"printRemainTime"};
inline constexpr QLatin1String initExposure{"initExposure"};
inline constexpr QLatin1String delayLight{"delayLight"};
inline constexpr QLatin1String printExposure{"printExposure"};
inline constexpr QLatin1String printHeight{"printHeight"};
inline constexpr QLatin1String eleSpeed{"eleSpeed"};
inline constexpr QLatin1String bottomExposureNum{"bottomExposureNum"};
inline constexpr QLatin1String layerThickness{"layerThickness"};
inline constexpr QLatin1String resin{"resin"};
inline constexpr QLatin1String version{"version"};

} // namespace zyws::keys

#endif // MESSAGEKEYS_H
