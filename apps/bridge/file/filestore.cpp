// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The files that may be sent: those of the spool directory, and those fetched by HTTP.

#include "filestore.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>

namespace zybridge
{

namespace
{

constexpr int silenceLimit = 30000; // ms without a byte
constexpr qint64 largestFile = 4LL * 1024 * 1024 * 1024;
constexpr int daysKept = 7;

using Answer = FileStore::Answer;

Answer refusal(const char *error, const QString &text)
{
    return {{}, QLatin1String(error), text, false};
}

/// Of what may be had later.
Answer passing(const char *error, const QString &text)
{
    return {{}, QLatin1String(error), text, true};
}

Answer storageFault(const QSaveFile &file)
{
    return passing("storage",
                   file.error() == QFileDevice::NoError
                       ? QStringLiteral("there is no space for the file") // only for a part of it
                       : file.errorString());
}

Answer digestRefusal(const QByteArray &wanted, const QByteArray &found)
{
    return refusal("digest",
                   QStringLiteral("the file has the SHA-256 %1, not %2")
                       .arg(QString::fromLatin1(found), QString::fromLatin1(wanted)));
}

QByteArray digestOf(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result().toHex()
                                                                 : QByteArray();
}

/// May the same request have a file later? "Not found" and its like stay; a server that is
/// overloaded, or from which only a part of the file came, may do better.
bool isPassing(const QNetworkReply &reply)
{
    constexpr int requestTimeout = 408;
    constexpr int tooManyRequests = 429;
    // 0 when no answer has come.
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return status < 400 || status >= 500 || status == requestTimeout || status == tooManyRequests;
}

bool isDigest(const QByteArray &text)
{
    static const QRegularExpression pattern(QStringLiteral("^[0-9a-f]{64}$"));
    return pattern.match(QString::fromLatin1(text)).hasMatch();
}

} // namespace

QString FileRequest::read(const QJsonObject &object, const RequestKeys &others)
{
    const auto text = [&](const char *key) { return object.value(QLatin1String(key)).toString(); };
    file = text("file");
    url = QUrl(text("url"), QUrl::StrictMode);
    sha256 = text("sha256").toLatin1().toLower();
    const bool hasUrl = object.contains(QLatin1String("url"));
    name = text("name");
    if (name.isEmpty())
        name = hasUrl ? url.fileName() : QFileInfo(file).fileName();
    RequestKeys keys = others;
    for (const char *key : {"file", "url", "sha256", "name"})
        keys.insert(QLatin1String(key), QJsonValue::String);
    if (QString fault = keyFault(object, keys); !fault.isEmpty())
        return fault;
    if (file.isEmpty() == !hasUrl)
        return QStringLiteral("give either \"file\" or \"url\"");
    const bool isWeb
        = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (hasUrl && (!isWeb || url.host().isEmpty()))
        return QStringLiteral("\"url\" is no http or https address");
    if (hasUrl ? !isDigest(sha256) : !sha256.isEmpty() && !isDigest(sha256))
        return QStringLiteral("\"sha256\" has to be 64 hex digits");
    return name.isEmpty() ? QStringLiteral("give the \"name\" that the file has on the printer")
                          : QString();
}

/// One download, whoever waits for it.
struct FileStore::Fetch {
    explicit Fetch(const QString &path) : file(path) { }

    /// Keeps what has come of the file, or ends the download.
    void take(QNetworkReply &reply);
    /// What has become of it.
    Answer end(QNetworkReply &reply, const QByteArray &sha256);

    QSaveFile file;
    QCryptographicHash hash{QCryptographicHash::Sha256};
    Answer fault; ///< why the download was ended here
    QVector<Done> waiting;
};

void FileStore::Fetch::take(QNetworkReply &reply)
{
    const QByteArray part = reply.readAll();
    hash.addData(part);
    const qint64 size = reply.header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (file.write(part) != part.size())
        fault = storageFault(file);
    else if (std::max(size, file.pos()) > largestFile)
        fault = refusal("too-large", QStringLiteral("the file is larger than 4 GiB"));
    if (!fault.error.isEmpty())
        reply.abort();
}

Answer FileStore::Fetch::end(QNetworkReply &reply, const QByteArray &sha256)
{
    if (fault.error.isEmpty())
        take(reply);
    if (!fault.error.isEmpty())
        return fault;
    if (reply.error() != QNetworkReply::NoError)
        return {{}, QStringLiteral("fetch"), reply.errorString(), isPassing(reply)};
    const QByteArray found = hash.result().toHex();
    if (found != sha256)
        return digestRefusal(sha256, found);
    if (!file.commit())
        return storageFault(file);
    return {file.fileName(), {}, {}, false};
}

FileStore::FileStore(const QString &spool, const QString &cache, QObject *parent)
    : QObject(parent), m_spool(spool), m_cache(cache)
{
    QDir().mkpath(cache);
    removeOldFiles();
}

void FileStore::provide(const FileRequest &request, const Done &done)
{
    if (!request.url.isEmpty()) {
        fetch(request, done);
        return;
    }
    if (m_spool.isEmpty()) {
        answerLater(done, refusal("no-spool", QStringLiteral("the bridge has no spool directory")));
        return;
    }
    const QFileInfo info(QDir(m_spool), request.file);
    // Symbolic links are followed first: none leads out of the directory.
    const QString path = info.canonicalFilePath();
    const QString spool = QFileInfo(m_spool).canonicalFilePath();
    if (spool.isEmpty()) { // on a server, say, that is away
        answerLater(done,
                    passing("no-spool",
                            QStringLiteral("the spool directory %1 is not there").arg(m_spool)));
        return;
    }
    if (!path.startsWith(spool + QLatin1Char('/')) || !info.isFile() || !info.isReadable()) {
        answerLater(done,
                    refusal("no-file",
                            QStringLiteral("there is no readable file %1 in the spool directory")
                                .arg(request.file)));
        return;
    }
    checkDigest(path, request.sha256, done);
}

/// In any thread; @p done is called in the store's.
void FileStore::answerLater(const Done &done, const Answer &answer)
{
    QMetaObject::invokeMethod(
        this, [done, answer] { done(answer); }, Qt::QueuedConnection);
}

/// In a thread: a model may be large.
void FileStore::checkDigest(const QString &path, const QByteArray &sha256, const Done &done)
{
    if (sha256.isEmpty()) {
        answerLater(done, {path, {}, {}, false});
        return;
    }
    // The pool's destructor waits for it.
    m_pool.start([this, path, sha256, done] {
        const QByteArray found = digestOf(path);
        answerLater(done,
                    found == sha256 ? Answer{path, {}, {}, false} : digestRefusal(sha256, found));
    });
}

QString FileStore::cachedPath(const QByteArray &sha256) const
{
    return m_cache + QLatin1Char('/') + QString::fromLatin1(sha256);
}

void FileStore::fetch(const FileRequest &request, const Done &done)
{
    const QString path = cachedPath(request.sha256);
    if (QFileInfo::exists(path)) {
        answerLater(done, {path, {}, {}, false});
        return;
    }
    // An address that does not have the file is no fault of those who name another.
    const Source source(request.sha256, request.url);
    const auto underWay = m_fetches.constFind(source);
    if (underWay != m_fetches.constEnd()) {
        underWay.value()->waiting.append(done);
        return;
    }
    const auto fetch = std::make_shared<Fetch>(path);
    if (!fetch->file.open(QIODevice::WriteOnly)) {
        answerLater(done, storageFault(fetch->file));
        return;
    }
    fetch->waiting.append(done);
    m_fetches.insert(source, fetch);
    QNetworkRequest get(request.url);
    get.setTransferTimeout(silenceLimit);
    get.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                     QNetworkRequest::NoLessSafeRedirectPolicy);
    QNetworkReply *reply = m_network.get(get);
    connect(reply, &QNetworkReply::readyRead, this, [reply, fetch] { fetch->take(*reply); });
    connect(reply, &QNetworkReply::finished, this,
            [this, reply, source] { endFetch(source, reply); });
}

void FileStore::endFetch(const Source &source, QNetworkReply *reply)
{
    const auto fetch = m_fetches.take(source);
    reply->deleteLater();
    const Answer answer = fetch->end(*reply, source.first);
    removeOldFiles();
    for (const Done &done : fetch->waiting)
        done(answer);
}

void FileStore::removeOldFiles() const
{
    const QDateTime oldest = QDateTime::currentDateTime().addDays(-daysKept);
    const QFileInfoList files = QDir(m_cache).entryInfoList(QDir::Files);
    for (const QFileInfo &file : files) {
        if (file.lastModified() < oldest)
            QFile::remove(file.filePath());
    }
}

} // namespace zybridge
