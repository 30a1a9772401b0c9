// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The keys and words of the printer's replies that the client passes on as JSON.

#ifndef PANEL_REPLYKEYS_H
#define PANEL_REPLYKEYS_H

#include <QLatin1String>

namespace zypanel::reply
{

inline constexpr QLatin1String cmd{"cmd"};
inline constexpr QLatin1String status{"status"};
inline constexpr QLatin1String version{"version"};
inline constexpr QLatin1String errorcode{"errorcode"};
inline constexpr QLatin1String wifistate{"wifistate"};

inline constexpr QLatin1String startFile{"START_FILE"};
inline constexpr QLatin1String printPause{"PRINT_PAUSE"};
inline constexpr QLatin1String printStop{"PRINT_STOP"};
inline constexpr QLatin1String printParaSet{"PRINT_PARA_SET"};

} // namespace zypanel::reply

#endif // PANEL_REPLYKEYS_H
