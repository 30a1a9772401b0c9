// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a printer's announcement consists of: service type, name and TXT record.

#include "service.h"

#include <avahi-common/domain.h>
#include <avahi-common/malloc.h>

namespace zydiscovery
{

namespace
{

constexpr char layoutKey[] = "txtvers"; // of the record itself
constexpr char protocolKey[] = "proto"; // what VERSION_CHECK answers
constexpr char tlsKey[] = "tls";
constexpr char tokenKey[] = "token";

QByteArray value(AvahiStringList *record, const char *key)
{
    AvahiStringList *entry = avahi_string_list_find(record, key);
    char *text = nullptr;
    size_t size = 0;
    if (entry == nullptr || avahi_string_list_get_pair(entry, nullptr, &text, &size) != 0)
        return {};
    QByteArray copy(text, int(size)); // nothing for a key without a value
    avahi_free(text);
    return copy;
}

} // namespace

TextRecord textRecord(bool isEncrypted, bool wantsToken)
{
    AvahiStringList *record = nullptr;
    const auto add = [&](const char *key, const char *text) {
        record = avahi_string_list_add_pair(record, key, text);
    };
    // Each is put before the others, and "txtvers" belongs first.
    add(tokenKey, wantsToken ? "1" : "0");
    add(tlsKey, isEncrypted ? "1" : "0");
    add(protocolKey, "1");
    add(layoutKey, "1");
    return TextRecord(record);
}

Text readText(AvahiStringList *record)
{
    return {QString::fromUtf8(value(record, protocolKey)), value(record, tlsKey) == "1",
            value(record, tokenKey) == "1"};
}

QByteArray serviceName(const QString &name)
{
    constexpr int longest = AVAHI_LABEL_MAX - 1;
    QString shortened = name;
    while (shortened.toUtf8().size() > longest)
        shortened.chop(
            shortened.size() > 1 && shortened.at(shortened.size() - 1).isLowSurrogate() ? 2 : 1);
    return shortened.toUtf8();
}

} // namespace zydiscovery
