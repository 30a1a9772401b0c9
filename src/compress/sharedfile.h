// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The chunks of a file that goes to several printers at once: each is compressed once.

#ifndef SHAREDFILE_H
#define SHAREDFILE_H

#include "chunkjob.h"

#include <QDateTime>
#include <QString>

#include <map>

namespace zyws
{

/// By which a change of a file is noticed.
struct FileState {
    qint64 size = 0;
    QDateTime modified;

    bool operator==(const FileState &other) const
    {
        return size == other.size && modified == other.modified;
    }
};

/**
 * What the transfers of one file at one level have compressed and the others may still want.
 *
 * Nobody waits for anybody: a transfer that is ahead compresses, those after it find its chunks. Of
 * these up to 64 are kept for the slower ones, which compress for themselves what is missing. A
 * single transfer keeps none. From any thread.
 */
class SharedFile
{
public:
    /// The one for @p path, which lives as long as anyone has it.
    static std::shared_ptr<SharedFile> of(const QString &path, int level);

    /// The chunk at @p position for @p reader, who joins it with @p bell. @p read makes it when
    /// there is none of a file like @p state; @p isNew says so, and the caller has it run.
    std::shared_ptr<ChunkJob> chunk(const void *reader, qint64 position, const FileState &state,
                                    const std::shared_ptr<Bell> &bell,
                                    const std::function<std::shared_ptr<ChunkJob>()> &read,
                                    bool &isNew);
    /// @p reader wants nothing before @p position any more.
    void advance(const void *reader, qint64 position);
    /// @p reader wants nothing any more.
    void leave(const void *reader);

private:
    struct Entry {
        FileState state;
        std::weak_ptr<ChunkJob> job;
        std::shared_ptr<ChunkJob> kept; ///< null where only its transfers have it
    };

    void forgetPassed();

    std::mutex m_mutex;
    std::map<qint64, Entry> m_chunks; ///< by position
    std::map<const void *, qint64> m_readers; ///< where each is
    int m_keptCount = 0;
};

} // namespace zyws

#endif // SHAREDFILE_H
