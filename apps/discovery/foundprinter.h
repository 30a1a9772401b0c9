// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer that was found, and how a user names one that is to be found.

#ifndef FOUNDPRINTER_H
#define FOUNDPRINTER_H

#include <QMetaType>
#include <QString>
#include <QUrl>
#include <QVector>

namespace zydiscovery
{

/// What a printer says of itself. Nothing of it is proven: whoever is on the network may announce
/// any name.
struct FoundPrinter {
    QString name; ///< as announced: any characters
    QUrl url; ///< ws:// or wss://, with the address as a number
    QString host; ///< such as "bench.local"
    QString protocol; ///< its version; empty when it names none
    bool wantsToken = false;

    bool isEncrypted() const { return url.scheme() == QLatin1String("wss"); }
};

bool operator==(const FoundPrinter &left, const FoundPrinter &right);

/// "dnssd:" and the name, as a user writes it in place of an address.
QString addressByName(const QString &name);
/// The name in "dnssd:NAME"; null for any other text.
QString nameInAddress(const QString &text);
/// The one of this name, in upper or lower case; without a name when there is none.
FoundPrinter printerNamed(const QString &name, const QVector<FoundPrinter> &printers);

} // namespace zydiscovery

Q_DECLARE_METATYPE(zydiscovery::FoundPrinter)

#endif // FOUNDPRINTER_H
