// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's announcement by DNS-SD, kept up as long as the object lives.

#ifndef ANNOUNCEMENT_H
#define ANNOUNCEMENT_H

#include <QHostAddress>
#include <QObject>

#include <memory>

namespace zydiscovery
{

/**
 * Announces a printer as "_zyprinter._tcp" to whoever looks for one, and withdraws it when deleted.
 *
 * A daemon that is not there is waited for; one that restarts or refuses is asked again. All in the
 * thread that made the object; talking to the daemon takes milliseconds there.
 */
class Announcement : public QObject
{
    Q_OBJECT

public:
    struct Printer {
        QString name; ///< shortened to 63 bytes of UTF-8, which is as long as one may be
        QHostAddress address; ///< where it listens; null: everywhere
        quint16 port = 0;
        bool isEncrypted = false;
        bool wantsToken = false;
    };

    explicit Announcement(const Printer &printer, QObject *parent = nullptr);
    ~Announcement() override;

Q_SIGNALS:
    /// Under this name, to which a number is added where another printer has it. May come again.
    void announced(const QString &name);
    /// Why it is not announced, or no longer, in half a sentence. May be followed by announced().
    void failed(const QString &why);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace zydiscovery

#endif // ANNOUNCEMENT_H
