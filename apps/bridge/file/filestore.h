// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The files that may be sent: those of the spool directory, and those fetched by HTTP.

#ifndef FILESTORE_H
#define FILESTORE_H

#include "requestkeys.h"

#include <QHash>
#include <QNetworkAccessManager>
#include <QPair>
#include <QThreadPool>
#include <QUrl>
#include <QVector>

#include <functional>
#include <memory>

class QNetworkReply;

namespace zybridge
{

/// What a message asks to be sent.
struct FileRequest {
    QString file; ///< in the spool directory; empty when there is a URL
    QUrl url; ///< http or https
    QByteArray sha256; ///< in lower-case hex digits; may be empty for a spool file
    QString name; ///< on the printer

    /// Reads the keys "file" or "url", "sha256" and "name", beside which @p object may have
    /// @p others. The fault, empty when there is none.
    QString read(const QJsonObject &object, const RequestKeys &others);
};

class FileStore : public QObject
{
    Q_OBJECT

public:
    /// Where the file lies, checked, or why it cannot be had: a word for programs and a sentence.
    struct Answer {
        QString path;
        QString error;
        QString text;
        bool isPassing = false; ///< it may be had later: the web server does not answer, say
    };
    using Done = std::function<void(const Answer &)>;

    /// Fetched files are kept in @p cache, by their digest.
    FileStore(const QString &spool, const QString &cache, QObject *parent = nullptr);

    /// @p done is called exactly once, never inside the call.
    void provide(const FileRequest &request, const Done &done);

private:
    struct Fetch;
    using Source = QPair<QByteArray, QUrl>; ///< a digest, and where the file is said to lie

    void answerLater(const Done &done, const Answer &answer);
    void checkDigest(const QString &path, const QByteArray &sha256, const Done &done);
    void fetch(const FileRequest &request, const Done &done);
    void endFetch(const Source &source, QNetworkReply *reply);
    void removeOldFiles() const;
    QString cachedPath(const QByteArray &sha256) const;

    const QString m_spool;
    const QString m_cache;
    QNetworkAccessManager m_network;
    QThreadPool m_pool; ///< for digests
    QHash<Source, std::shared_ptr<Fetch>> m_fetches;
};

} // namespace zybridge

#endif // FILESTORE_H
