// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printers that announce themselves by DNS-SD, as they come and go.

#include "printerbrowser.h"

#include "daemon.h"
#include "service.h"

#include <QHostAddress>

#include <algorithm>
#include <map>
#include <tuple>

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>

#include <net/if.h>

namespace zydiscovery
{

namespace
{

constexpr std::size_t mostInstances = 4096; // anybody on the network may announce more

struct FreeBrowser {
    void operator()(AvahiServiceBrowser *browser) const { avahi_service_browser_free(browser); }
};
struct FreeResolver {
    void operator()(AvahiServiceResolver *resolver) const { avahi_service_resolver_free(resolver); }
};

/// How far an address is from one that every program understands.
enum class Rank { Plain, IPv6, Loopback, LinkLocal, None };

Rank rankOf(const QHostAddress &address)
{
    if (address.isLoopback())
        return Rank::Loopback;
    if (address.protocol() == QAbstractSocket::IPv4Protocol)
        return Rank::Plain;
    return address.isLinkLocal() ? Rank::LinkLocal : Rank::IPv6;
}

QHostAddress addressOf(const AvahiAddress &address, AvahiIfIndex interface)
{
    char text[AVAHI_ADDRESS_STR_MAX];
    QHostAddress result(QString::fromLatin1(avahi_address_snprint(text, sizeof text, &address)));
    char interfaceName[IF_NAMESIZE];
    if (rankOf(result) == Rank::LinkLocal
        && if_indextoname(unsigned(interface), interfaceName) != nullptr)
        result.setScopeId(QString::fromLocal8Bit(interfaceName));
    return result;
}

QUrl urlOf(const QHostAddress &address, quint16 port, bool isEncrypted)
{
    QUrl url;
    url.setScheme(isEncrypted ? QStringLiteral("wss") : QStringLiteral("ws"));
    url.setHost(address.toString());
    url.setPort(port);
    return url;
}

} // namespace

class PrinterBrowser::Private
{
public:
    /// A printer on one interface, by one protocol.
    struct Instance {
        Private *owner = nullptr;
        std::unique_ptr<AvahiServiceResolver, FreeResolver> resolver;
        bool isPending = true;
        Rank rank = Rank::None;
        FoundPrinter printer; ///< where the rank is one
    };
    using Key = std::tuple<AvahiIfIndex, AvahiProtocol, QByteArray, QByteArray>;

    explicit Private(PrinterBrowser *owner);

    void start();
    void stop(const QString &why);
    void tell();
    void add(const Key &key);

    static void onBrowsed(AvahiServiceBrowser *, AvahiIfIndex, AvahiProtocol, AvahiBrowserEvent,
                          const char *name, const char *type, const char *domain,
                          AvahiLookupResultFlags, void *self);
    static void onResolved(AvahiServiceResolver *, AvahiIfIndex, AvahiProtocol, AvahiResolverEvent,
                           const char *name, const char *type, const char *domain, const char *host,
                           const AvahiAddress *, uint16_t port, AvahiStringList *text,
                           AvahiLookupResultFlags, void *instance);

    Daemon daemon;
    // All of these before the daemon's client.
    std::unique_ptr<AvahiServiceBrowser, FreeBrowser> browser;
    std::map<Key, std::unique_ptr<Instance>> instances;
    bool isAllForNow = false;
    QString fault;
    QTimer changed; ///< the user's slot must not run inside Avahi's callbacks
};

PrinterBrowser::Private::Private(PrinterBrowser *owner)
{
    changed.setSingleShot(true);
    connect(&changed, &QTimer::timeout, owner, &PrinterBrowser::changed);
    connect(&daemon, &Daemon::running, owner, [this] { start(); });
    connect(&daemon, &Daemon::lost, owner, [this](const QString &why) { stop(why); });
}

void PrinterBrowser::Private::tell()
{
    changed.start(0);
}

void PrinterBrowser::Private::start()
{
    if (browser)
        return;
    browser.reset(avahi_service_browser_new(daemon.client(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                            serviceType, nullptr, AvahiLookupFlags(0), onBrowsed,
                                            this));
    if (!browser) {
        daemon.giveUp(daemon.errorText());
        return;
    }
    fault.clear();
    tell();
}

void PrinterBrowser::Private::stop(const QString &why)
{
    instances.clear();
    browser.reset();
    isAllForNow = false;
    fault = why;
    tell();
}

void PrinterBrowser::Private::onBrowsed(AvahiServiceBrowser *, AvahiIfIndex interface,
                                        AvahiProtocol protocol, AvahiBrowserEvent event,
                                        const char *name, const char *, const char *domain,
                                        AvahiLookupResultFlags, void *self)
{
    auto *own = static_cast<Private *>(self);
    switch (event) {
    case AVAHI_BROWSER_NEW:
        own->add({interface, protocol, name, domain});
        break;
    case AVAHI_BROWSER_REMOVE:
        own->instances.erase({interface, protocol, name, domain});
        break;
    case AVAHI_BROWSER_ALL_FOR_NOW:
        own->isAllForNow = true;
        break;
    case AVAHI_BROWSER_FAILURE:
        QMetaObject::invokeMethod(
            &own->daemon, [own, why = own->daemon.errorText()] { own->daemon.giveUp(why); },
            Qt::QueuedConnection);
        break;
    case AVAHI_BROWSER_CACHE_EXHAUSTED:
        break;
    }
    own->tell();
}

void PrinterBrowser::Private::add(const Key &key)
{
    if (instances.size() >= mostInstances)
        return;
    const auto &[interface, protocol, name, domain] = key;
    auto instance = std::make_unique<Instance>();
    instance->owner = this;
    // The address has to be of the protocol: a printer may listen for one of them alone. The
    // resolver stays, and tells when the printer gets another port.
    instance->resolver.reset(avahi_service_resolver_new(
        daemon.client(), interface, protocol, name.constData(), serviceType, domain.constData(),
        protocol, AvahiLookupFlags(0), onResolved, instance.get()));
    if (instance->resolver)
        instances[key] = std::move(instance);
}

void PrinterBrowser::Private::onResolved(AvahiServiceResolver *, AvahiIfIndex interface,
                                         AvahiProtocol, AvahiResolverEvent event, const char *name,
                                         const char *, const char *, const char *host,
                                         const AvahiAddress *address, uint16_t port,
                                         AvahiStringList *text, AvahiLookupResultFlags,
                                         void *instance)
{
    auto *found = static_cast<Instance *>(instance);
    found->isPending = false;
    found->rank = Rank::None;
    if (event == AVAHI_RESOLVER_FOUND && address != nullptr && port > 0) {
        const QHostAddress place = addressOf(*address, interface);
        const Text said = readText(text);
        found->rank = rankOf(place);
        found->printer = {QString::fromUtf8(name), urlOf(place, port, said.isEncrypted),
                          QString::fromUtf8(host), said.protocol, said.wantsToken};
    }
    found->owner->tell();
}

PrinterBrowser::PrinterBrowser(QObject *parent)
    : QObject(parent), d(std::make_unique<Private>(this))
{
}

PrinterBrowser::~PrinterBrowser() = default;

QVector<FoundPrinter> PrinterBrowser::printers() const
{
    std::map<QString, const Private::Instance *> best;
    for (const auto &[key, instance] : d->instances) {
        if (instance->rank == Rank::None)
            continue;
        const Private::Instance *&known = best[instance->printer.name];
        if (known == nullptr || instance->rank < known->rank)
            known = instance.get();
    }
    QVector<FoundPrinter> printers;
    for (const auto &[name, instance] : best)
        printers.append(instance->printer);
    std::stable_sort(printers.begin(), printers.end(),
                     [](const FoundPrinter &left, const FoundPrinter &right) {
                         return left.name.compare(right.name, Qt::CaseInsensitive) < 0;
                     });
    return printers;
}

bool PrinterBrowser::isComplete() const
{
    return d->isAllForNow
        && std::none_of(d->instances.begin(), d->instances.end(),
                        [](const auto &each) { return each.second->isPending; });
}

QString PrinterBrowser::fault() const
{
    return d->fault;
}

} // namespace zydiscovery
