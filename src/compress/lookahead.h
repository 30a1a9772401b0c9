// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The chunks of a file, read and compressed before their turn.

#ifndef LOOKAHEAD_H
#define LOOKAHEAD_H

#include "levelcontroller.h"
#include "sharedfile.h"

#include <QElapsedTimer>

#include <deque>
#include <functional>
#include <memory>

class QFile;

namespace zyws
{

/// Stands for a level that the controller chooses for each chunk.
inline constexpr int adaptiveLevel = -2;

/// What the application may change while a file is being sent.
struct Compression {
    int level = -1; ///< of zlib's, or adaptiveLevel
    int threads = 0; ///< 0: none but the caller's; -1: as many as pay
};

/**
 * Reads a file chunk by chunk and has each compressed, ahead of the one who takes them: one chunk
 * where the caller's thread compresses, one more than there are threads otherwise.
 *
 * A chunk that was read before the file changed is read again when its turn comes, so what is taken
 * is what reading late would give. With threads, chunks are shared with whoever else sends the same
 * file at the same level.
 */
class LookAhead
{
public:
    /// @p file is open, at the first chunk, and outlives this object. @p onReady is called in any
    /// thread when a chunk has been compressed, but never after the destructor.
    LookAhead(QFile &file, bool compress, std::function<void()> onReady);
    /// Leaves chunks that are being compressed to their threads.
    ~LookAhead();

    /// Reads ahead as far as @p wanted says and begins to compress what was read; without threads
    /// it returns when that is done.
    void prepare(const Compression &wanted);
    /// Whether the next chunk is compressed. False before prepare().
    bool isReady() const;
    /// Whether the next chunk is none, since the file ends there as far as it has been read.
    bool isAtEnd() const;

    /// The next chunk, which isReady(). The caller sends it at once.
    std::shared_ptr<ChunkJob> take();
    /// Of the chunks taken, all but the last @p underWay have been acknowledged.
    void acknowledgedUpTo(int underWay);

private:
    struct Entry {
        std::shared_ptr<ChunkJob> chunk;
        qint64 position; ///< in the file
        FileState fileState; ///< before it was read
        bool isMeasured = false;
    };

    /// Without the bytes: their memory is free for the next chunk.
    struct Sent {
        Effort effort;
        int size;
        int payloadSize;
        qint64 at; ///< ns
    };

    FileState fileState() const;
    void discardStale();
    void read(int level, int threads);
    std::shared_ptr<ChunkJob> readChunk(int level);
    void compress(const std::shared_ptr<ChunkJob> &job, int threads);
    void share(int level);
    void measure();
    qint64 now() const { return m_clock.nsecsElapsed(); }

    QFile &m_file;
    const bool m_isCompressing;
    const QString m_path;
    std::shared_ptr<Bell> m_bell;
    std::shared_ptr<SharedFile> m_shared; ///< null without threads
    int m_sharedLevel = 0;
    std::deque<Entry> m_entries;
    QByteArray m_buffer; ///< the last chunk was read into it
    LevelController m_controller;
    QElapsedTimer m_clock;
    std::deque<Sent> m_underWay;
    qint64 m_sentAt = 0; ///< ns: when the last chunk was taken
    bool m_isStarving = false; ///< the line waits for the next chunk
    qint64 m_waitingSince = 0; ///< ns: the line alone has been waited for from then on
};

} // namespace zyws

#endif // LOOKAHEAD_H
