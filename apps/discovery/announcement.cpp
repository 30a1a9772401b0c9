// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's announcement by DNS-SD, kept up as long as the object lives.

#include "announcement.h"

#include "daemon.h"
#include "service.h"

#include <QNetworkInterface>

#include <utility>

#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>

namespace zydiscovery
{

namespace
{

struct FreeGroup {
    void operator()(AvahiEntryGroup *group) const { avahi_entry_group_free(group); }
};

AvahiProtocol protocolOf(const QHostAddress &address)
{
    switch (address.protocol()) {
    case QAbstractSocket::IPv4Protocol:
        return AVAHI_PROTO_INET;
    case QAbstractSocket::IPv6Protocol:
        return AVAHI_PROTO_INET6;
    default:
        return AVAHI_PROTO_UNSPEC;
    }
}

/// That of the interface with this address; of no single one where it listens on all.
AvahiIfIndex interfaceOf(const QHostAddress &address)
{
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &each : interfaces) {
        const QList<QNetworkAddressEntry> entries = each.addressEntries();
        for (const QNetworkAddressEntry &entry : entries) {
            if (entry.ip().isEqual(address, QHostAddress::TolerantConversion))
                return each.index();
        }
    }
    return AVAHI_IF_UNSPEC;
}

} // namespace

class Announcement::Private
{
public:
    Private(Announcement *owner, const Printer &printer);

    void publish();
    void fail(const QString &why);
    void onGroupState(AvahiEntryGroup *group);
    void rename();
    int add();

    Announcement *q;
    const Printer printer;
    QByteArray name;
    QString fault; ///< the last one that was said
    Daemon daemon;
    std::unique_ptr<AvahiEntryGroup, FreeGroup> group; // before the daemon's client
};

Announcement::Private::Private(Announcement *owner, const Printer &wanted)
    : q(owner), printer(wanted), name(serviceName(wanted.name))
{
    connect(&daemon, &Daemon::running, q, [this] { publish(); });
    connect(&daemon, &Daemon::lost, q, [this](const QString &why) { fail(why); });
}

/// Until the daemon runs, or runs again.
void Announcement::Private::fail(const QString &why)
{
    group.reset();
    if (std::exchange(fault, why) != why) // it is tried again and again
        Q_EMIT q->failed(why);
}

int Announcement::Private::add()
{
    const TextRecord record = textRecord(printer.isEncrypted, printer.wantsToken);
    return avahi_entry_group_add_service_strlst(group.get(), interfaceOf(printer.address),
                                                protocolOf(printer.address), AvahiPublishFlags(0),
                                                name.constData(), serviceType, nullptr, nullptr,
                                                printer.port, record.get());
}

void Announcement::Private::publish()
{
    const auto onState = [](AvahiEntryGroup *changed, AvahiEntryGroupState, void *self) {
        // Some calls come from inside the calls below.
        auto *own = static_cast<Private *>(self);
        QMetaObject::invokeMethod(
            own->q, [own, changed] { own->onGroupState(changed); }, Qt::QueuedConnection);
    };
    group.reset(avahi_entry_group_new(daemon.client(), onState, this));
    int error = group ? add() : avahi_client_errno(daemon.client());
    // Another printer of this host has the name.
    while (error == AVAHI_ERR_COLLISION) {
        rename();
        error = add();
    }
    if (error == AVAHI_OK)
        error = avahi_entry_group_commit(group.get());
    if (error != AVAHI_OK)
        daemon.giveUp(daemon.errorText());
}

void Announcement::Private::onGroupState(AvahiEntryGroup *changed)
{
    if (changed != group.get())
        return;
    switch (avahi_entry_group_get_state(changed)) {
    case AVAHI_ENTRY_GROUP_ESTABLISHED:
        fault.clear();
        Q_EMIT q->announced(QString::fromUtf8(name));
        break;
    case AVAHI_ENTRY_GROUP_COLLISION: // with a printer of another host
        rename();
        publish();
        break;
    case AVAHI_ENTRY_GROUP_FAILURE:
        daemon.giveUp(daemon.errorText());
        break;
    default:
        break;
    }
}

void Announcement::Private::rename()
{
    char *other = avahi_alternative_service_name(name.constData());
    name = other;
    avahi_free(other);
}

Announcement::Announcement(const Printer &printer, QObject *parent)
    : QObject(parent), d(std::make_unique<Private>(this, printer))
{
}

Announcement::~Announcement() = default;

} // namespace zydiscovery
