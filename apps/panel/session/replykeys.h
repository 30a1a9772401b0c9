// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The keys and words of the printer's replies that the client passes on as JSON.

#ifndef PANEL_REPLYKEYS_H
#define PANEL_REPLYKEYS_H

#include <QLatin1String>

namespace zypanel::reply
{

inline const QLatin1String cmd("cmd");
inline const QLatin1String status("status");
inline const QLatin1String version("version");
inline const QLatin1String errorcode("errorcode");
inline const QLatin1String wifistate("wifistate");

inline const QLatin1String startFile("START_FILE");
inline const QLatin1String printPause("PRINT_PAUSE");
inline const QLatin1String printStop("PRINT_STOP");
inline const QLatin1String printParaSet("PRINT_PARA_SET");

} // namespace zypanel::reply

#endif // PANEL_REPLYKEYS_H
