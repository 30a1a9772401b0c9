// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a printer's announcement consists of: service type, name and TXT record.

#ifndef SERVICE_H
#define SERVICE_H

#include <QByteArray>
#include <QString>

#include <memory>

#include <avahi-common/strlst.h>

namespace zydiscovery
{

inline constexpr char serviceType[] = "_zyprinter._tcp";

struct FreeText {
    void operator()(AvahiStringList *list) const { avahi_string_list_free(list); }
};
using TextRecord = std::unique_ptr<AvahiStringList, FreeText>;

TextRecord textRecord(bool isEncrypted, bool wantsToken);

/// What the TXT record says; keys that it lacks, or others, are no error.
struct Text {
    QString protocol;
    bool isEncrypted = false;
    bool wantsToken = false;
};
Text readText(AvahiStringList *record);

/// @p name in UTF-8, as much of it as a service's name may hold.
QByteArray serviceName(const QString &name);

} // namespace zydiscovery

#endif // SERVICE_H
